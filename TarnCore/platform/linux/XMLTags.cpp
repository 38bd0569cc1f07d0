#include "TarnCore/platform/linux/XMLTags.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

constexpr std::string_view spaces = " \t\r\n";

/// The character that "#65", "#x41" or "amp" stands for; 0 for none.
char32_t entity(std::string_view name) {
    constexpr struct {
        std::string_view name;
        char32_t character;
    } named[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
    for (const auto& one : named)
        if (one.name == name) return one.character;
    if (!name.starts_with('#')) return 0;
    const bool isHex = name.size() > 1 && (name[1] == 'x' || name[1] == 'X');
    const std::string_view digits = name.substr(isHex ? 2 : 1);
    std::uint32_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, isHex ? 16 : 10);
    const bool isCharacter = value < 0x110000 && (value < 0xD800 || value > 0xDFFF);
    if (error != std::errc() || end != digits.data() + digits.size() || !isCharacter) return 0;
    return static_cast<char32_t>(value);
}

}  // namespace

const XMLTag::Attribute* XMLTag::attribute(std::string_view wanted) const {
    const auto found = std::ranges::find(attributes, wanted, &Attribute::name);
    return found == attributes.end() ? nullptr : &*found;
}

bool XMLTagReader::skip(std::string_view begin, std::string_view end) {
    if (!text_.substr(at_).starts_with(begin)) return false;
    const std::size_t found = text_.find(end, at_ + begin.size());
    at_ = found == text_.npos ? text_.size() : found + end.size();
    return true;
}

std::optional<XMLTag> XMLTagReader::next() {
    for (;;) {
        at_ = text_.find('<', at_);
        if (at_ == text_.npos) {
            at_ = text_.size();
            return std::nullopt;
        }
        if (skip("<!--", "-->") || skip("<![CDATA[", "]]>") || skip("<?", "?>") || skip("<!", ">"))
            continue;
        return read();
    }
}

std::optional<XMLTag> XMLTagReader::read() {
    XMLTag tag;
    tag.begin = at_;
    std::size_t at = at_ + 1;
    at_ = text_.size();  // Unless it ends properly.
    if (at < text_.size() && text_[at] == '/') {
        tag.isEnd = true;
        ++at;
    }
    std::size_t end = text_.find_first_of(" \t\r\n/>", at);
    if (end == text_.npos) return std::nullopt;
    tag.name = text_.substr(at, end - at);
    for (;;) {
        at = text_.find_first_not_of(spaces, end);
        if (at == text_.npos) return std::nullopt;
        if (text_[at] == '>') break;
        if (text_[at] == '/') {
            tag.isEmpty = text_.substr(at + 1).starts_with('>');
            end = at + 1;
            continue;
        }
        end = text_.find_first_of("=>", at);
        if (end == text_.npos) return std::nullopt;
        if (text_[end] == '>') {
            at = end;
            break;
        }
        const std::string_view name = text_.substr(at, end - at);
        const std::size_t quote = text_.find_first_not_of(spaces, end + 1);
        if (quote == text_.npos) return std::nullopt;
        if (text_[quote] != '"' && text_[quote] != '\'') {
            end = quote;
            continue;
        }
        const std::size_t close = text_.find(text_[quote], quote + 1);
        if (close == text_.npos) return std::nullopt;
        tag.attributes.push_back({name.substr(0, name.find_first_of(spaces)), quote + 1, close});
        end = close + 1;
    }
    tag.end = at_ = at + 1;
    return tag;
}

std::string XMLText::unescaped(std::string_view text) {
    constexpr std::size_t longestEntity = 10;
    std::string out;
    while (!text.empty()) {
        const std::size_t ampersand = text.find('&');
        out += text.substr(0, ampersand);
        if (ampersand == text.npos) break;
        text.remove_prefix(ampersand);
        const std::size_t end = text.substr(0, longestEntity).find(';');
        const char32_t character = end == text.npos ? 0 : entity(text.substr(1, end - 1));
        if (character == 0) {
            out += '&';
            text.remove_prefix(1);
        } else {
            Text::append(out, character);
            text.remove_prefix(end + 1);
        }
    }
    return out;
}

std::string XMLText::escaped(std::string_view text) {
    std::string out;
    for (const char byte : text) {
        switch (byte) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            case '\'':
                out += "&apos;";
                break;
            default:
                out += byte;
        }
    }
    return out;
}

}  // namespace tarn
