#include "TarnCore/platform/linux/MoveNoReplace.h"

#include <cerrno>

#include <sys/stat.h>

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

namespace tarn {
namespace {

bool isFolder(const Place& place) {
    struct stat status;
    return fstatat(place.folder, place.path, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

/// A folder takes the place of an empty one that was just made, so that nobody's folder is lost.
/// Returns 0 or the errno.
int moveFolderByReplacingEmptyOne(const Place& from, const Place& to) {
    if (mkdirat(to.folder, to.path, S_IRWXU) != 0) return errno;
    if (renameat(from.folder, from.path, to.folder, to.path) == 0) return 0;
    const int errnum = errno;
    unlinkat(to.folder, to.path, AT_REMOVEDIR);
    return errnum;
}

/// The last resort, for disks that know neither RENAME_NOREPLACE nor second names: looks first. A
/// name that is made between looking and moving would be replaced.
int moveAfterLooking(const Place& from, const Place& to) {
    struct stat status;
    if (fstatat(to.folder, to.path, &status, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
    if (errno != ENOENT) return errno;
    return renameat(from.folder, from.path, to.folder, to.path) == 0 ? 0 : errno;
}

int moveFileByLinking(const Place& from, const Place& to) {
    if (linkat(from.folder, from.path, to.folder, to.path, 0) != 0) {
        if (errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS || errno == EMLINK)
            return moveAfterLooking(from, to);
        return errno;
    }
    if (unlinkat(from.folder, from.path, 0) == 0) return 0;
    const int errnum = errno;
    unlinkat(to.folder, to.path, 0);
    return errnum;
}

}  // namespace

int moveNoReplace(const Place& from, const Place& to) {
    if (renameat2(from.folder, from.path, to.folder, to.path, RENAME_NOREPLACE) == 0) return 0;
    const int errnum = errno;
    // EINVAL also means that a folder shall go into itself; that fails again below.
    if (errnum != EINVAL && errnum != ENOSYS && errnum != EOPNOTSUPP) return errnum;
    return isFolder(from) ? moveFolderByReplacingEmptyOne(from, to) : moveFileByLinking(from, to);
}

}  // namespace tarn
