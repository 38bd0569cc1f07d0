#include "TarnCore/platform/linux/BookmarkList.h"

#include <charconv>
#include <optional>
#include <string>

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

std::string unescaped(std::string_view text) {
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

struct Bookmark {
    std::optional<std::string> href;
    std::optional<Date> visited;
    std::optional<Date> modified;
    std::optional<Date> added;

    void set(std::string_view name, std::string_view value) {
        if (name == "href") href = unescaped(value);
        if (name == "visited") visited = Date::fromISO8601(value);
        if (name == "modified") modified = Date::fromISO8601(value);
        if (name == "added") added = Date::fromISO8601(value);
    }
};

/// Reads attributes up to the end of the tag and drops them from `text`.
Bookmark takeAttributes(std::string_view& text) {
    Bookmark bookmark;
    for (;;) {
        const std::size_t begin = text.find_first_not_of(" \t\r\n/");
        if (begin == text.npos) {
            text = {};
            return bookmark;
        }
        text.remove_prefix(begin);
        if (text[0] == '>') return bookmark;
        const std::size_t equals = text.find_first_of("=>");
        if (equals == text.npos || text[equals] == '>') {
            text.remove_prefix(equals == text.npos ? text.size() : equals);
            return bookmark;
        }
        std::string_view name = text.substr(0, equals);
        name = name.substr(0, name.find_first_of(spaces));
        const std::size_t quote = text.find_first_not_of(spaces, equals + 1);
        if (quote == text.npos || (text[quote] != '"' && text[quote] != '\'')) {
            text.remove_prefix(equals + 1);
            continue;
        }
        const std::size_t end = text.find(text[quote], quote + 1);
        if (end == text.npos) {
            text = {};
            return bookmark;
        }
        bookmark.set(name, text.substr(quote + 1, end - quote - 1));
        text.remove_prefix(end + 1);
    }
}

/// Drops everything up to and with `end`; all of it when there is no end.
void skipPast(std::string_view& text, std::string_view end) {
    const std::size_t at = text.find(end);
    text = at == text.npos ? std::string_view{} : text.substr(at + end.size());
}

}  // namespace

std::vector<RecentFile> parseBookmarkList(std::string_view text) {
    constexpr std::string_view tag = "<bookmark";
    std::vector<RecentFile> files;
    for (;;) {
        const std::size_t open = text.find('<');
        if (open == text.npos) return files;
        text.remove_prefix(open);
        if (text.starts_with("<!--")) {
            skipPast(text, "-->");
        } else if (text.starts_with("<![CDATA[")) {
            skipPast(text, "]]>");
        } else if (text.starts_with(tag) && text.size() > tag.size() &&
                   spaces.find(text[tag.size()]) != spaces.npos) {
            text.remove_prefix(tag.size());
            const Bookmark bookmark = takeAttributes(text);
            const auto url = bookmark.href ? URL::parse(*bookmark.href) : std::nullopt;
            const auto date = bookmark.visited    ? bookmark.visited
                              : bookmark.modified ? bookmark.modified
                                                  : bookmark.added;
            if (url && date) files.push_back({*url, *date});
        } else {
            text.remove_prefix(1);
        }
    }
}

}  // namespace tarn
