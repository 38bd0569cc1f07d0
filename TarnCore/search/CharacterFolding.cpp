#include "TarnCore/search/CharacterFolding.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstring>
#include <memory>
#include <string>

#include <unicode/uchar.h>

#include "TarnCore/base/Text.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tarn::CharacterFolding {
namespace {

constexpr char32_t softHyphen = 0xAD;

Folded foldAlone(char32_t character) {
    std::string text;
    Text::append(text, character);
    const std::string folded = character == softHyphen ? "" : Text::folded(text);
    Folded entry{};
    entry.length = static_cast<std::uint8_t>(std::min(folded.size(), Folded::longest));
    std::memcpy(entry.bytes, folded.data(), entry.length);
    entry.isBlank = Text::isSpace(character);
    entry.isWordCharacter = u_isalnum(static_cast<UChar32>(character)) != 0;
    entry.isSingle = Text::length(folded) == 1;
    return entry;
}

}  // namespace

namespace tables {

std::array<std::atomic<const Block*>, (codePoints >> blockBits)> blocks;

const Block& fill(std::size_t index) {
    auto made = std::make_unique<Block>();
    for (std::size_t i = 0; i < made->size(); ++i)
        (*made)[i] = foldAlone(static_cast<char32_t>(index << blockBits | i));
    const Block* expected = nullptr;
    if (blocks[index].compare_exchange_strong(expected, made.get(), std::memory_order_acq_rel))
        return *made.release();
    return *expected;
}

}  // namespace tables

std::size_t nextNonASCII(std::string_view text, std::size_t index) {
#if defined(__SSE2__)
    // Most texts are ASCII to the end, and this is what they are read at: a line of the cache at
    // once.
    const auto load = [&](std::size_t i) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + i));
    };
    for (; index + 64 <= text.size(); index += 64) {
        const __m128i any = _mm_or_si128(_mm_or_si128(load(index), load(index + 16)),
                                         _mm_or_si128(load(index + 32), load(index + 48)));
        if (_mm_movemask_epi8(any) != 0) break;
    }
    for (; index + 16 <= text.size(); index += 16) {
        const auto found = static_cast<unsigned>(_mm_movemask_epi8(load(index)));
        if (found != 0) return index + static_cast<std::size_t>(std::countr_zero(found));
    }
#endif
    for (; index + 8 <= text.size(); index += 8) {
        std::uint64_t word;
        std::memcpy(&word, text.data() + index, 8);
        if ((word & 0x8080808080808080) != 0) break;
    }
    while (index < text.size() && !isNonASCII(text[index])) ++index;
    return index;
}

char32_t nextLonger(std::string_view text, std::size_t& index) {
    const auto byte = [&](std::size_t i) -> char32_t {
        return static_cast<unsigned char>(text[index + i]);
    };
    const char32_t first = byte(0);
    // Three bytes, less those in which some sequences mean nothing.
    if (first > 0xE0 && first < 0xED && text.size() - index >= 3 && (byte(1) & 0xC0U) == 0x80 &&
        (byte(2) & 0xC0U) == 0x80) {
        const char32_t character =
            (first & 0x0FU) << 12 | (byte(1) & 0x3FU) << 6 | (byte(2) & 0x3FU);
        index += 3;
        return character;
    }
    const std::size_t start = index;
    const char32_t character = Text::nextCharacter(text, index);
    // U+FFFD itself is three bytes long.
    return index == start + 1 ? brokenByte : character;
}

std::size_t startOfLast(std::string_view text, std::size_t end) {
    constexpr std::size_t longest = 4;
    for (std::size_t length = 1; length <= std::min(longest, end); ++length) {
        const std::size_t start = end - length;
        if ((static_cast<unsigned char>(text[start]) & 0xC0U) == 0x80) continue;
        std::size_t behind = start;
        next(text.substr(0, end), behind);
        if (behind == end) return start;
        break;
    }
    return end - 1;
}

}  // namespace tarn::CharacterFolding
