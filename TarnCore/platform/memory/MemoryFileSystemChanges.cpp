#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/platform/memory/MemoryFileSystem.h"

namespace tarn {
namespace {

[[noreturn]] void fail(int errnum) {
    throw std::system_error(errnum, std::generic_category(), "memory disk");
}

}  // namespace

void MemoryFileSystem::ignoreCase() { disk_.lock()->ignoresCase = true; }

void MemoryFileSystem::addDisk(const URL& folder) { disk_.lock()->disks.push_back(folder); }

void MemoryFileSystem::onMove(Moved moved) { disk_.lock()->moved = std::move(moved); }

std::map<URL, MemoryFileSystem::Node>::const_iterator MemoryFileSystem::Disk::child(
    const URL& url) const {
    const auto exact = nodes.find(url);
    if (exact != nodes.end() || !ignoresCase) return exact;
    const std::string wanted = Text::lowercased(url.path());
    return std::find_if(nodes.begin(), nodes.end(), [&](const auto& entry) {
        return entry.first.path().size() == url.path().size() &&
               Text::lowercased(entry.first.path()) == wanted;
    });
}

URL MemoryFileSystem::Disk::free(const URL& url) const {
    const URL folder = find(url.parent(), Links::follow);
    if (nodes.at(folder).attributes.type != FileType::directory) fail(ENOTDIR);
    const URL place = folder.appending(url.name());
    if (child(place) != nodes.end()) fail(EEXIST);
    if (url.name().size() > 255) fail(ENAMETOOLONG);
    if (const auto failure = failures.find(place); failure != failures.end() && failure->second)
        fail(failure->second);
    return place;
}

const URL& MemoryFileSystem::Disk::diskOf(const URL& url) const {
    static const URL root;
    const auto found = std::ranges::find_if(
        disks, [&](const URL& folder) { return url.isInside(folder) && url != folder; });
    return found == disks.end() ? root : *found;
}

void MemoryFileSystem::createFolder(const URL& url) {
    const auto disk = disk_.lock();
    disk->add(disk->free(url), FileType::directory);
}

void MemoryFileSystem::createFolders(const URL& url) {
    if (const auto found = attributes(url, Links::follow)) {
        if (found->type != FileType::directory) fail(ENOTDIR);
        return;
    }
    createFolders(url.parent());
    createFolder(url);
}

void MemoryFileSystem::createFile(const URL& url, std::string_view content) {
    const auto disk = disk_.lock();
    Node& node = disk->add(disk->free(url), FileType::file);
    node.content = content;
    node.attributes.size = static_cast<std::int64_t>(content.size());
}

void MemoryFileSystem::createLink(const URL& url, std::string_view target) {
    const auto disk = disk_.lock();
    Node& node = disk->add(disk->free(url), FileType::symlink);
    node.content = target;
    node.attributes.size = static_cast<std::int64_t>(target.size());
}

void MemoryFileSystem::move(const URL& from, const URL& to) {
    URL source;
    URL target;
    Moved moved;
    {
        const auto disk = disk_.lock();
        source = disk->find(from, Links::keep);
        target = disk->free(to);
        if (disk->diskOf(source) != disk->diskOf(target)) fail(EXDEV);
        if (target.isInside(source)) fail(EINVAL);
        std::vector<std::pair<URL, Node>> nodes;
        std::erase_if(disk->nodes, [&](auto& entry) {
            if (!entry.first.isInside(source)) return false;
            const std::string rest = entry.first.path().substr(source.path().size());
            nodes.emplace_back(URL::fromPath(target.path() + rest), std::move(entry.second));
            return true;
        });
        for (auto& [url, node] : nodes) disk->nodes[url] = std::move(node);
        moved = disk->moved;
    }
    if (moved) moved(source, target);
}

void MemoryFileSystem::removeFile(const URL& url) {
    Moved moved;
    URL place;
    {
        const auto disk = disk_.lock();
        place = disk->find(url, Links::keep);
        if (disk->nodes.at(place).attributes.type == FileType::directory) fail(EISDIR);
        disk->nodes.erase(place);
        moved = disk->moved;
    }
    if (moved) moved(place, std::nullopt);
}

void MemoryFileSystem::removeFolder(const URL& url) {
    Moved moved;
    URL place;
    {
        const auto disk = disk_.lock();
        place = disk->find(url, Links::keep);
        if (disk->nodes.at(place).attributes.type != FileType::directory) fail(ENOTDIR);
        for (const auto& [other, node] : disk->nodes)
            if (other != place && other.isInside(place)) fail(ENOTEMPTY);
        disk->nodes.erase(place);
        moved = disk->moved;
    }
    if (moved) moved(place, std::nullopt);
}

TreeRemoved MemoryFileSystem::removeTree(const URL& url, const TreeRemoval& how) {
    std::vector<URL> places;
    {
        const auto disk = disk_.lock();
        const URL top = disk->find(url, Links::keep);
        for (const auto& [place, node] : disk->nodes)
            if (place.isInside(top)) places.push_back(place);
    }
    // What is inside goes before its folder.
    std::ranges::sort(places, std::greater());
    TreeRemoved result;
    for (const URL& place : places) {
        try {
            const FileAttributes found = requireAttributes(place, Links::keep);
            if (how.token.isCancelled()) {
                ++result.kept;
            } else if (found.type == FileType::directory) {
                removeFolder(place);
                ++result.removed;
            } else {
                removeFile(place);
                ++result.removed;
                if (how.removed) how.removed();
            }
        } catch (const std::system_error& error) {
            ++result.kept;
            if (result.errnum == 0) result.errnum = error.code().value();
        }
    }
    return result;
}

}  // namespace tarn
