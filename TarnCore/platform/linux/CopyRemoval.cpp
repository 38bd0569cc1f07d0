#include "TarnCore/platform/linux/CopyRemoval.h"

#include <array>
#include <cerrno>
#include <memory>
#include <string>
#include <vector>

#include <sys/syscall.h>
#include <sys/sysmacros.h>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"

namespace tarn::CopyRemoval {
namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;
constexpr unsigned mask =
    STATX_TYPE | STATX_MODE | STATX_NLINK | STATX_INO | STATX_MTIME | STATX_CTIME | STATX_SIZE;
constexpr std::size_t mostOpen = 64;
constexpr int mostRounds = 3;

/// A folder on the way down. Those far above are closed, and opened again through "..".
struct Level {
    FileDescriptor folder;
    std::string name;
    std::vector<std::string> folders;  ///< Still to be removed.
    bool mayGo = true;
    int rounds = 0;  ///< How often it was read before.
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
};

class Removal {
public:
    Removal(int top, const Allows& allows, int refused)
        : top_(top), allows_(allows), refused_(refused) {}

    int run(const char* name) {
        struct statx facts;
        if (!look(top_, name, facts)) return failure_;
        if (!S_ISDIR(facts.stx_mode)) {
            removeFile(top_, name, facts);
            return failure_;
        }
        enter(top_, name, 0);
        while (!levels_.empty()) {
            Level& level = levels_.back();
            if (level.folders.empty()) {
                leave();
                continue;
            }
            const std::string child = std::move(level.folders.back());
            level.folders.pop_back();
            enter(level.folder.get(), child.c_str(), 0);
        }
        return failure_;
    }

private:
    void note(int errnum) {
        if (failure_ == 0) failure_ = errnum;
    }
    bool look(int folder, const char* name, struct statx& facts) {
        if (statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, mask, &facts) == 0)
            return true;
        if (errno != ENOENT) note(errno);
        return false;
    }
    void removeFile(int folder, const char* name, const struct statx& facts) {
        if (allows_ && !allows_(facts)) return note(refused_);
        unlink(folder, name, 0);
    }
    void unlink(int folder, const char* name, int flags) {
        if (unlinkat(folder, name, flags) == 0 || errno == ENOENT) return;
        const int errnum = errno;
        // A folder that its owner may not write to.
        if (errnum != EACCES || !levelIsOwn(folder) || unlinkat(folder, name, flags) != 0)
            note(errnum);
    }
    bool levelIsOwn(int folder) const {
        return !allows_ && folder != top_ && fchmod(folder, 0700) == 0;
    }

    void enter(int parent, const char* name, int rounds) {
        FileDescriptor folder(openat(parent, name, folderFlags));
        if (!folder && errno == EACCES && !allows_ && fchmodat(parent, name, 0700, 0) == 0)
            folder = FileDescriptor(openat(parent, name, folderFlags));
        if (!folder) {
            // An empty folder goes without being looked into.
            if (errno != ENOENT && (allows_ || unlinkat(parent, name, AT_REMOVEDIR) != 0))
                note(errno);
            return;
        }
        struct statx facts;
        if (statx(folder.get(), "", AT_EMPTY_PATH, mask, &facts) != 0) return note(errno);
        Level level;
        level.name = name;
        level.rounds = rounds;
        level.device = makedev(facts.stx_dev_major, facts.stx_dev_minor);
        level.inode = facts.stx_ino;
        level.mayGo = !allows_ || allows_(facts);
        level.folder = std::move(folder);
        if (level.mayGo) {
            empty(level);
        } else {
            note(refused_);
        }
        levels_.push_back(std::move(level));
        if (levels_.size() > mostOpen) levels_[levels_.size() - 1 - mostOpen].folder.close();
    }

    /// Removes the files, and keeps the names of the folders.
    void empty(Level& level) {
        for (;;) {
            const long bytes =
                syscall(SYS_getdents64, level.folder.get(), buffer_->data(), buffer_->size());
            if (bytes < 0 && errno == EINTR) continue;
            if (bytes < 0 && errno != ENOENT) note(errno);
            if (bytes <= 0) return;
            for (long at = 0; at < bytes;) {
                const auto* entry = reinterpret_cast<const dirent64*>(buffer_->data() + at);
                at += entry->d_reclen;
                const std::string_view name = entry->d_name;
                if (name == "." || name == "..") continue;
                removeEntry(level, *entry);
            }
        }
    }
    void removeEntry(Level& level, const dirent64& entry) {
        bool isFolder = entry.d_type == DT_DIR;
        if (!isFolder && (allows_ || entry.d_type == DT_UNKNOWN)) {
            struct statx facts;
            if (!look(level.folder.get(), entry.d_name, facts)) return;
            isFolder = S_ISDIR(facts.stx_mode);
            if (!isFolder) return removeFile(level.folder.get(), entry.d_name, facts);
        }
        if (isFolder) {
            level.folders.emplace_back(entry.d_name);
        } else {
            unlink(level.folder.get(), entry.d_name, 0);
        }
    }

    void leave() {
        Level level = std::move(levels_.back());
        levels_.pop_back();
        int parent = top_;
        if (!levels_.empty()) {
            Level& above = levels_.back();
            if (!above.folder) {
                above.folder = FileDescriptor(openat(level.folder.get(), "..", folderFlags));
                struct statx facts;
                const bool isSame =
                    above.folder &&
                    statx(above.folder.get(), "", AT_EMPTY_PATH, mask, &facts) == 0 &&
                    makedev(facts.stx_dev_major, facts.stx_dev_minor) == above.device &&
                    facts.stx_ino == above.inode;
                if (!isSame) {
                    // Somebody has moved the folder: what is left of the way up is not ours.
                    note(ESTALE);
                    levels_.clear();
                    return;
                }
            }
            parent = above.folder.get();
        }
        level.folder.close();
        if (!level.mayGo) return;
        if (unlinkat(parent, level.name.c_str(), AT_REMOVEDIR) == 0) return;
        // Some file systems pass over names while others are being removed.
        if (errno == ENOTEMPTY && level.rounds < mostRounds && failure_ == 0)
            return enter(parent, level.name.c_str(), level.rounds + 1);
        unlink(parent, level.name.c_str(), AT_REMOVEDIR);
    }

    const int top_;
    const Allows& allows_;
    const int refused_;
    int failure_ = 0;
    std::vector<Level> levels_;
    struct alignas(8) Buffer : std::array<char, 32 * 1024> {};
    std::unique_ptr<Buffer> buffer_ = std::make_unique<Buffer>();
};

}  // namespace

int remove(int folder, const char* name, const Allows& allows, int refused) {
    return Removal(folder, allows, refused).run(name);
}

}  // namespace tarn::CopyRemoval
