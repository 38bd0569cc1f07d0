#include "Tarn/model/records/Location.h"

#include <algorithm>
#include <array>
#include <functional>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/JSONFields.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/search/HashCombine.h"

namespace tarn {
namespace {

using Case = Location::Case;

struct CaseNames {
    std::string_view key;
    std::string_view symbol;
    std::string_view title;  ///< Empty where the payload names it.
};

/// In the order of the enumeration.
constexpr std::array<CaseNames, 11> cases = {{
    {"folder", "folder", ""},
    {"library", "", ""},
    {"smartFolder", "folder.badge.gearshape", "Smart Folder"},
    {"tag", "tag", ""},
    {"archive", "archivebox", ""},
    {"source", "arrow.down.circle", ""},
    {"home", "house", "Start"},
    {"cleanup", "sparkles", "Cleanup"},
    {"duplicates", "doc.on.doc", "Duplicates"},
    {"sources", "arrow.down.circle", "Sources"},
    {"tags", "tag", "Tags"},
}};

const CaseNames& namesOf(Case which) { return cases[static_cast<std::size_t>(which)]; }

std::string_view folderSymbol(const URL& url) {
    const struct {
        URL url;
        std::string_view symbol;
    } wellKnown[] = {
        {Paths::home(), "house"},       {Paths::desktop(), "menubar.dock.rectangle"},
        {Paths::documents(), "doc"},    {Paths::downloads(), "arrow.down.circle"},
        {Paths::pictures(), "photo"},   {Paths::movies(), "film"},
        {Paths::music(), "music.note"}, {Paths::trash(), "trash"},
        {URL(), "desktopcomputer"},
    };
    for (const auto& folder : wellKnown) {
        if (folder.url == url) return folder.symbol;
    }
    return "folder";
}

std::string withoutOuterSlashes(std::string_view path) {
    while (path.starts_with('/')) path.remove_prefix(1);
    while (path.ends_with('/')) path.remove_suffix(1);
    return std::string(path);
}

}  // namespace

Location Location::library(LibraryItem item) {
    Location location = make(Case::library, {}, {});
    location.libraryItem = item;
    return location;
}

Location Location::smartFolder(UUID id) {
    Location location = make(Case::smartFolder, {}, {});
    location.id = id;
    return location;
}

bool Location::isQuery() const {
    return which == Case::library || which == Case::smartFolder || which == Case::tag ||
           which == Case::source;
}

Location Location::canonical() const {
    switch (which) {
        case Case::folder:
            return folder(url);
        case Case::library:
            return library(libraryItem);
        case Case::smartFolder:
            return smartFolder(id);
        case Case::archive:
            return archive(url, withoutOuterSlashes(text));
        case Case::tag:
        case Case::source:
            return make(which, {}, text);
        default:
            return make(which, {}, {});
    }
}

std::string_view Location::symbol() const {
    if (which == Case::folder) return folderSymbol(url);
    if (which == Case::library) return LibraryItems::symbol(libraryItem);
    return namesOf(which).symbol;
}

std::string Location::title() const {
    switch (which) {
        case Case::folder:
            return Paths::displayName(url);
        case Case::library:
            return std::string(LibraryItems::title(libraryItem));
        case Case::tag:
        case Case::source:
            return Text::sanitized(text);
        case Case::archive:
            return text.empty() ? Paths::displayName(url)
                                : Text::sanitized(text.substr(text.rfind('/') + 1));
        default:
            return std::string(namesOf(which).title);
    }
}

void to_json(JSON& json, const Location& location) {
    JSON payload = JSON::object();
    switch (location.which) {
        case Case::folder:
            payload["_0"] = location.url;
            break;
        case Case::library:
            payload["_0"] = std::string(LibraryItems::rawValue(location.libraryItem));
            break;
        case Case::smartFolder:
            payload["_0"] = location.id;
            break;
        case Case::archive:
            payload["_0"] = location.url;
            payload["_1"] = location.text;
            break;
        case Case::tag:
        case Case::source:
            payload["_0"] = location.text;
            break;
        default:
            break;
    }
    json = JSON::object();
    json[std::string(namesOf(location.which).key)] = std::move(payload);
}

void from_json(const JSON& json, Location& location) {
    if (!json.is_object() || json.size() != 1)
        throw Error("A stored place must have exactly one key.");
    const std::string& key = json.begin().key();
    const JSON& payload = json.begin().value();
    const auto found = std::find_if(cases.begin(), cases.end(),
                                    [&key](const CaseNames& names) { return names.key == key; });
    if (found == cases.end()) throw Error(Text::quoted(key) + " is not a place.");
    Location read;
    read.which = static_cast<Case>(found - cases.begin());
    switch (read.which) {
        case Case::folder:
            read.url = payload.at("_0").get<URL>();
            break;
        case Case::library: {
            const auto raw = payload.at("_0").get<std::string>();
            const auto item = LibraryItems::fromRawValue(raw);
            if (!item) throw Error(Text::quoted(raw) + " is not in the library.");
            read.libraryItem = *item;
            break;
        }
        case Case::smartFolder:
            read.id = payload.at("_0").get<UUID>();
            break;
        case Case::archive:
            read.url = payload.at("_0").get<URL>();
            JSONFields::read(payload, "_1", read.text);
            break;
        case Case::tag:
        case Case::source:
            read.text = payload.at("_0").get<std::string>();
            break;
        default:
            break;
    }
    location = std::move(read);
}

}  // namespace tarn

std::size_t std::hash<tarn::Location>::operator()(const tarn::Location& location) const noexcept {
    return tarn::hashOf(location.which, location.url, location.text, location.libraryItem,
                        location.id.string());
}
