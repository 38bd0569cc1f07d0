#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// What Text::folded makes of single characters, from tables that fill themselves as characters are
/// met, for scans of hundreds of megabytes. Soft hyphens go away like marks. Callable from any
/// thread.
///
/// Folding a text character by character gives what folding it whole gives, but for some marks of
/// musical notation and old Korean that the whole would put in another order.
namespace tarn::CharacterFolding {

struct Folded {
    static constexpr std::size_t longest = 14;  ///< Bytes; no character folds to more.
    char bytes[longest];
    std::uint8_t length;       ///< 0 for a mark that goes away.
    bool isBlank : 1;          ///< White space of any kind.
    bool isWordCharacter : 1;  ///< A letter or a digit.
    bool isSingle : 1;         ///< Folds to one character.

    std::string_view text() const { return {bytes, length}; }
};

/// `character` is a code point; beyond the last one, the reference is to something that folds to
/// itself. The reference stays valid to the end of the program.
const Folded& fold(char32_t character);

/// Reads the character at `index` and moves past it; a broken byte moves by one and gives
/// `brokenByte`.
char32_t next(std::string_view text, std::size_t& index);
inline constexpr char32_t brokenByte = 0xFFFFFFFF;

inline bool isNonASCII(char c) { return (static_cast<unsigned char>(c) & 0x80) != 0; }
/// The first byte from `index` on that is not ASCII, or the end.
std::size_t nextNonASCII(std::string_view text, std::size_t index);

inline bool isASCIIBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
inline bool isASCIIWordCharacter(char c) {
    const char lower = static_cast<char>(c | 0x20);
    return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9');
}
inline char lowerASCII(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

}  // namespace tarn::CharacterFolding
