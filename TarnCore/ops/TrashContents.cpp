#include "TarnCore/ops/TrashContents.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <system_error>

#include <unistd.h>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::TrashContents {
namespace {

FileSystem& files() { return *Platform::current().files; }

std::vector<std::string> namesIn(const URL& folder) {
    std::vector<std::string> names;
    const auto reader = files().openFolder(folder);
    for (auto batch = reader->read(); !batch.empty(); batch = reader->read())
        for (const FolderEntry& entry : batch) names.emplace_back(entry.view());
    return names;
}

/// Bytes on the disk of an item and everything in it.
std::int64_t sizeOf(const URL& root, const CancelToken& token) {
    std::int64_t bytes = 0;
    std::vector<URL> waiting = {root};
    while (!waiting.empty() && !token.isCancelled()) {
        const URL url = std::move(waiting.back());
        waiting.pop_back();
        const auto item = files().attributes(url, Links::keep);
        if (!item) continue;
        if (item->type != FileType::directory) {
            bytes += item->allocatedSize;
            continue;
        }
        try {
            for (const std::string& name : namesIn(url)) waiting.push_back(url.appending(name));
        } catch (const std::system_error&) {
            // Not to be read: it counts with what is known of it, nothing.
        }
    }
    return bytes;
}

void removeIfEmpty(const URL& folder) {
    try {
        files().removeFolder(folder);
    } catch (const std::system_error&) {
        // Something else lies in it, or it is gone.
    }
}

/// Where the Trash of a disk other than the home's keeps its items (freedesktop.org Trash
/// specification 1.0, "Trash directories").
std::array<URL, 2> foldersOf(const Mount& mount) {
    const std::string user = std::to_string(getuid());
    return {mount.mountPoint.appending(".Trash/" + user + "/files"),
            mount.mountPoint.appending(".Trash-" + user + "/files")};
}

/// A folder that cannot be read cannot be watched either.
bool canList(const URL& folder) {
    try {
        files().openFolder(folder);
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

/// Calls `each` for every item of the private trash; each lies in a folder of its own.
template <class Each>
void forEachPrivate(const URL& trash, const CancelToken& token, const Each& each) {
    if (!FileOps::exists(trash)) return;
    for (const std::string& holder : namesIn(trash))
        for (const std::string& name : namesIn(trash.appending(holder))) {
            if (token.isCancelled()) return;
            if (name != ".DS_Store" && name != ".localized")
                each(trash.appending(holder).appending(name));
        }
}

}  // namespace

Trash::Measured measure(const CancelToken& token) {
    const auto own = FileOps::privateTrash();
    if (!own) return Platform::current().trash->measure(token);
    Trash::Measured measured;
    try {
        forEachPrivate(*own, token, [&](const URL& item) {
            ++measured.items;
            measured.bytes += sizeOf(item, token);
        });
    } catch (const std::system_error&) {
        measured.isUnreadable = true;
    }
    return measured;
}

Trash::Emptied empty(const CancelToken& token, const std::function<void()>& progress) {
    const auto own = FileOps::privateTrash();
    if (!own) return Platform::current().trash->empty(token, progress);
    Trash::Emptied emptied;
    TreeRemoval how;
    how.token = token;
    how.removed = progress;
    how.unlocksFolders = true;
    try {
        forEachPrivate(*own, token, [&](const URL& item) {
            const TreeRemoved removed = files().removeTree(item, how);
            if (removed.kept == 0) {
                ++emptied.items;
                removeIfEmpty(item.parent());
            } else if (!token.isCancelled()) {
                ++emptied.failed;
            }
        });
    } catch (const std::system_error&) {
        ++emptied.failed;
    }
    return emptied;
}

FileChange putBack(const URL& trashed) {
    const auto& trash = Platform::current().trash;
    const auto origin = trash ? trash->origin(trashed) : std::nullopt;
    if (!origin)
        throw FileOpError::failed("Couldn’t put " + Text::quoted(trashed.name()) +
                                  " back because nobody noted where it was.");
    const URL place = FileOps::exists(origin->url) ? FileOps::uniqueURL(origin->url) : origin->url;
    FileOps::revert({Step::move(place, trashed)});
    return {place, {Step::create(place)}};
}

std::vector<URL> holders() {
    const auto own = FileOps::privateTrash();
    if (!own) return Platform::current().trash->folders();
    std::vector<URL> all;
    try {
        for (const std::string& name : namesIn(*own)) all.push_back(own->appending(name));
    } catch (const std::system_error&) {
        // Nothing was trashed yet.
    }
    return all;
}

std::vector<URL> watched() {
    if (const auto own = FileOps::privateTrash()) {
        std::vector<URL> all = holders();
        all.insert(all.begin(), *own);
        return all;
    }
    std::vector<URL> all = Platform::current().trash->folders();
    for (const Mount& mount : Platform::current().volumes->mounts()) {
        if (mount.isPseudo || mount.isNetwork || mount.isReadOnly || !canList(mount.mountPoint))
            continue;
        for (URL& folder : foldersOf(mount))
            if (std::ranges::find(all, folder) == all.end()) all.push_back(std::move(folder));
    }
    return all;
}

std::vector<URL> possibleFolders() {
    if (FileOps::privateTrash()) {
        const std::vector<URL> all = holders();
        return all.empty() ? std::vector{Paths::trash()} : all;
    }
    std::vector<URL> all = {Paths::trash()};
    for (const Mount& mount : Platform::current().volumes->mounts()) {
        if (mount.isPseudo) continue;
        std::ranges::move(foldersOf(mount), std::back_inserter(all));
    }
    return all;
}

}  // namespace tarn::TrashContents
