#include "TarnCore/index/PlainText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <utility>

#include "TarnCore/base/Charset.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/index/TextExtractor.h"

namespace tarn::PlainText {
namespace {

using namespace std::string_view_literals;
using Byte = unsigned char;

constexpr std::size_t blockSize = 32;  // bytes that are looked at together
/// No encoding uses more bytes for a character, but for the few that switch between sets.
constexpr std::size_t mostBytes = TextExtractor::maxCharacters * 4;

/// What the bytes hold, taken as UTF-8.
struct Scan {
    std::size_t zeros = 0;
    std::size_t controls = 0;   ///< Others that stand in no text.
    std::size_t escapes = 0;    ///< ESC, which switches sets in some encodings.
    std::size_t sequences = 0;  ///< Characters of several bytes.
    std::size_t broken = 0;     ///< Bytes that are part of no character.
    bool isTidy = true;
};

/// The length of the sequence that begins at `at`, whose byte is above 0x7F; 0 when it is broken:
/// the table 3-7 of the Unicode Standard.
std::size_t sequenceLength(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t offset) {
        return at + offset < text.size() ? static_cast<Byte>(text[at + offset]) : Byte{0};
    };
    const auto follows = [&](std::size_t offset) { return (byte(offset) & 0xC0) == 0x80; };
    const Byte first = byte(0), second = byte(1);
    if (first < 0xC2 || first > 0xF4 || !follows(1)) return 0;
    if (first < 0xE0) return 2;
    if (!follows(2)) return 0;
    if (first < 0xF0) {
        if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F)) return 0;
        return 3;
    }
    if ((first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F)) return 0;
    return follows(3) ? 4 : 0;
}

/// Of a ligature of the Latin letters (U+FB00 to U+FB06), which some typesetters write for them;
/// empty for everything else.
std::string_view lettersOf(std::string_view sequence) {
    constexpr std::string_view letters[] = {"ff", "fi", "fl", "ffi", "ffl", "st", "st"};
    if (!sequence.starts_with("\xEF\xAC")) return {};
    const std::size_t index = static_cast<Byte>(sequence[2]) - std::size_t{0x80};
    return index < std::size(letters) ? letters[index] : std::string_view();
}

bool isUntidySequence(std::string_view sequence) {
    const auto second = static_cast<Byte>(sequence[1]);
    if (sequence[0] == '\xC2') return second < 0xA0 || second == 0xAD;
    return sequence == "\u2028"sv || sequence == "\u2029"sv || !lettersOf(sequence).empty();
}

/// Letters, marks, spaces, tabs and line ends of ASCII, all of a block of them.
bool isEasyBlock(const char* block, bool& hasReturn) {
    unsigned hard = 0, returns = 0;
    for (std::size_t i = 0; i < blockSize; ++i) {
        const auto byte = static_cast<Byte>(block[i]);
        const unsigned isReturn = byte == '\r';
        returns |= isReturn;
        hard |= static_cast<unsigned>(byte < 0x20) &
                static_cast<unsigned>(byte != '\n' && byte != '\t') & ~isReturn;
        hard |= static_cast<unsigned>(byte >= 0x7F);
    }
    hasReturn = hasReturn || returns != 0;
    return hard == 0;
}

Scan scan(std::string_view text) {
    Scan result;
    bool hasReturn = false;
    for (std::size_t at = 0; at < text.size();) {
        if (at + blockSize <= text.size() && isEasyBlock(text.data() + at, hasReturn)) {
            at += blockSize;
            continue;
        }
        for (const std::size_t end = std::min(at + blockSize, text.size()); at < end;) {
            const auto byte = static_cast<Byte>(text[at]);
            if (byte >= 0x80) {
                const std::size_t length = sequenceLength(text, at);
                result.sequences += length != 0;
                result.broken += length == 0;
                if (length != 0 && isUntidySequence(text.substr(at, length))) result.isTidy = false;
                at += std::max<std::size_t>(length, 1);
                continue;
            }
            ++at;
            if (byte >= 0x20 && byte != 0x7F) continue;
            if (byte == '\n' || byte == '\t') continue;
            result.isTidy = false;
            if (byte == 0) {
                ++result.zeros;
            } else if (byte == 0x1B) {
                ++result.escapes;
            } else if (byte < 0x08 || byte > 0x0D) {
                ++result.controls;
            }
        }
    }
    if (hasReturn || result.broken > 0) result.isTidy = false;
    return result;
}

