#include "TarnCore/rename/TargetFolders.h"

#include <algorithm>
#include <optional>
#include <system_error>

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
    if (!folder.wasRead) {
        folder.wasRead = true;
        try {
            const auto reader = Platform::current().files->openFolder(file.parent());
            for (auto names = reader->read(); !names.empty(); names = reader->read()) {
                for (const FolderEntry& entry : names) {
                    folder.names.insert(Text::lowercased(entry.view()));
                }
            }
        } catch (const std::system_error&) {
            folder.files = 0;  // It may be entered but not read: each name is asked for.
            return true;
        }
    }
    return folder.names.contains(Text::lowercased(newName));
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
