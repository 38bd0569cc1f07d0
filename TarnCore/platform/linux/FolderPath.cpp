#include "TarnCore/platform/linux/FolderPath.h"

#include <cerrno>
#include <system_error>

#include <sys/stat.h>

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include "TarnCore/platform/linux/PathAnchor.h"

namespace tarn {
namespace {

/// For file systems that know no RENAME_NOREPLACE.
int renameInSteps(int fromFolder, const char* from, int toFolder, const char* to) {
    struct stat item;
    if (fstatat(fromFolder, from, &item, AT_SYMLINK_NOFOLLOW) != 0) return errno;
    if (S_ISDIR(item.st_mode)) {
        // The name is claimed by an empty folder of our own, which only an empty folder could have
        // been confused with.
        if (mkdirat(toFolder, to, 0700) != 0) return errno;
        if (renameat(fromFolder, from, toFolder, to) == 0) return 0;
        const int errnum = errno;
        unlinkat(toFolder, to, AT_REMOVEDIR);
        return errnum;
    }
    if (linkat(fromFolder, from, toFolder, to, 0) == 0) {
        if (unlinkat(fromFolder, from, 0) == 0) return 0;
        const int errnum = errno;
        unlinkat(toFolder, to, 0);
        return errnum;
    }
    if (errno == EEXIST || errno == EXDEV || errno == ENOSPC || errno == EROFS) return errno;
    // No second names either: look, then rename.
    struct stat other;
    if (fstatat(toFolder, to, &other, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
    if (errno != ENOENT) return errno;
    return renameat(fromFolder, from, toFolder, to) == 0 ? 0 : errno;
}

}  // namespace

FileDescriptor openFolderPath(const URL& folder) {
    const PathAnchor anchor(folder);
    FileDescriptor place(openat(anchor.fd(), anchor.path(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!place) throw std::system_error(errno, std::generic_category(), "open");
    return place;
}

int renameNoReplace(int fromFolder, const char* from, int toFolder, const char* to) {
    if (renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) return errno;
    return renameInSteps(fromFolder, from, toFolder, to);
}

}  // namespace tarn