struct Mark {
    std::string_view bytes;
    const char* charset;
};
/// The longer ones first: that of UTF-32LE begins like that of UTF-16LE.
constexpr Mark marks[] = {
    {"\xFF\xFE\0\0"sv, "UTF-32LE"},
    {"\0\0\xFE\xFF"sv, "UTF-32BE"},
    {"\xFF\xFE"sv, "UTF-16LE"},
    {"\xFE\xFF"sv, "UTF-16BE"},
};
constexpr auto markUTF8 = "\xEF\xBB\xBF"sv;

/// UTF-16 and UTF-32 without a mark: Western text, and spaces and line ends of every other, have
/// their zeros in the same places of each unit.
const char* wideCharset(std::string_view bytes) {
    bytes = bytes.substr(0, 4096);
    bytes.remove_suffix(bytes.size() % 4);
    if (bytes.size() < 8) return nullptr;
    std::array<std::size_t, 4> zeros{};
    for (std::size_t i = 0; i < bytes.size(); ++i) zeros[i % 4] += bytes[i] == 0;
    const std::size_t units = bytes.size() / 4;
    const std::size_t few = units / 50;
    if (zeros[3] == units && zeros[2] > units - few - 1 && zeros[0] <= few) return "UTF-32LE";
    if (zeros[0] == units && zeros[1] > units - few - 1 && zeros[3] <= few) return "UTF-32BE";
    const std::size_t even = zeros[0] + zeros[2], odd = zeros[1] + zeros[3];
    if (odd > units / 5 && even <= few) return "UTF-16LE";
    if (even > units / 5 && odd <= few) return "UTF-16BE";
    return nullptr;
}

/// The lines that hold bytes above ASCII, since only those tell encodings apart.
std::string tellingLines(std::string_view bytes) {
    constexpr std::size_t enough = 8192;
    std::string lines;
    for (std::size_t at = 0; at < bytes.size() && lines.size() < enough;) {
        const std::size_t feed = std::min(bytes.find('\n', at), bytes.size());
        const std::string_view line = bytes.substr(at, std::min(feed - at, enough));
        if (!Text::isASCII(line)) lines.append(line).append("\n");
        at = feed + 1;
    }
    return lines;
}

/// The first `mostBytes` bytes at most, without a torn character of UTF-8 at their end.
std::string_view withinLimit(std::string_view bytes) {
    if (bytes.size() <= mostBytes) return bytes;
    std::size_t end = mostBytes;
    while (end > mostBytes - 4 && (static_cast<Byte>(bytes[end]) & 0xC0) == 0x80) --end;
    return bytes.substr(0, end);
}

std::optional<std::string_view> convert(std::string_view bytes, const char* charset,
                                        std::string& storage) {
    storage.clear();
    if (!Charset::append(storage, bytes, charset, mostBytes)) return std::nullopt;
    return storage;
}

