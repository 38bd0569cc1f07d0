#include "TarnCore/base/PropertyList.h"

#include <cstdint>

#include "TarnCore/base/Text.h"

namespace tarn::PropertyList {
namespace {

constexpr std::string_view header = "bplist00";
constexpr std::size_t trailerSize = 32;
/// Members may share one object, so that a few bytes could stand for gigabytes of text. No
/// attribute of a file comes near this.
constexpr std::size_t mostText = 16'000'000;

// The high half of the byte that begins an object.
enum Marker : unsigned {
    integer = 0x1,
    data = 0x4,
    ascii = 0x5,
    utf16 = 0x6,
    utf8 = 0x7,
    array = 0xA,
    dictionary = 0xD
};

std::string fromUTF16(std::string_view bigEndian) {
    const auto unit = [&](std::size_t at) {
        return static_cast<char32_t>(static_cast<unsigned char>(bigEndian[at]) << 8 |
                                     static_cast<unsigned char>(bigEndian[at + 1]));
    };
    std::string out;
    for (std::size_t at = 0; at + 1 < bigEndian.size(); at += 2) {
        char32_t character = unit(at);
        if (character >= 0xD800 && character < 0xDC00 && at + 3 < bigEndian.size() &&
            unit(at + 2) >= 0xDC00 && unit(at + 2) < 0xE000) {
            character = 0x10000 + ((character - 0xD800) << 10) + (unit(at + 2) - 0xDC00);
            at += 2;
        } else if (character >= 0xD800 && character < 0xE000) {
            character = 0xFFFD;
        }
        Text::append(out, character);
    }
    return out;
}

void appendNumber(std::string& out, std::uint64_t value, unsigned size) {
    while (size > 0) out += static_cast<char>(value >> (--size * 8) & 0xFF);
}

/// 1, 2, 4 or 8 bytes.
unsigned sizeFor(std::uint64_t value) {
    if (value < 0x100) return 1;
    if (value < 0x10000) return 2;
    return value < 0x100000000 ? 4 : 8;
}

void appendHead(std::string& out, Marker marker, std::uint64_t count) {
    const auto high = static_cast<unsigned>(marker) << 4;
    if (count < 15) {
        out += static_cast<char>(high | count);
        return;
    }
    const unsigned size = sizeFor(count);
    out += static_cast<char>(high | 15);
    out += static_cast<char>(integer << 4 | (size == 1   ? 0U
                                             : size == 2 ? 1U
                                             : size == 4 ? 2U
                                                         : 3U));
    appendNumber(out, count, size);
}

void appendString(std::string& out, const std::string& text) {
    if (Text::isASCII(text)) {
        appendHead(out, ascii, text.size());
        out += text;
        return;
    }
    std::string units;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t character = Text::nextCharacter(text, at);
        if (character < 0x10000) {
            appendNumber(units, character, 2);
        } else {
            appendNumber(units, 0xD800 + ((character - 0x10000) >> 10), 2);
            appendNumber(units, 0xDC00 + ((character - 0x10000) & 0x3FF), 2);
        }
    }
    appendHead(out, utf16, units.size() / 2);
    out += units;
}

}  // namespace

/// What begins an object: its kind, its count, and where its content starts.
struct Document::Head {
    unsigned marker = 0;
    std::uint64_t count = 0;
    std::uint64_t content = 0;
};

std::optional<Document> Document::open(std::string_view bytes) {
    if (bytes.size() < header.size() + trailerSize || !bytes.starts_with(header))
        return std::nullopt;
    Document document;
    document.bytes_ = bytes;
    const std::uint64_t trailer = bytes.size() - trailerSize;
    document.offsetSize_ = *document.number(trailer + 6, 1);
    document.referenceSize_ = *document.number(trailer + 7, 1);
    document.objectCount_ = *document.number(trailer + 8, 8);
    document.top_ = *document.number(trailer + 16, 8);
    document.offsetTable_ = *document.number(trailer + 24, 8);
    // Every object and every offset takes a byte at least, which keeps the sums below small.
    if (document.objectCount_ > bytes.size() || document.offsetTable_ > trailer)
        return std::nullopt;
    return document;
}

std::optional<std::uint64_t> Document::number(std::uint64_t at, std::uint64_t size) const {
    const auto bytes = slice(at, size);
    if (!bytes || size == 0 || size > 8) return std::nullopt;
    std::uint64_t value = 0;
    for (const char byte : *bytes) value = value << 8 | static_cast<unsigned char>(byte);
    return value;
}

std::optional<std::string_view> Document::slice(std::uint64_t at, std::uint64_t size) const {
    if (at > bytes_.size() || size > bytes_.size() - at) return std::nullopt;
    return bytes_.substr(at, size);
}

