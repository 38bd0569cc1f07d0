#include "TarnCore/platform/linux/TreeRemover.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <system_error>

#include <sys/stat.h>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/platform/linux/PathAnchor.h"
#include "TarnCore/platform/linux/Statx.h"

namespace tarn {
namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;

/// Folders kept open at a time; a tree may be deeper than a process may have files open.
constexpr std::size_t mostOpen = 64;

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

bool isDots(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

/// A disk that does not tell kinds in its listings gives DT_UNKNOWN; then the item is asked.
bool isFolder(int folder, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_DIR;
    struct stat status;
    return fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

}  // namespace

TreeRemoved TreeRemover::remove(const URL& url) {
    const PathAnchor anchor(url);
    return remove(anchor.fd(), anchor.path());
}

TreeRemoved TreeRemover::remove(int folder, const char* path) {
    struct stat status;
    if (fstatat(folder, path, &status, AT_SYMLINK_NOFOLLOW) != 0)
        throw std::system_error(errno, std::generic_category(), "stat");
    if (!S_ISDIR(status.st_mode)) {
        if (!mayGo(folder, path)) return result_;
        if (unlinkat(folder, path, 0) != 0) {
            fail(errno);
        } else {
            ++result_.removed;
            if (how_.removed) how_.removed();
        }
        return result_;
    }
    if (!descend(folder, path, path)) return result_;
    while (!levels_.empty()) {
        Level& level = levels_.back();
        if (level.nextChild >= level.children.size() || how_.token.isCancelled()) {
            ascend(folder, path);
            continue;
        }
        const char* name = level.children.c_str() + level.nextChild;
        level.nextChild += std::strlen(name) + 1;
        descend(level.fd.get(), name, name);
    }
    return result_;
}

int TreeRemover::removeOwn(int folder, const char* name) {
    TreeRemoval how;
    how.unlocksFolders = true;
    try {
        return TreeRemover(how).remove(folder, name).errnum;
    } catch (const std::system_error& error) {
        return error.code().value() == ENOENT ? 0 : error.code().value();
    }
}

/// Asks about an item that is no folder, or with no name about the open folder itself.
bool TreeRemover::mayGo(int folder, const char* name) {
    if (!allows_) return true;
    struct statx facts;
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | (*name == '\0' ? AT_EMPTY_PATH : 0);
    if (statx(folder, name, flags, STATX_BASIC_STATS, &facts) != 0) {
        if (errno != ENOENT) fail(errno);
        return false;
    }
    if (allows_(facts)) return true;
    fail(refused_);
    return false;
}

/// Opens a folder, deletes the files in it and remembers its folders. False when it cannot be
/// opened; that is counted.
bool TreeRemover::descend(int parent, const char* path, std::string name) {
    Level level;
    level.fd = FileDescriptor(openat(parent, path, folderFlags));
    if (!level.fd && errno == EACCES && how_.unlocksFolders) {
        // O_PATH needs no permission; the mode is changed through /proc so that no link is
        // followed.
        const FileDescriptor handle(openat(parent, path, O_PATH | O_NOFOLLOW | O_CLOEXEC));
        const std::string self = "/proc/self/fd/" + std::to_string(handle.get());
        if (handle && chmod(self.c_str(), S_IRWXU) == 0)
            level.fd = FileDescriptor(openat(parent, path, folderFlags));
        else
            errno = EACCES;
    }
    if (!level.fd) {
        fail(errno);
        return false;
    }
    const auto status = Statx::ofDescriptor(level.fd.get());
    if (!status) {
        fail(errno);
        return false;
    }
    level.device = status->device;
    level.inode = status->inode;
    level.mount = status->mount;
    if (!levels_.empty() && level.mount != levels_.back().mount) {
        fail(EBUSY);  // Something is mounted here; its files are not part of the tree.
        return false;
    }
    if (!mayGo(level.fd.get(), "")) return false;
    level.name = std::move(name);
    removeContents(level);
    if (levels_.size() >= mostOpen) levels_[levels_.size() - mostOpen].fd.close();
    levels_.push_back(std::move(level));
    return true;
}

void TreeRemover::removeContents(Level& level) {
    const int copy = openat(level.fd.get(), ".", folderFlags);
    const std::unique_ptr<DIR, CloseFolder> folder(copy < 0 ? nullptr : fdopendir(copy));
    if (!folder) {
        fail(errno);
        if (copy >= 0) close(copy);
        return;
    }
    // All names first: some disks skip names when a folder changes while it is read.
    std::string files;
    for (;;) {
        errno = 0;
        const dirent* entry = readdir(folder.get());
        if (entry == nullptr) {
            if (errno != 0) fail(errno);
            break;
        }
        if (isDots(entry->d_name)) continue;
        std::string& names = isFolder(level.fd.get(), *entry) ? level.children : files;
        names.append(entry->d_name).push_back('\0');
    }
    for (std::size_t at = 0; at < files.size();) {
        if (how_.token.isCancelled()) {
            ++result_.kept;
            return;
        }
        const char* name = files.c_str() + at;
        at += std::strlen(name) + 1;
        removeChild(level, name);
    }
}

void TreeRemover::removeChild(Level& level, const char* name) {
    if (!mayGo(level.fd.get(), name)) return;
    int errnum = unlinkat(level.fd.get(), name, 0) == 0 ? 0 : errno;
    if (errnum == EACCES && unlock(level))
        errnum = unlinkat(level.fd.get(), name, 0) == 0 ? 0 : errno;
    if (errnum == ENOENT) return;  // Someone else was faster.
    if (errnum != 0) {
        fail(errnum);
        return;
    }
    ++result_.removed;
    if (how_.removed) how_.removed();
}

/// Leaves the deepest folder and deletes it, which fails when something in it was kept.
void TreeRemover::ascend(int rootFolder, const char* rootPath) {
    const Level level = std::move(levels_.back());
    levels_.pop_back();
    if (!levels_.empty() && !levels_.back().fd && !reopen(levels_.back(), level.fd)) {
        fail(ESTALE);  // Moved away meanwhile; what is left of the tree is not ours to look for.
        levels_.clear();
        return;
    }
    if (how_.token.isCancelled()) {
        ++result_.kept;
        return;
    }
    const int parent = levels_.empty() ? rootFolder : levels_.back().fd.get();
    const char* path = levels_.empty() ? rootPath : level.name.c_str();
    int errnum = unlinkat(parent, path, AT_REMOVEDIR) == 0 ? 0 : errno;
    if (errnum == EACCES && !levels_.empty() && unlock(levels_.back()))
        errnum = unlinkat(parent, path, AT_REMOVEDIR) == 0 ? 0 : errno;
    if (errnum == 0)
        ++result_.removed;
    else if (errnum != ENOENT)
        fail(errnum);
}

/// Opens a folder again that was closed on the way down, from the one below it.
bool TreeRemover::reopen(Level& level, const FileDescriptor& child) {
    level.fd = FileDescriptor(openat(child.get(), "..", folderFlags));
    if (!level.fd) return false;
    const auto status = Statx::ofDescriptor(level.fd.get());
    return status && status->device == level.device && status->inode == level.inode;
}

bool TreeRemover::unlock(Level& level) {
    if (!how_.unlocksFolders || level.isUnlocked) return false;
    level.isUnlocked = true;
    return fchmod(level.fd.get(), S_IRWXU) == 0;
}

void TreeRemover::fail(int errnum) {
    ++result_.kept;
    if (result_.errnum == 0) result_.errnum = errnum;
}

}  // namespace tarn
