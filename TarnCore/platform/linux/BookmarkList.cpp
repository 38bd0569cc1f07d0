#include "TarnCore/platform/linux/BookmarkList.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "TarnCore/platform/DesktopURI.h"
#include "TarnCore/platform/linux/XMLTags.h"

namespace tarn {
namespace {

constexpr std::string_view desktopOwner = "http://freedesktop.org";
constexpr std::string_view emptyList =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<xbel version="1.0"
      xmlns:bookmark="http://www.freedesktop.org/standards/desktop-bookmarks"
      xmlns:mime="http://www.freedesktop.org/standards/shared-mime-info"
>
</xbel>
)";

std::string valueOf(std::string_view text, const XMLTag& tag, std::string_view name) {
    const XMLTag::Attribute* attribute = tag.attribute(name);
    if (!attribute) return {};
    return XMLText::unescaped(text.substr(attribute->begin, attribute->end - attribute->begin));
}

std::optional<URL> urlOf(std::string_view text, const XMLTag& tag) {
    return URL::parse(valueOf(text, tag, "href"));
}

std::string applicationTag(const BookmarkUse& use) {
    // The command is quoted as for a shell, which is how the desktop's own library writes it.
    return "<bookmark:application name=\"" + XMLText::escaped(use.program) + "\" exec=\"" +
           XMLText::escaped("'" + use.command + "'") + "\" modified=\"" + use.when.iso8601() +
           "\" count=\"1\"/>";
}

std::string infoElement(const BookmarkUse& use) {
    return "    <info>\n      <metadata owner=\"" + std::string(desktopOwner) +
           "\">\n        <mime:mime-type type=\"" + XMLText::escaped(use.mimeType) +
           "\"/>\n        <bookmark:applications>\n          " + applicationTag(use) +
           "\n        </bookmark:applications>\n      </metadata>\n    </info>\n";
}

/// Changes to a text at places of it.
class Edits {
public:
    explicit Edits(std::string_view text) : text_(text) {}

    void insert(std::size_t at, std::string with) { replace(at, at, std::move(with)); }
    void replace(std::size_t begin, std::size_t end, std::string with) {
        edits_.push_back({begin, end, std::move(with)});
    }
    /// Puts the value in the place of what the tag says, or at its end.
    void set(const XMLTag& tag, std::string_view name, const std::string& value) {
        if (const XMLTag::Attribute* attribute = tag.attribute(name))
            return replace(attribute->begin, attribute->end, XMLText::escaped(value));
        insert(tag.end - (tag.isEmpty ? 2 : 1),
               " " + std::string(name) + "=\"" + XMLText::escaped(value) + "\"");
    }

    std::string result() {
        std::ranges::stable_sort(edits_, {}, &Edit::begin);
        std::string out;
        std::size_t at = 0;
        for (const Edit& edit : edits_) {
            out += text_.substr(at, edit.begin - at);
            out += edit.with;
            at = edit.end;
        }
        out += text_.substr(at);
        return out;
    }

private:
    struct Edit {
        std::size_t begin;
        std::size_t end;
        std::string with;
    };
    std::string_view text_;
    std::vector<Edit> edits_;
};

/// What stands in the element of one file.
struct Bookmark {
    XMLTag open;
    std::optional<XMLTag> application;   ///< Of the program that is noted.
    std::optional<XMLTag> applications;  ///< The end of their list.
    std::optional<XMLTag> metadata;      ///< The end of what the desktop keeps.
    std::optional<XMLTag> close;
};

/// Reads on behind the opening tag.
Bookmark read(std::string_view text, XMLTagReader& tags, const XMLTag& open,
              const std::string& program) {
    Bookmark bookmark;
    bookmark.open = open;
    bool isDesktops = false;
    while (!open.isEmpty) {
        const auto tag = tags.next();
        if (!tag) break;
        if (tag->isEnd && tag->name == "bookmark") {
            bookmark.close = tag;
            break;
        }
        if (tag->name == "metadata" && !tag->isEnd && !tag->isEmpty)
            isDesktops = valueOf(text, *tag, "owner") == desktopOwner;
        if (!isDesktops) continue;
        if (tag->name == "metadata" && tag->isEnd) {
            bookmark.metadata = tag;
            isDesktops = false;
        }
        if (tag->name == "bookmark:applications" && tag->isEnd) bookmark.applications = tag;
        if (tag->name == "bookmark:application" && !tag->isEnd &&
            valueOf(text, *tag, "name") == program)
            bookmark.application = tag;
    }
    return bookmark;
}

std::int64_t number(const std::string& text) {
    std::int64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

void noteUse(Edits& edits, std::string_view text, const Bookmark& bookmark,
             const BookmarkUse& use) {
    const std::string when = use.when.iso8601();
    if (bookmark.open.isEmpty) {
        edits.set(bookmark.open, "modified", when);
        edits.set(bookmark.open, "visited", when);
        edits.replace(bookmark.open.end - 2, bookmark.open.end,
                      ">\n" + infoElement(use) + "  </bookmark>");
        return;
    }
    edits.set(bookmark.open, "modified", when);
    edits.set(bookmark.open, "visited", when);
    if (bookmark.application) {
        const std::int64_t count = number(valueOf(text, *bookmark.application, "count"));
        edits.set(*bookmark.application, "modified", when);
        edits.set(*bookmark.application, "count",
                  std::to_string(std::max<std::int64_t>(count, 0) + 1));
    } else if (bookmark.applications) {
        edits.insert(bookmark.applications->begin, "  " + applicationTag(use) + "\n        ");
    } else if (bookmark.metadata) {
        edits.insert(bookmark.metadata->begin, "  <bookmark:applications>\n          " +
                                                   applicationTag(use) +
                                                   "\n        </bookmark:applications>\n      ");
    } else {
        edits.insert(bookmark.close->begin, "\n" + infoElement(use) + "  ");
    }
}

}  // namespace

std::vector<RecentFile> parseBookmarkList(std::string_view text) {
    std::vector<RecentFile> files;
    XMLTagReader tags(text);
    while (const auto tag = tags.next()) {
        if (tag->name != "bookmark" || tag->isEnd) continue;
        const auto url = urlOf(text, *tag);
        if (!url) continue;
        for (const char* name : {"visited", "modified", "added"}) {
            const auto date = Date::fromISO8601(valueOf(text, *tag, name));
            if (!date) continue;
            files.push_back({*url, *date});
            break;
        }
    }
    return files;
}

std::optional<std::string> noteInBookmarkList(std::string_view text, const BookmarkUse& use) {
    if (text.empty()) text = emptyList;
    Edits edits(text);
    XMLTagReader tags(text);
    std::optional<std::size_t> end;
    bool isNoted = false;
    while (const auto tag = tags.next()) {
        if (tag->name == "xbel" && tag->isEnd) end = tag->begin;
        if (isNoted || tag->name != "bookmark" || tag->isEnd || urlOf(text, *tag) != use.url)
            continue;
        const Bookmark bookmark = read(text, tags, *tag, use.program);
        if (!bookmark.open.isEmpty && !bookmark.close) return std::nullopt;
        noteUse(edits, text, bookmark, use);
        isNoted = true;
    }
    if (!end) return std::nullopt;
    if (!isNoted) {
        const std::string when = use.when.iso8601();
        edits.insert(*end, "  <bookmark href=\"" + XMLText::escaped(desktopURI(use.url)) +
                               "\" added=\"" + when + "\" modified=\"" + when + "\" visited=\"" +
                               when + "\">\n" + infoElement(use) + "  </bookmark>\n");
    }
    return edits.result();
}

}  // namespace tarn
