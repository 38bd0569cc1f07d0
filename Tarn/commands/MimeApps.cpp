#include "Tarn/commands/MimeApps.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <system_error>

#include <sys/types.h>

#include "Tarn/commands/DesktopFiles.h"
#include "Tarn/commands/KeyFile.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/ForeignFile.h"

namespace tarn {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view chosen = "Default Applications";
constexpr std::string_view added = "Added Associations";
constexpr std::string_view removed = "Removed Associations";

using Ids = std::vector<std::string>;

Ids ids(std::string_view list) {
    Ids all;
    for (const std::string_view piece : Text::split(list, ';'))
        if (const std::string_view id = Text::trimmed(piece); !id.empty()) all.emplace_back(id);
    return all;
}

/// The list without an id, the rest of it as it stands.
std::string without(std::string_view list, std::string_view id) {
    std::string out;
    while (!list.empty()) {
        const std::size_t semicolon = list.find(';');
        const std::size_t end = semicolon == list.npos ? list.size() : semicolon + 1;
        if (Text::trimmed(list.substr(0, semicolon)) != id) out += list.substr(0, end);
        list.remove_prefix(end);
    }
    return out;
}

std::string rawList(const std::string& text, std::string_view group, std::string_view type) {
    return KeyFile::value(KeyFile::group(text, group), type);
}

Ids listed(const std::string& text, std::string_view group, std::string_view type) {
    return ids(rawList(text, group, type));
}

void append(Ids& all, const Ids& more, const std::set<std::string>& hidden = {}) {
    for (const std::string& id : more)
        if (!hidden.contains(id) && std::ranges::find(all, id) == all.end()) all.push_back(id);
}

constexpr std::size_t largestList = 1 << 20;
/// As all programs leave it: there is nothing secret in it.
constexpr mode_t listMode = 0644;

/// Changes the user's own list on the disk.
void edit(const std::function<std::string(const std::string&)>& change) {
    const URL folder = Paths::configHome();
    std::error_code ignored;
    std::filesystem::create_directories(folder.path(), ignored);
    const int failure =
        ForeignFile::edit(folder.appending("mimeapps.list"), listMode, largestList,
                          [&](const std::string& list) { return std::optional(change(list)); });
    if (failure != 0)
        throw Error("Couldn’t change which programs open files. " + systemErrorSentence(failure));
}

}  // namespace

Ids MimeApps::defaults(std::string_view mimeType) {
    Ids all;
    for (const fs::path& list : DesktopFiles::mimeAppsLists())
        append(all, listed(DesktopFiles::contents(list), chosen, mimeType));
    return all;
}

Ids MimeApps::openers(std::string_view mimeType) {
    Ids all;
    std::set<std::string> hidden;
    for (const fs::path& list : DesktopFiles::mimeAppsLists()) {
        const std::string text = DesktopFiles::contents(list);
        if (text.empty()) continue;
        append(all, listed(text, added, mimeType), hidden);
        // Counts for the lists that come later and for what programs say of themselves.
        for (std::string& id : listed(text, removed, mimeType)) hidden.insert(std::move(id));
    }
    for (const fs::path& folder : DesktopFiles::entryFolders()) {
        const std::string cache = DesktopFiles::contents(folder / "mimeinfo.cache");
        append(all, listed(cache, "MIME Cache", mimeType), hidden);
    }
    return all;
}

std::string MimeApps::prefer(std::string_view list, std::string_view mimeType,
                             std::string_view id) {
    std::string text(list);
    const std::string before = without(rawList(text, chosen, mimeType), id);
    text = KeyFile::with(text, chosen, mimeType, std::string(id) + ";" + before);
    // A program that was taken away from the type is no choice for it.
    const std::string gone = rawList(text, removed, mimeType);
    if (const std::string rest = without(gone, id); rest != gone)
        text = KeyFile::with(text, removed, mimeType,
                             rest.empty() ? std::nullopt : std::optional(rest));
    return text;
}

std::string MimeApps::giveUp(std::string_view list, std::string_view mimeType,
                             std::string_view id) {
    const std::string before = rawList(std::string(list), chosen, mimeType);
    const std::string rest = without(before, id);
    if (rest == before) return std::string(list);
    return KeyFile::with(list, chosen, mimeType,
                         ids(rest).empty() ? std::nullopt : std::optional(rest));
}

void MimeApps::choose(std::string_view mimeType, std::string_view id) {
    edit([=](const std::string& list) { return prefer(list, mimeType, id); });
}

void MimeApps::forget(std::string_view mimeType, std::string_view id) {
    edit([=](const std::string& list) { return giveUp(list, mimeType, id); });
}

}  // namespace tarn
