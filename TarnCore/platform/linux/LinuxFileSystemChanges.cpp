#include <cerrno>
#include <optional>
#include <string>
#include <system_error>

#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/FileIO.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/platform/linux/FolderPath.h"
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

/// A file with the content, without a name yet; none where the disk cannot keep such a file.
FileDescriptor namelessFile(int folder, const char* path, std::string_view content) {
    FileDescriptor fd(openat(folder, path, O_TMPFILE | O_WRONLY | O_CLOEXEC, fileMode));
    if (!fd) {
        if (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL || errno == ENOENT) return fd;
        fail(errno, "open");
    }
    if (const int errnum = FileIO::writeAll(fd.get(), content)) fail(errnum, "write");
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
    if (content.empty()) {
        const FileDescriptor fd(openat(anchor.fd(), anchor.path(),
                                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                       fileMode));
        if (!fd) fail(errno, "open");
        return;
    }
    const URL folder = url.parent();
    const PathAnchor parent(folder);
    if (const FileDescriptor fd = namelessFile(parent.fd(), parent.path(), content)) {
        const std::string name = "/proc/self/fd/" + std::to_string(fd.get());
        if (linkat(AT_FDCWD, name.c_str(), anchor.fd(), anchor.path(), AT_SYMLINK_FOLLOW) == 0)
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
        if (const int errnum = FileIO::writeAll(fd.get(), content)) fail(errnum, "write");
        if (const int errnum =
                renameNoReplace(beside.fd(), beside.path(), anchor.fd(), anchor.path()))
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
    if (const int errnum = renameNoReplace(source.fd(), source.path(), target.fd(), target.path()))
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
