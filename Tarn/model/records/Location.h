#pragma once

#include <string>
#include <string_view>

#include "Tarn/model/records/LibraryItem.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/base/UUID.h"

namespace tarn {

/// What a pane shows. Stored as an object with one key, the case: {"folder": {"_0": "file:///a"}},
/// {"archive": {"_0": "file:///a.zip", "_1": "inner"}}, {"home": {}}.
struct Location {
    enum class Case {
        folder,
        library,
        smartFolder,
        tag,
        archive,
        source,
        home,
        cleanup,
        duplicates,
        sources,
        tags
    };
    Case which = Case::home;
    URL url;           ///< Of `folder`, and of the archive file for `archive`.
    std::string text;  ///< Name of `tag` and `source`; inner path of `archive`, "" for its root.
    LibraryItem libraryItem = LibraryItem::recents;
    UUID id;  ///< Of `smartFolder`.

    static Location folder(URL url) { return make(Case::folder, std::move(url), {}); }
    static Location library(LibraryItem item);
    static Location smartFolder(UUID id);
    static Location tag(std::string name) { return make(Case::tag, {}, std::move(name)); }
    static Location archive(URL url, std::string innerPath) {
        return make(Case::archive, std::move(url), std::move(innerPath));
    }
    static Location source(std::string name) { return make(Case::source, {}, std::move(name)); }
    static Location home() { return make(Case::home, {}, {}); }
    static Location cleanup() { return make(Case::cleanup, {}, {}); }
    static Location duplicates() { return make(Case::duplicates, {}, {}); }
    static Location sources() { return make(Case::sources, {}, {}); }
    static Location tags() { return make(Case::tags, {}, {}); }

    bool isFolder() const { return which == Case::folder; }
    bool isArchive() const { return which == Case::archive; }
    /// One of the places that are a query over the user's files.
    bool isQuery() const;
    /// The form to compare and to keep in a history: fields that the case does not use are empty,
    /// an inner path has no '/' at its ends.
    Location canonical() const;
    /// Name of its icon. A well-known folder has an icon of its own.
    std::string_view symbol() const;
    /// What a window that shows it is called. Smart folders are named by their record, not here.
    std::string title() const;

    bool operator==(const Location&) const = default;

private:
    static Location make(Case which, URL url, std::string text) {
        Location location;
        location.which = which;
        location.url = std::move(url);
        location.text = std::move(text);
        return location;
    }
};

void to_json(JSON& json, const Location& location);
/// Throws tarn::Error for a case that is not known.
void from_json(const JSON& json, Location& location);

}  // namespace tarn

template <>
struct std::hash<tarn::Location> {
    std::size_t operator()(const tarn::Location& location) const noexcept;
};
