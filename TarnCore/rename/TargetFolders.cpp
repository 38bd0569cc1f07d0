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

}  // namespace

TargetFolders::TargetFolders(const std::vector<URL>& batch) : batch_(batch.begin(), batch.end()) {
    for (const URL& file : batch) {
        lowered_[Text::lowercased(file.path())].push_back(file);
        ++counts_[file.parent()];
    }
}

bool TargetFolders::mayExist(const URL& target) {
    URL parent = target.parent();
    if (counts_[parent] < worthReading) return true;
    Folder& folder = folders_[parent];
    if (!folder.wasRead) {
        folder.wasRead = true;
        try {
            const auto reader = Platform::current().files->openFolder(parent);
            for (auto names = reader->read(); !names.empty(); names = reader->read()) {
                for (const FolderEntry& entry : names) {
                    folder.names.insert(Text::lowercased(entry.view()));
                }
            }
        } catch (const std::system_error&) {
            counts_[parent] = 0;  // It may be entered but not read: each name is asked for.
            return true;
        }
    }
    return folder.names.contains(Text::lowercased(target.name()));
}

bool TargetFolders::isTaken(const URL& target, const URL& file) {
    if (batch_.contains(target) || !mayExist(target)) return false;
    const FileSystem& files = *Platform::current().files;
    const auto there = files.attributes(target, Links::keep);
    if (!there) return false;
    const auto isThatItem = [&](const URL& other) {
        const auto attributes = files.attributes(other, Links::keep);
        return attributes && attributes->device == there->device &&
               attributes->inode == there->inode;
    };
    if (isThatItem(file)) return false;
    const auto found = lowered_.find(Text::lowercased(target.path()));
    return found == lowered_.end() || std::ranges::none_of(found->second, isThatItem);
}

}  // namespace tarn
