#include "TarnCore/platform/linux/Statx.h"

#include <cerrno>

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace tarn::Statx {
namespace {

constexpr unsigned attributeMask = STATX_BASIC_STATS | STATX_BTIME;

Date date(const statx_timestamp& time) { return Date::fromUnix(time.tv_sec, time.tv_nsec); }

FileAttributes converted(const struct statx& from) {
    FileAttributes to;
    to.type = type(from.stx_mode);
    to.mode = from.stx_mode & 07777U;
    to.size = static_cast<std::int64_t>(from.stx_size);
    to.allocatedSize = static_cast<std::int64_t>(from.stx_blocks) * 512;
    to.modified = date(from.stx_mtime);
    if ((from.stx_mask & STATX_BTIME) != 0) to.created = date(from.stx_btime);
    to.accessed = date(from.stx_atime);
    to.changed = date(from.stx_ctime);
    to.device = makedev(from.stx_dev_major, from.stx_dev_minor);
    to.inode = from.stx_ino;
    to.links = from.stx_nlink;
    to.owner = from.stx_uid;
    to.group = from.stx_gid;
    return to;
}

}  // namespace

FileType type(unsigned mode) {
    switch (mode & S_IFMT) {
        case S_IFREG:
            return FileType::file;
        case S_IFDIR:
            return FileType::directory;
        case S_IFLNK:
            return FileType::symlink;
        default:
            return FileType::other;
    }
}

int look(int folder, const char* name, int flags, FileAttributes& out) {
    struct statx result;
    if (statx(folder, name, flags | cheapFlags, attributeMask, &result) != 0) return errno;
    out = converted(result);
    return 0;
}

std::optional<FileAttributes> attributes(int folder, const char* name, int flags) {
    FileAttributes out;
    if (const int errnum = look(folder, name, flags, out)) {
        errno = errnum;
        return std::nullopt;
    }
    return out;
}

std::optional<Identity> ofDescriptor(int fd) {
    struct statx result;
    if (statx(fd, "", AT_EMPTY_PATH, STATX_INO | STATX_MNT_ID, &result) != 0) return std::nullopt;
    return Identity{makedev(result.stx_dev_major, result.stx_dev_minor), result.stx_ino,
                    (result.stx_mask & STATX_MNT_ID) != 0 ? result.stx_mnt_id : 0};
}

}  // namespace tarn::Statx