std::optional<std::string_view> decode(std::string_view bytes, std::string& storage, Scan& found) {
    for (const Mark& mark : marks) {
        if (!bytes.starts_with(mark.bytes)) continue;
        const auto text =
            convert(bytes.substr(mark.bytes.size(), mostBytes), mark.charset, storage);
        if (text) found = scan(*text);
        return text;
    }
    const bool isMarked = bytes.starts_with(markUTF8);
    if (isMarked) bytes.remove_prefix(markUTF8.size());
    bytes = withinLimit(bytes);
    found = scan(bytes);
    if (found.zeros > 0 && !isMarked) {
        if (const char* charset = wideCharset(bytes)) {
            const auto text = convert(bytes, charset, storage);
            if (text) found = scan(*text);
            // What only looked like it has characters that are none.
            if (text && found.zeros == 0 && found.controls <= text->size() / 64) return text;
            found = scan(bytes);
        }
    }
    // Packed and random bytes have twice as many; terminal protocols and torn files fewer.
    if ((found.zeros + found.controls) > bytes.size() / 16) return std::nullopt;
    if (found.escapes > 0 && found.sequences == 0 && bytes.find("\x1B$") != bytes.npos) {
        const auto charset = Charset::detect(bytes.substr(bytes.find("\x1B$")));
        if (charset && charset->starts_with("ISO-2022")) {
            const auto text = convert(bytes, charset->c_str(), storage);
            if (text) found = scan(*text);
            return text;
        }
    }
    if (found.broken == 0) return bytes;
    if (isMarked || found.sequences / 8 > found.broken) {
        storage = Text::sanitized(bytes);
        return storage;
    }
    const auto charset = Charset::detect(tellingLines(bytes));
    const auto text = convert(bytes, charset ? charset->c_str() : "windows-1252", storage);
    if (text) found = scan(*text);
    return text;
}

/// Where the text is to be cut; its size when it is short enough.
std::size_t cutAt(std::string_view text) {
    if (text.size() <= TextExtractor::maxCharacters) return text.size();
    std::size_t characters = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if ((static_cast<Byte>(text[at]) & 0xC0) == 0x80) continue;
        if (++characters > TextExtractor::maxCharacters) return at;
    }
    return text.size();
}

/// Moves `text` together over what is dropped; it grows nowhere.
void tidyInPlace(std::string& text) {
    std::size_t out = 0;
    for (std::size_t at = 0; at < text.size();) {
        const char first = text[at];
        const auto byte = static_cast<Byte>(first);
        if (byte < 0x80) {
            ++at;
            if (first == '\r' && at < text.size() && text[at] == '\n') continue;
            const bool endsLine = first == '\r' || first == '\v' || first == '\f';
            if (endsLine) {
                text[out++] = '\n';
            } else if ((byte >= 0x20 && byte != 0x7F) || first == '\n' || first == '\t') {
                text[out++] = first;
            }
            continue;
        }
        const std::size_t length = sequenceLength(text, at);
        const std::string_view sequence = std::string_view(text).substr(at, length);
        if (const std::string_view letters = lettersOf(sequence); !letters.empty()) {
            for (const char letter : letters) text[out++] = letter;
        } else if (isUntidySequence(sequence)) {
            const bool endsLine = sequence[0] == '\xE2' || sequence[1] == '\x85';
            if (endsLine) text[out++] = '\n';
        } else {
            for (std::size_t i = 0; i < length; ++i) text[out++] = text[at + i];
        }
        at += length;
    }
    text.resize(out);
}

void finish(std::string& text, const Scan& found) {
    if (found.broken > 0) text = Text::sanitized(text);
    if (!found.isTidy) tidyInPlace(text);
    text.resize(cutAt(text));
    if (text.find_first_not_of(" \t\n") == text.npos) text.clear();
}

}  // namespace

bool isPlain(std::string_view fileName) {
    if (TextExtractor::method(fileName) != TextExtractor::Method::plain) return false;
    const std::string ext = Text::lowercasedASCII(pathExtension(fileName));
    return ext != "eml" && ext != "emlx";
}

std::optional<std::string_view> decode(std::string_view bytes, std::string& storage) {
    Scan found;
    return decode(bytes, storage, found);
}

std::optional<std::string> text(std::string bytes) {
    std::string storage;
    Scan found;
    const auto decoded = decode(std::string_view(bytes), storage, found);
    if (!decoded) return std::nullopt;
    if (decoded->data() == storage.data()) {
        bytes = std::move(storage);
        found.broken = 0;
    } else {
        const auto before = static_cast<std::size_t>(decoded->data() - bytes.data());
        bytes.resize(before + decoded->size());
        bytes.erase(0, before);
    }
    finish(bytes, found);
    return bytes;
}

void tidy(std::string& text) { finish(text, scan(text)); }

}  // namespace tarn::PlainText
