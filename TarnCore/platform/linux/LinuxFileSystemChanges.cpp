#include <cerrno>
#include <optional>
#include <string>
#include <system_error>

#include <sys/stat.h>

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/platform/linux/LinuxFileSystem.h"
#include "TarnCore/platform/linux/PathAnchor.h"
#include "TarnCore/platform/linux/TreeRemover.h"

namespace tarn {
namespace {

constexpr mode_t folderMode = 0777;  // Less the user's umask, here and below.
constexpr mode_t fileMode = 0666;

[[noreturn]] void fail(int errnum, const char* what) {
    throw std::system_error(errnum, std::generic_category(), what);
}

void writeAll(int fd, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail(errno, "write");
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// Where a name stands: an open folder (or AT_FDCWD) and a path from there.
struct Place {
    int folder;
    const char* path;
};

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

int moveNoReplace(const Place& from, const Place& to) {
    if (renameat2(from.folder, from.path, to.folder, to.path, RENAME_NOREPLACE) == 0) return 0;
    const int errnum = errno;
    // EINVAL also means that a folder shall go into itself; that fails again below.
    if (errnum != EINVAL && errnum != ENOSYS && errnum != EOPNOTSUPP) return errnum;
    return isFolder(from) ? moveFolderByReplacingEmptyOne(from, to) : moveFileByLinking(from, to);
}

/// A file with the content, without a name yet; none where the disk cannot keep such a file.
FileDescriptor namelessFile(const Place& parent, std::string_view content) {
    FileDescriptor fd(
        openat(parent.folder, parent.path, O_TMPFILE | O_WRONLY | O_CLOEXEC, fileMode));
    if (!fd) {
        if (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL || errno == ENOENT) return fd;
        fail(errno, "open");
    }
    writeAll(fd.get(), content);
    return fd;
}

}  // namespace

void LinuxFileSystem::createFolder(const URL& url) {
    const PathAnchor anchor(url);
    if (mkdirat(anchor.fd(), anchor.path(), folderMode) != 0) fail(errno, "mkdir");
}

void LinuxFileSystem::createFolders(const URL& url) {
    const PathAnchor anchor(url);
    if (mkdirat(anchor.fd(), anchor.path(), folderMode) == 0) return;
    int errnum = errno;
    if (errnum == ENOENT && !url.isRoot()) {
        createFolders(url.parent());
        if (mkdirat(anchor.fd(), anchor.path(), folderMode) == 0) return;
        errnum = errno;
    }
    if (errnum != EEXIST) fail(errnum, "mkdir");
    struct stat status;
    if (fstatat(anchor.fd(), anchor.path(), &status, 0) != 0) fail(errno, "stat");
    if (!S_ISDIR(status.st_mode)) fail(ENOTDIR, "mkdir");
}

void LinuxFileSystem::createFile(const URL& url, std::string_view content) {
    const PathAnchor anchor(url);
    const Place place{anchor.fd(), anchor.path()};
    if (content.empty()) {
        const FileDescriptor fd(openat(place.folder, place.path,
                                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                       fileMode));
        if (!fd) fail(errno, "open");
        return;
    }
    const URL folder = url.parent();
    const PathAnchor parent(folder);
    if (const FileDescriptor fd = namelessFile({parent.fd(), parent.path()}, content)) {
        const std::string name = "/proc/self/fd/" + std::to_string(fd.get());
        if (linkat(AT_FDCWD, name.c_str(), place.folder, place.path, AT_SYMLINK_FOLLOW) == 0)
            return;
        if (errno == EEXIST) fail(EEXIST, "link");
        // Without /proc, or where the folder's disk refuses links, a name is needed from the start.
    }
    const URL temporary = folder.appending(".tarn-move-" + UUID::random().string());
    const PathAnchor beside(temporary);
    const FileDescriptor fd(openat(beside.fd(), beside.path(),
                                   O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, fileMode));
    if (!fd) fail(errno, "open");
    try {
        writeAll(fd.get(), content);
        if (const int errnum = moveNoReplace({beside.fd(), beside.path()}, place))
            fail(errnum, "rename");
    } catch (const std::system_error&) {
        unlinkat(beside.fd(), beside.path(), 0);
        throw;
    }
}

void LinuxFileSystem::createLink(const URL& url, std::string_view target) {
    const PathAnchor anchor(url);
    if (symlinkat(std::string(target).c_str(), anchor.fd(), anchor.path()) != 0)
        fail(errno, "symlink");
}

void LinuxFileSystem::move(const URL& from, const URL& to) {
    const PathAnchor source(from);
    const PathAnchor target(to);
    if (const int errnum =
            moveNoReplace({source.fd(), source.path()}, {target.fd(), target.path()}))
        fail(errnum, "rename");
}

void LinuxFileSystem::removeFile(const URL& url) {
    const PathAnchor anchor(url);
    if (unlinkat(anchor.fd(), anchor.path(), 0) != 0) fail(errno, "unlink");
}

void LinuxFileSystem::removeFolder(const URL& url) {
    const PathAnchor anchor(url);
    if (unlinkat(anchor.fd(), anchor.path(), AT_REMOVEDIR) != 0) fail(errno, "rmdir");
}

TreeRemoved LinuxFileSystem::removeTree(const URL& url, const TreeRemoval& how) {
    return TreeRemover(how).remove(url);
}

}  // namespace tarn