std::optional<std::uint64_t> Document::place(Object object) const {
    if (object >= objectCount_) return std::nullopt;
    const auto at = number(offsetTable_ + object * offsetSize_, offsetSize_);
    return at && *at < bytes_.size() - trailerSize ? at : std::nullopt;
}

bool Document::exists(Object object) const { return place(object).has_value(); }

std::optional<Document::Head> Document::head(Object object) const {
    const auto at = place(object);
    if (!at) return std::nullopt;
    const auto first = number(*at, 1);
    Head head{static_cast<unsigned>(*first >> 4), *first & 15, *at + 1};
    if (head.count != 15) return head;
    // A count of 15 or more follows as an integer object of 2^n bytes.
    const auto kind = number(*at + 1, 1);
    if (!kind || *kind >> 4 != integer || (*kind & 15) > 3) return std::nullopt;
    const std::uint64_t size = std::uint64_t{1} << (*kind & 15);
    const auto count = number(*at + 2, size);
    if (!count) return std::nullopt;
    head.count = *count;
    head.content = *at + 2 + size;
    return head;
}

std::optional<Document::Object> Document::member(Object object, std::string_view key) const {
    const auto head = this->head(object);
    if (!head || head->marker != dictionary || head->count > bytes_.size()) return std::nullopt;
    for (std::uint64_t i = 0; i < head->count; ++i) {
        // The references of all keys, then those of all values.
        const auto name = number(head->content + i * referenceSize_, referenceSize_);
        if (!name) return std::nullopt;
        const auto nameHead = this->head(*name);
        // A key that is longer than it should be is not this one, and may be shared by many.
        if (!nameHead || nameHead->count > key.size() || string(*nameHead) != key) continue;
        return number(head->content + (head->count + i) * referenceSize_, referenceSize_);
    }
    return std::nullopt;
}

std::optional<std::vector<Document::Object>> Document::items(Object object) const {
    const auto head = this->head(object);
    if (!head || head->marker != array || head->count > bytes_.size()) return std::nullopt;
    std::vector<Object> items;
    for (std::uint64_t i = 0; i < head->count; ++i) {
        const auto item = number(head->content + i * referenceSize_, referenceSize_);
        if (!item) return std::nullopt;
        items.push_back(*item);
    }
    return items;
}

std::optional<std::string> Document::string(const Head& head) const {
    const bool isWide = head.marker == utf16;
    if (!isWide && head.marker != ascii && head.marker != utf8) return std::nullopt;
    if (isWide && head.count > mostText) return std::nullopt;
    const auto bytes = slice(head.content, isWide ? head.count * 2 : head.count);
    if (!bytes) return std::nullopt;
    return isWide ? fromUTF16(*bytes) : Text::sanitized(*bytes);
}

std::optional<std::string> Document::string(Object object) const {
    const auto head = this->head(object);
    return head ? string(*head) : std::nullopt;
}

std::optional<std::string_view> Document::data(Object object) const {
    const auto head = this->head(object);
    if (!head || head->marker != PropertyList::data) return std::nullopt;
    return slice(head->content, head->count);
}

std::optional<std::vector<std::string>> stringArray(std::string_view bytes) {
    const auto document = Document::open(bytes);
    const auto items = document ? document->items(document->top()) : std::nullopt;
    if (!items) return std::nullopt;
    std::vector<std::string> strings;
    std::size_t length = 0;
    for (const Document::Object item : *items) {
        if (!document->exists(item)) return std::nullopt;
        auto text = document->string(item);
        if (!text) continue;
        length += text->size();
        if (length > mostText) return std::nullopt;
        strings.push_back(std::move(*text));
    }
    return strings;
}

std::string encode(const std::vector<std::string>& strings) {
    const std::uint64_t objectCount = strings.size() + 1;
    const unsigned referenceSize = sizeFor(objectCount);
    std::vector<std::uint64_t> offsets;
    offsets.reserve(objectCount);

    std::string out(header);
    offsets.push_back(out.size());
    appendHead(out, array, strings.size());
    for (std::uint64_t i = 1; i < objectCount; ++i) appendNumber(out, i, referenceSize);
    for (const std::string& text : strings) {
        offsets.push_back(out.size());
        appendString(out, text);
    }
    const std::uint64_t offsetTable = out.size();
    const unsigned offsetSize = sizeFor(offsetTable);
    for (const std::uint64_t offset : offsets) appendNumber(out, offset, offsetSize);
    out.append(6, '\0');
    appendNumber(out, offsetSize, 1);
    appendNumber(out, referenceSize, 1);
    appendNumber(out, objectCount, 8);
    appendNumber(out, 0, 8);
    appendNumber(out, offsetTable, 8);
    return out;
}

}  // namespace tarn::PropertyList
