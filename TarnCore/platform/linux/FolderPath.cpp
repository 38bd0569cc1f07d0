#include "TarnCore/platform/linux/FolderPath.h"

#include <cerrno>
#include <string>
#include <system_error>

#include <sys/stat.h>

#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <unistd.h>

namespace tarn {
namespace {

constexpr int placeFlags = O_PATH | O_DIRECTORY | O_CLOEXEC;

[[noreturn]] void fail(int errnum) {
    throw std::system_error(errnum, std::generic_category(), "open");
}

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
    const std::string& path = folder.path();
    FileDescriptor place;
    std::size_t begin = 0;
    while (path.size() - begin >= PATH_MAX) {
        const std::size_t slash = path.rfind('/', begin + PATH_MAX - 2);
        if (slash == path.npos || slash <= begin) fail(ENAMETOOLONG);
        FileDescriptor next(openat(place ? place.get() : AT_FDCWD,
                                   path.substr(begin, slash - begin).c_str(), placeFlags));
        if (!next) fail(errno);
        place = std::move(next);
        begin = slash + 1;
    }
    FileDescriptor found(openat(place ? place.get() : AT_FDCWD, path.c_str() + begin, placeFlags));
    if (!found) fail(errno);
    return found;
}

int renameNoReplace(int fromFolder, const char* from, int toFolder, const char* to) {
    if (renameat2(fromFolder, from, toFolder, to, RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) return errno;
    return renameInSteps(fromFolder, from, toFolder, to);
}

}  // namespace tarn
