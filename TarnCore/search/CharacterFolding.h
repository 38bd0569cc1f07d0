#pragma once

#include <array>
#include <atomic>
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

namespace tables {
inline constexpr char32_t codePoints = 0x110000;
inline constexpr unsigned blockBits = 6;  ///< Characters that share all but the last byte of UTF-8.
using Block = std::array<Folded, 1U << blockBits>;
/// Filled in when first needed and kept to the end: whichever thread comes first wins.
extern std::array<std::atomic<const Block*>, (codePoints >> blockBits)> blocks;
const Block& fill(std::size_t index);
inline constexpr Folded beyond{};
}  // namespace tables

/// `character` is a code point; beyond the last one, the reference is to something that folds to
/// itself. The reference stays valid to the end of the program.
inline const Folded& fold(char32_t character) {
    using namespace tables;
    if (character >= codePoints) return beyond;
    const std::size_t index = character >> blockBits;
    const Block* block = blocks[index].load(std::memory_order_acquire);
    if (block == nullptr) block = &fill(index);
    return (*block)[character & ((1U << blockBits) - 1)];
}

/// Reads the character at `index` and moves past it; a broken byte moves by one and gives
/// `brokenByte`.
inline char32_t next(std::string_view text, std::size_t& index);
inline constexpr char32_t brokenByte = 0xFFFFFFFF;
/// `next` for what it does not read by itself.
char32_t nextLonger(std::string_view text, std::size_t& index);
/// Where the character begins that ends at `end`, which is not 0.
std::size_t startOfLast(std::string_view text, std::size_t end);

inline bool isNonASCII(char c) { return (static_cast<unsigned char>(c) & 0x80) != 0; }
/// The first byte from `index` on that is not ASCII, or the end.
std::size_t nextNonASCII(std::string_view text, std::size_t index);

inline bool isASCIIBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
inline bool isASCIIWordCharacter(char c) {
    const char lower = static_cast<char>(c | 0x20);
    return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9');
}
inline char lowerASCII(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

inline char32_t next(std::string_view text, std::size_t& index) {
    const char32_t first = static_cast<unsigned char>(text[index]);
    if (first < 0x80) {
        ++index;
        return first;
    }
    if (first >= 0xC2 && first < 0xE0 && text.size() - index >= 2) {
        const char32_t second = static_cast<unsigned char>(text[index + 1]);
        if ((second & 0xC0U) == 0x80) {
            index += 2;
            return (first & 0x1FU) << 6 | (second & 0x3FU);
        }
    }
    return nextLonger(text, index);
}

}  // namespace tarn::CharacterFolding
