#include "TarnCore/base/JSON.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

#include <nlohmann/json.hpp>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

/// Bytes that a JSON string cannot hold as they are.
bool needsEscape(char c) { return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\'; }

/// ASCII without such bytes, which stands as it is. Looks at eight bytes at once.
bool isPlain(std::string_view text) {
    constexpr std::uint64_t ones = 0x0101010101010101;
    constexpr std::uint64_t high = 0x8080808080808080;
    // Sets the high bit of the lowest byte that is 0, and perhaps those of higher ones.
    const auto zeroes = [](std::uint64_t word) { return (word - ones) & ~word; };
    const auto isAllPlain = [&](std::uint64_t word) {
        return ((word | (word - ones * 0x20) | zeroes(word ^ ones * '"') |
                 zeroes(word ^ ones * '\\')) &
                high) == 0;
    };
    std::uint64_t word = 0;
    std::size_t i = 0;
    for (; i + sizeof word <= text.size(); i += sizeof word) {
        std::memcpy(&word, text.data() + i, sizeof word);
        if (!isAllPlain(word)) return false;
    }
    for (; i < text.size(); ++i)
        if (needsEscape(text[i]) || static_cast<unsigned char>(text[i]) >= 0x80) return false;
    return true;
}

void appendEscaped(std::string& out, std::string_view text) {
    static constexpr std::string_view hex = "0123456789abcdef";
    std::size_t start = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!needsEscape(text[i])) continue;
        out.append(text, start, i - start);
        start = i + 1;
        switch (text[i]) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\t':
                out += "\\t";
                break;
            case '\r':
                out += "\\r";
                break;
            default:
                out += "\\u00";
                out += hex[static_cast<unsigned char>(text[i]) >> 4];
                out += hex[static_cast<unsigned char>(text[i]) & 15];
        }
    }
    out.append(text, start);
}

/// nlohmann's parser keeps its own stack, but destroying and copying documents recurse.
bool isTooDeep(std::string_view text) {
    constexpr int deepest = 512;
    int depth = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
            continue;
        }
        if (c == '"')
            inString = true;
        else if (c == '{' || c == '[') {
            if (++depth > deepest) return true;
        } else if (c == '}' || c == ']')
            --depth;
    }
    return false;
}

}  // namespace

void to_json(JSON& json, const Date& date) { json = date.seconds; }
void from_json(const JSON& json, Date& date) { date.seconds = json.get<double>(); }
void to_json(JSON& json, const URL& url) { json = url.string(); }
void from_json(const JSON& json, URL& url) {
    const auto parsed = URL::parse(json.get_ref<const std::string&>());
    if (!parsed) throw Error("The location isn’t a file URL.");
    url = *parsed;
}
void to_json(JSON& json, const UUID& uuid) { json = uuid.string(); }
void from_json(const JSON& json, UUID& uuid) {
    const auto parsed = UUID::parse(json.get_ref<const std::string&>());
    if (!parsed) throw Error("The identifier isn’t a UUID.");
    uuid = *parsed;
}

void JSONWriter::key(std::string_view name) {
    separate();
    out_ += '"';
    out_ += name;
    out_ += "\":";
    first_ = true;
}

void JSONWriter::string(std::string_view value) {
    separate();
    out_ += '"';
    if (isPlain(value))
        out_ += value;
    else if (Text::isValidUTF8(value))
        appendEscaped(out_, value);
    else
        appendEscaped(out_, Text::sanitized(value));
    out_ += '"';
}

void JSONWriter::boolean(bool value) {
    separate();
    out_ += value ? "true" : "false";
}

void JSONWriter::integer(std::int64_t value) {
    separate();
    char text[24];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    out_.append(text, end);
}

void JSONWriter::number(double value) {
    separate();
    if (!std::isfinite(value)) {
        out_ += "null";
        return;
    }
    char text[40];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    out_.append(text, end);
}

void JSONWriter::null() {
    separate();
    out_ += "null";
}

void JSONWriter::url(const URL& value) {
    separate();
    out_ += '"';
    value.appendTo(out_);  // percent-encoded: nothing to escape
    out_ += '"';
}

void JSONWriter::raw(std::string_view json) {
    separate();
    out_ += json;
}

namespace JSONText {

std::string pretty(const JSON& json) {
    return json.dump(2, ' ', false, JSON::error_handler_t::replace);
}

std::string compact(const JSON& json) {
    return json.dump(-1, ' ', false, JSON::error_handler_t::replace);
}

std::optional<JSON> parse(std::string_view text) {
    if (isTooDeep(text)) return std::nullopt;
    JSON json = JSON::parse(text, nullptr, /*allow_exceptions=*/false);
    if (json.is_discarded()) return std::nullopt;
    return json;
}

std::string fromPath(const URL& url) {
    return Text::isValidUTF8(url.path()) ? url.path() : url.string();
}

std::optional<URL> toPath(std::string_view text) {
    if (text.starts_with('/')) return URL::fromPath(text);
    return URL::parse(text);
}

}  // namespace JSONText
}  // namespace tarn
