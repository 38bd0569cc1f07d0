#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/platform/linux/CopyContext.h"
#include "TarnCore/platform/linux/ItemCopier.h"

namespace tarn {

/// Copies a folder with everything below it, depth first, two folders at a time. A folder gets its
/// times and its mode when all that is in it has been copied. Folders are opened from the ones
/// above them; those far up are closed, and found again through "..", so that a tree may be as deep
/// as the disk allows.
class TreeCopy {
public:
    TreeCopy(CopyContext& context, TaskPool& helpers) : context_(context), helpers_(helpers) {}

    /// Copies `name` in `sourceFolder` as `targetName` into `targetFolder`. Returns 0, or the errno
    /// when the folder itself could not be copied; what fails below it the context hears of.
    int run(int sourceFolder, const char* name, int targetFolder, const char* targetName);

private:
    using FolderRef = std::shared_ptr<CopiedFolder>;
    struct Task {
        FolderRef parent;
        std::string name;
    };

    void work(ItemCopier& copier, bool isCaller);
    std::optional<Task> take(ItemCopier& copier, bool isCaller);
    void copyChild(Task task, ItemCopier& copier);
    int open(CopiedFolder& folder, int sourceFolder, const char* name, int targetFolder,
             const char* targetName, bool targetIsPlain);
    int copyEntries(CopiedFolder& folder, ItemCopier& copier);
    void finish(FolderRef folder, ItemCopier& copier);
    void reopen(CopiedFolder& parent, const CopiedFolder& child) const;
    void closeAncestor(CopiedFolder& folder);

    CopyContext& context_;
    TaskPool& helpers_;

    std::mutex mutex_;
    std::condition_variable wake_;
    std::vector<FolderRef> stack_;  ///< Folders with children left, the deepest last.
    std::size_t active_ = 0;        ///< Threads that are copying a folder.
};

}  // namespace tarn
