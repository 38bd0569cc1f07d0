#include "TarnCore/base/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/stringoptions.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "TarnCore/base/CharacterTable.h"

namespace tarn::Text {
namespace {

constexpr char32_t replacement = 0xFFFD;

char lowerASCII(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// Reads one well-formed sequence (Unicode 15, table 3-7). Returns its length, 0 when broken.
std::size_t decode(std::string_view text, std::size_t index, char32_t& out) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[index + i]); };
    const std::size_t left = text.size() - index;
    const unsigned char first = byte(0);
    if (first < 0x80) {
        out = first;
        return 1;
    }
    if (first < 0xC2 || first > 0xF4) return 0;
    const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (left < length) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if (!isContinuation(text[index + i])) return 0;
    char32_t value = first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) value = (value << 6) | (byte(i) & 0x3FU);
    if (length == 3 && (value < 0x800 || (value >= 0xD800 && value <= 0xDFFF))) return 0;
    if (length == 4 && (value < 0x10000 || value > 0x10FFFF)) return 0;
    out = value;
    return length;
}

/// The first byte from `index` on that is not ASCII, or the end. Looks at eight together, since
/// most of what even texts full of accents hold is ASCII.
std::size_t nextNonASCII(std::string_view text, std::size_t index) {
    for (; index + 8 <= text.size(); index += 8) {
        std::uint64_t word;
        std::memcpy(&word, text.data() + index, 8);
        if ((word & 0x8080808080808080ULL) != 0) break;
    }
    while (index < text.size() && (static_cast<unsigned char>(text[index]) & 0x80) == 0) ++index;
    return index;
}

/// Moves from a place where a character begins past blocks of bytes that hold nothing but ASCII and
/// whole characters of two bytes, which is nearly all of European texts.
std::size_t skipShortCharacters(std::string_view text, std::size_t index) {
#if defined(__SSE2__)
    for (; index + 16 <= text.size();) {
        const __m128i block =
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + index));
        const auto bits = [](__m128i mask) {
            return static_cast<unsigned>(_mm_movemask_epi8(mask));
        };
        const unsigned high = bits(block);
        if (high == 0) {
            index += 16;
            continue;
        }
        // As signed numbers, 0x80 to 0xBF and 0xC2 to 0xDF.
        const unsigned follows = bits(_mm_cmplt_epi8(block, _mm_set1_epi8(-64)));
        const unsigned leads = bits(_mm_and_si128(_mm_cmpgt_epi8(block, _mm_set1_epi8(-63)),
                                                  _mm_cmplt_epi8(block, _mm_set1_epi8(-32))));
        if ((follows | leads) != high || follows != (leads << 1 & 0xFFFF)) break;
        index += 16 - (leads >> 15);  // The last one may go on behind the block.
    }
#endif
    return index;
}

/// Calls `each` with every well-formed run and every broken byte of the text, in order.
template <class Run, class Broken>
void forEachRun(std::string_view text, Run run, Broken broken) {
    std::size_t start = 0;
    std::size_t i = 0;
    while (i < text.size()) {
        char32_t c = 0;
        const std::size_t length = decode(text, i, c);
        if (length != 0) {
            i += length;
            continue;
        }
        if (i > start) run(text.substr(start, i - start));
        broken(text[i]);
        start = ++i;
    }
    if (i > start) run(text.substr(start));
}

void foldRun(std::string& out, std::string_view run) {
    static const icu::Normalizer2* nfd = [] {
        UErrorCode status = U_ZERO_ERROR;
        return icu::Normalizer2::getNFDInstance(status);
    }();
    icu::UnicodeString text =
        icu::UnicodeString::fromUTF8(icu::StringPiece(run.data(), static_cast<int>(run.size())));
    text.foldCase(U_FOLD_CASE_DEFAULT);
    if (nfd != nullptr) {
        UErrorCode status = U_ZERO_ERROR;
        icu::UnicodeString decomposed = nfd->normalize(text, status);
        if (U_SUCCESS(status)) text = std::move(decomposed);
    }
    icu::UnicodeString bare;
    for (int i = 0; i < text.length();) {
        const UChar32 c = text.char32At(i);
        if (u_charType(c) != U_NON_SPACING_MARK) bare.append(c);
        i += U16_LENGTH(c);
    }
    bare.toUTF8String(out);
}

void lowerRun(std::string& out, std::string_view run) {
    icu::UnicodeString::fromUTF8(icu::StringPiece(run.data(), static_cast<int>(run.size())))
        .toLower(icu::Locale::getRoot())
        .toUTF8String(out);
}

