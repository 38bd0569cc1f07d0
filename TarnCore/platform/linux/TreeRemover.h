#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// Deletes one tree from directory descriptors, with O_NOFOLLOW: whatever is put in the way of it
/// meanwhile, nothing outside the tree goes. Used once.
class TreeRemover {
public:
    explicit TreeRemover(const TreeRemoval& how) : how_(how) {}
    TreeRemoved remove(const URL& url);
    /// The same for a name in an open folder.
    TreeRemoved remove(int folder, const char* path);

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

    bool descend(int parent, const char* path, std::string name);
    void removeContents(Level& level);
    void removeChild(Level& level, const char* name);
    void ascend(int rootFolder, const char* rootPath);
    bool reopen(Level& level, const FileDescriptor& child);
    bool unlock(Level& level);
    void fail(int errnum);

    const TreeRemoval& how_;
    TreeRemoved result_;
    std::vector<Level> levels_;
};

}  // namespace tarn
