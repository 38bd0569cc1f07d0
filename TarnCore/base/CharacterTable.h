#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tarn {

/// What the characters of most European languages become when text is mapped: folded, in lower
/// case. With it their names need not go through UTF-16 and back.
///
/// Only for mappings that change each character below `bound` in the same way whatever stands
/// beside it. Callable from any thread.
class CharacterTable {
public:
    static constexpr char32_t bound = 0x370;  ///< After the combining marks.

    /// Asks `map` what each character becomes, of at most seven bytes; both are UTF-8.
    explicit CharacterTable(const std::function<std::string(std::string_view character)>& map);

    std::string_view operator[](char32_t character) const {
        const Entry& entry = entries_[character];
        return {entry.bytes, entry.length};
    }

    /// Appends what valid UTF-8 becomes. False when it holds other characters; `out` is then as it
    /// was.
    bool append(std::string& out, std::string_view text) const;

private:
    struct Entry {
        char bytes[7] = {};
        std::uint8_t length = 0;
    };
    std::array<Entry, bound> entries_{};
};

}  // namespace tarn
