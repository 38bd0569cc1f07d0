#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <sys/stat.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// Deletes one tree from directory descriptors, with O_NOFOLLOW: whatever is put in the way of it
/// meanwhile, nothing outside the tree goes. Used once.
class TreeRemover {
public:
    /// Says of an item whether it may go: of a folder before it is looked into.
    using Allows = std::function<bool(const struct statx& facts)>;

    explicit TreeRemover(const TreeRemoval& how) : how_(how) {}
    /// What `allows` refuses stays and counts as a failure with the errno `refused`.
    TreeRemover(const TreeRemoval& how, Allows allows, int refused)
        : how_(how), allows_(std::move(allows)), refused_(refused) {}
    TreeRemoved remove(const URL& url);
    /// The same for a name in an open folder.
    TreeRemoved remove(int folder, const char* path);

    /// Deletes an item that this program has made, folders that may not be written to as well.
    /// Returns 0, also when nothing is there, or the errno of the first failure.
    static int removeOwn(int folder, const char* name);

private:
    /// A folder on the way down, with the children that are still to be deleted.
    struct Level {
        FileDescriptor fd;  ///< Closed while many deeper ones are open.
        std::string name;   ///< In the folder above.
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::uint64_t mount = 0;
        std::string children;  ///< Folders, each with a NUL behind it.
        std::size_t nextChild = 0;
        bool isUnlocked = false;
    };

    bool mayGo(int folder, const char* name);
    bool descend(int parent, const char* path, std::string name);
    void removeContents(Level& level);
    void removeChild(Level& level, const char* name);
    void ascend(int rootFolder, const char* rootPath);
    bool reopen(Level& level, const FileDescriptor& child);
    bool unlock(Level& level);
    void fail(int errnum);

    const TreeRemoval& how_;
    const Allows allows_;
    const int refused_ = 0;
    TreeRemoved result_;
    std::vector<Level> levels_;
};

}  // namespace tarn