/// The table of a mapping that appends what a run of valid UTF-8 becomes.
CharacterTable tableOf(void (*mapRun)(std::string&, std::string_view)) {
    return CharacterTable([mapRun](std::string_view character) {
        std::string mapped;
        mapRun(mapped, character);
        return mapped;
    });
}

}  // namespace

bool isASCII(std::string_view text) { return nextNonASCII(text, 0) == text.size(); }

bool isValidUTF8(std::string_view text) {
    for (std::size_t i = 0; (i = skipShortCharacters(text, i)) < text.size();) {
        // Some more of them, since others seldom come alone.
        for (const std::size_t end = std::min(i + 16, text.size()); i < end;) {
            char32_t c = 0;
            const std::size_t length = decode(text, i, c);
            if (length == 0) return false;
            i += length;
        }
    }
    return true;
}

std::string sanitized(std::string_view text) {
    if (isASCII(text)) return std::string(text);
    std::string out;
    out.reserve(text.size());
    forEachRun(
        text, [&](std::string_view run) { out += run; }, [&](char) { out += "\xEF\xBF\xBD"; });
    return out;
}

std::size_t length(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t next = nextNonASCII(text, i);
        count += next - i;
        i = next;
        if (i == text.size()) break;
        nextCharacter(text, i);
        ++count;
    }
    return count;
}

bool isSpace(char32_t c) {
    if (c < 0x80) return c == ' ' || (c >= '\t' && c <= '\r');
    return u_isUWhiteSpace(static_cast<UChar32>(c)) != 0;
}

std::string_view trimmed(std::string_view text) {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool any = false;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t at = i;
        if (isSpace(nextCharacter(text, i))) continue;
        if (!any) begin = at;
        any = true;
        end = i;
    }
    return any ? text.substr(begin, end - begin) : std::string_view{};
}

std::string lowercasedASCII(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = lowerASCII(c);
    return out;
}

std::string lowercased(std::string_view text) {
    if (isASCII(text)) return lowercasedASCII(text);
    std::string out;
    out.reserve(text.size());
    static const CharacterTable european = tableOf(lowerRun);
    forEachRun(
        text,
        [&](std::string_view run) {
            if (!european.append(out, run)) lowerRun(out, run);
        },
        [&](char byte) { out += byte; });
    return out;
}

void foldInto(std::string& out, std::string_view text) {
    out.clear();
    if (isASCII(text)) {
        out.resize(text.size());
        for (std::size_t i = 0; i < text.size(); ++i) out[i] = lowerASCII(text[i]);
        return;
    }
    static const CharacterTable european = tableOf(foldRun);
    forEachRun(
        text,
        [&](std::string_view run) {
            if (!european.append(out, run)) foldRun(out, run);
        },
        [&](char byte) { out += byte; });
}

std::string folded(std::string_view text) {
    std::string out;
    foldInto(out, text);
    return out;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    for (;;) {
        const std::size_t at = text.find(separator);
        pieces.push_back(text.substr(0, at));
        if (at == text.npos) return pieces;
        text.remove_prefix(at + 1);
    }
}

std::string join(const std::vector<std::string>& pieces, std::string_view separator) {
    std::string out;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i > 0) out += separator;
        out += pieces[i];
    }
    return out;
}

std::string replacing(std::string_view text, std::string_view from, std::string_view to) {
    std::string out;
    for (;;) {
        const std::size_t at = text.find(from);
        out += text.substr(0, at);
        if (at == text.npos) return out;
        out += to;
        text.remove_prefix(at + from.size());
    }
}

namespace {

std::string withFirst(std::string_view text, bool upper) {
    if (text.empty()) return {};
    std::size_t end = 0;
    const char32_t first = nextCharacter(text, end);
    if (first == replacement) return std::string(text);
    icu::UnicodeString character(static_cast<UChar32>(first));
    if (upper)
        character.toUpper(icu::Locale::getRoot());
    else
        character.toLower(icu::Locale::getRoot());
    std::string out;
    character.toUTF8String(out);
    out += text.substr(end);
    return out;
}

}  // namespace

std::string withFirstLowered(std::string_view text) { return withFirst(text, false); }
std::string withFirstRaised(std::string_view text) { return withFirst(text, true); }

std::string quoted(std::string_view text) {
    std::string out = "“";
    out += text;
    out += "”";
    return out;
}

char32_t nextCharacter(std::string_view text, std::size_t& index) {
    char32_t c = replacement;
    const std::size_t length = decode(text, index, c);
    if (length == 0) {
        ++index;
        return replacement;
    }
    index += length;
    return c;
}

void append(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

}  // namespace tarn::Text
