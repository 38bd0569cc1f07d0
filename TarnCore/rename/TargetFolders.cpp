#include "TarnCore/rename/TargetFolders.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <system_error>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// Fewer files of the batch in a folder than this, and asking for each is cheaper than reading a
/// folder that may be large.
constexpr std::size_t worthReading = 32;

bool isItem(const URL& url, const FileAttributes& item) {
    const auto attributes = Platform::current().files->attributes(url, Links::keep);
    return attributes && attributes->device == item.device && attributes->inode == item.inode;
}

/// Up to the last '/', with it.
std::string folderPath(const URL& file) {
    return file.path().substr(0, file.path().size() - file.name().size());
}

/// Of a name, whatever its case. Two names with one hash only cost a question.
std::size_t hashOf(std::string_view name) {
    return std::hash<std::string>()(Text::lowercased(name));
}

}  // namespace

TargetFolders::TargetFolders(const std::vector<URL>& batch) : batch_(batch) {
    Folder* last = nullptr;
    std::string lastPath;
    for (const URL& file : batch) {
        std::string path = folderPath(file);
        if (!last || path != lastPath) {
            last = &folders_[path];  // Stays where it is when more are added.
            lastPath = std::move(path);
        }
        ++last->files;
    }
}

bool TargetFolders::mayExist(const URL& file, std::string_view newName) {
    const std::string_view path =
        std::string_view(file.path()).substr(0, file.path().size() - file.name().size());
    if (!last_ || lastPath_ != path) {
        lastPath_ = path;
        last_ = &folders_[lastPath_];  // Stays where it is when more are added.
    }
    Folder& folder = *last_;
    if (folder.files < worthReading) return true;
    read(lastPath_, folder);
    return folder.files == 0 || std::ranges::binary_search(folder.names, hashOf(newName));
}

void TargetFolders::readAhead() {
    for (auto& [path, folder] : folders_)
        if (folder.files >= worthReading) read(path, folder);
}

void TargetFolders::read(const std::string& path, Folder& folder) {
    if (std::exchange(folder.wasRead, true)) return;
    try {
        const auto reader = Platform::current().files->openFolder(URL::fromPath(path));
        for (auto names = reader->read(); !names.empty(); names = reader->read())
            for (const FolderEntry& entry : names) folder.names.push_back(hashOf(entry.view()));
        std::ranges::sort(folder.names);
    } catch (const std::system_error&) {
        folder.files = 0;  // It may be entered but not read: each name is asked for.
    }
}

bool TargetFolders::isOtherOfBatch(const URL& target, const FileAttributes& there) {
    if (lowered_.empty()) {
        for (const URL& file : batch_) {
            paths_.insert(file.path());
            lowered_[Text::lowercased(file.path())].push_back(&file);
        }
    }
    if (paths_.contains(target.path())) return true;
    const auto found = lowered_.find(Text::lowercased(target.path()));
    return found != lowered_.end() && std::ranges::any_of(found->second, [&](const URL* other) {
               return isItem(*other, there);
           });
}

bool TargetFolders::isTaken(const URL& file, const std::string& newName) {
    if (!mayExist(file, newName)) return false;
    const URL target = file.parent().appending(newName);
    const auto there = Platform::current().files->attributes(target, Links::keep);
    return there && !isItem(file, *there) && !isOtherOfBatch(target, *there);
}

}  // namespace tarn
