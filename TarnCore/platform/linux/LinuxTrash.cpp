#include "TarnCore/platform/linux/LinuxTrash.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/stat.h>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/FileIO.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/platform/linux/DirectorySizes.h"
#include "TarnCore/platform/linux/FolderPath.h"
#include "TarnCore/platform/linux/PathAnchor.h"
#include "TarnCore/platform/linux/Statx.h"
#include "TarnCore/platform/linux/TrashInfo.h"
#include "TarnCore/platform/linux/TreeRemover.h"
#include "TarnCore/platform/linux/XDGFolders.h"

namespace tarn {
namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t infoMode = 0600;
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;

constexpr std::string_view infoExtension = ".trashinfo";
constexpr std::size_t longestName = 255 - infoExtension.size();
constexpr const char* sizesName = "directorysizes";
/// A note without its item may belong to a program that is just moving the item in. Seconds.
constexpr std::int64_t longestTrashing = 60;
/// No honest note or list is longer.
constexpr std::size_t longestInfo = 64 * 1024;
constexpr std::size_t longestSizes = 16 << 20;

[[noreturn]] void fail(int errnum) {
    throw std::system_error(errnum, std::generic_category(), "trash");
}

std::string ownName() { return ".Trash-" + std::to_string(getuid()); }

FileDescriptor openChild(int folder, const char* name) {
    return FileDescriptor(openat(folder, name, folderFlags));
}

FileDescriptor makeChild(int folder, const char* name) {
    if (mkdirat(folder, name, folderMode) != 0 && errno != EEXIST) return {};
    return openChild(folder, name);
}

/// With the folders above it. They may be links: they are the user's own.
FileDescriptor makeFolders(const URL& url) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
    if (FileDescriptor fd{open(url.c_str(), flags)}) return fd;
    if (errno != ENOENT || url.isRoot()) return {};
    const FileDescriptor above = makeFolders(url.parent());
    if (!above || (mkdir(url.c_str(), folderMode) != 0 && errno != EEXIST)) return {};
    return FileDescriptor(open(url.c_str(), flags));
}

bool belongsToUser(const FileDescriptor& folder) {
    struct stat status;
    if (fstat(folder.get(), &status) != 0) return false;
    if (status.st_uid == getuid()) return true;
    errno = EXDEV;
    return false;
}

std::vector<std::string> namesIn(const FileDescriptor& folder) {
    std::vector<std::string> names;
    const int copy = openat(folder.get(), ".", folderFlags);
    const std::unique_ptr<DIR, int (*)(DIR*)> reader(copy < 0 ? nullptr : fdopendir(copy),
                                                     closedir);
    if (!reader) {
        const int errnum = errno;
        if (copy >= 0) close(copy);
        fail(errnum);
    }
    while (const dirent* entry = readdir(reader.get()))
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            names.emplace_back(entry->d_name);
    return names;
}

/// Absent when it is no plain file, too long or cannot be read.
std::optional<std::string> readFile(int folder, const char* name, std::size_t longest) {
    const FileDescriptor fd(
        openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status;
    if (!fd || fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        static_cast<std::size_t>(status.st_size) > longest)
        return std::nullopt;
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t length = 0;
    while (length < text.size()) {
        const ssize_t got = read(fd.get(), text.data() + length, text.size() - length);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return std::nullopt;
        if (got == 0) break;
        length += static_cast<std::size_t>(got);
    }
    text.resize(length);
    return text;
}

/// The name in the Trash at the n-th try: "report.pdf", "report.2.pdf", …, short enough for its
/// note.
std::string trashName(std::string_view name, int attempt) {
    constexpr int lastCounted = 50;  // Then at random: counting on would take ever longer.
    const std::string_view ext = pathExtension(name);
    std::string tail = ext.empty() ? std::string() : "." + std::string(ext);
    std::string_view stem = name.substr(0, name.size() - tail.size());
    if (attempt > 1)
        tail.insert(0, "." + (attempt <= lastCounted ? std::to_string(attempt)
                                                     : UUID::random().string().substr(0, 8)));
    if (tail.size() >= longestName) return UUID::random().string();
    std::size_t end = 0;
    for (std::size_t index = 0; index < stem.size();) {
        Text::nextCharacter(stem, index);
        if (index + tail.size() > longestName) break;
        end = index;
    }
    return std::string(stem.substr(0, end)) + tail;
}

std::string infoName(std::string_view name) {
    return std::string(name) + std::string(infoExtension);
}

/// Bytes on the disk of everything below a folder; what cannot be read does not count.
std::int64_t sizeBelow(const FileSystem& files, const URL& root, const CancelToken& token) {
    std::int64_t bytes = 0;
    std::vector<URL> folders = {root};
    while (!folders.empty() && !token.isCancelled()) {
        const URL folder = std::move(folders.back());
        folders.pop_back();
        try {
            const auto reader = files.openFolder(folder);
            for (auto batch = reader->read(); !batch.empty(); batch = reader->read())
                for (const FolderEntry& entry : batch) {
                    if (entry.type == FileType::directory) {
                        folders.push_back(folder.appending(entry.view()));
                    } else if (const auto item = reader->attributes(entry.name, Links::keep)) {
                        bytes += item->allocatedSize;
                    }
                }
        } catch (const std::system_error&) {
            // Of another user, or gone.
        }
    }
    return bytes;
}

}  // namespace

LinuxTrash::LinuxTrash(std::shared_ptr<const FileSystem> files,
                       std::shared_ptr<const Volumes> volumes, std::shared_ptr<const Clock> clock)
    : files_(std::move(files)), volumes_(std::move(volumes)), clock_(std::move(clock)) {}

URL LinuxTrash::homeTrash() { return XDGFolders::dataHome().appending("Trash"); }

FileDescriptor LinuxTrash::child(const FileDescriptor& folder, const char* name,
                                 IfMissing missing) {
    return missing == IfMissing::create ? makeChild(folder.get(), name)
                                        : openChild(folder.get(), name);
}

std::optional<LinuxTrash::Can> LinuxTrash::opened(URL url, std::optional<URL> top,
                                                  FileDescriptor folder, IfMissing missing) {
    if (!folder) return std::nullopt;
    Can can{std::move(url), std::move(top), std::move(folder), {}, {}};
    can.files = child(can.folder, "files", missing);
    if (!can.files) return std::nullopt;
    can.info = child(can.folder, "info", missing);
    if (!can.info) return std::nullopt;
    return can;
}

std::optional<LinuxTrash::Can> LinuxTrash::openHome(IfMissing missing) {
    const URL url = homeTrash();
    FileDescriptor folder =
        missing == IfMissing::create
            ? makeFolders(url)
            : FileDescriptor(open(url.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return opened(url, std::nullopt, std::move(folder), missing);
}

std::optional<LinuxTrash::Can> LinuxTrash::openShared(const URL& top, IfMissing missing) {
    const URL shared = top.appending(".Trash");
    const FileDescriptor folder(open(shared.c_str(), folderFlags));
    struct stat status;
    if (!folder || fstat(folder.get(), &status) != 0) return std::nullopt;
    if ((status.st_mode & S_ISVTX) == 0) {
        errno = EXDEV;  // Others could take away or exchange what is in it.
        return std::nullopt;
    }
    const std::string user = std::to_string(getuid());
    FileDescriptor own = child(folder, user.c_str(), missing);
    if (!own || !belongsToUser(own)) return std::nullopt;
    return opened(shared.appending(user), top, std::move(own), missing);
}

std::optional<LinuxTrash::Can> LinuxTrash::openOwn(const URL& top, IfMissing missing) {
    const FileDescriptor folder(open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) return std::nullopt;
    FileDescriptor own = child(folder, ownName().c_str(), missing);
    if (!own || !belongsToUser(own)) return std::nullopt;
    return opened(top.appending(ownName()), top, std::move(own), missing);
}

std::optional<LinuxTrash::Can> LinuxTrash::holding(const URL& trashed) const {
    const URL files = trashed.parent();
    const URL can = files.parent();
    if (files.name() != "files") return std::nullopt;
    if (can == homeTrash()) return openHome(IfMissing::leave);
    if (can.name() == ownName()) return openOwn(can.parent(), IfMissing::leave);
    if (can.name() == std::to_string(getuid()) && can.parent().name() == ".Trash")
        return openShared(can.parent().parent(), IfMissing::leave);
    return std::nullopt;
}

std::vector<LinuxTrash::Can> LinuxTrash::all() const {
    std::vector<Can> cans;
    std::set<std::pair<std::uint64_t, std::uint64_t>> known;  // A disk may be mounted twice.
    const auto add = [&](std::optional<Can> can) {
        if (!can) return;
        const auto identity = Statx::ofDescriptor(can->folder.get());
        if (identity && known.emplace(identity->device, identity->inode).second)
            cans.push_back(*std::move(can));
    };
    add(openHome(IfMissing::leave));
    for (const Mount& mount : volumes_->mounts()) {
        if (mount.isPseudo) continue;
        add(openShared(mount.mountPoint, IfMissing::leave));
        add(openOwn(mount.mountPoint, IfMissing::leave));
    }
    return cans;
}

URL LinuxTrash::put(const Can& can, const URL& item) const {
    const PathAnchor source(item);
    const std::string text = TrashInfo::text(item, can.top, clock_->now());
    for (int attempt = 1;; ++attempt) {
        const std::string name = trashName(item.name(), attempt);
        const std::string info = infoName(name);
        // The note comes first, and reserves the name among all programs that trash.
        const FileDescriptor note(openat(can.info.get(), info.c_str(),
                                         O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                         infoMode));
        if (!note) {
            if (errno == EEXIST) continue;
            fail(errno);
        }
        int errnum = FileIO::writeAll(note.get(), text);
        if (errnum == 0)
            errnum = renameNoReplace(source.fd(), source.path(), can.files.get(), name.c_str());
        if (errnum == 0) return can.url.appending("files").appending(name);
        unlinkat(can.info.get(), info.c_str(), 0);
        // An item whose note was lost has the name.
        if (errnum != EEXIST) fail(errnum);
    }
}

URL LinuxTrash::trash(const URL& url) {
    if (url.isRoot()) fail(EBUSY);
    files_->requireAttributes(url, Links::keep);
    const auto tryIn = [](const std::optional<Can>& can, const LinuxTrash& trash,
                          const URL& item) -> std::optional<URL> {
        if (!can) return std::nullopt;
        try {
            return trash.put(*can, item);
        } catch (const std::system_error& error) {
            if (error.code() != std::errc::cross_device_link) throw;
            return std::nullopt;
        }
    };
    if (const auto place = tryIn(openHome(IfMissing::create), *this, url)) return *place;
    const auto folder = files_->resolved(url.parent());
    if (!folder) fail(ENOENT);
    const URL item = folder->appending(url.name());
    const auto mount = volumes_->mountHolding(item);
    if (!mount) fail(EXDEV);
    const URL& top = mount->mountPoint;
    if (const auto place = tryIn(openShared(top, IfMissing::create), *this, item)) return *place;
    errno = EXDEV;
    const auto own = openOwn(top, IfMissing::create);
    const int errnum = errno;
    if (const auto place = tryIn(own, *this, item)) return *place;
    fail(!own && errnum == EROFS ? EROFS : EXDEV);
}

void LinuxTrash::forget(const URL& trashed) {
    const auto can = holding(trashed);
    if (!can) return;
    const std::string name(trashed.name());
    struct stat status;
    if (fstatat(can->files.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) return;
    unlinkat(can->info.get(), infoName(name).c_str(), 0);
}

std::vector<URL> LinuxTrash::folders() const {
    std::vector<URL> urls = {homeTrash().appending("files")};
    for (const Can& can : all()) {
        URL files = can.url.appending("files");
        if (files != urls.front()) urls.push_back(std::move(files));
    }
    return urls;
}

std::optional<Trash::Origin> LinuxTrash::origin(const URL& trashed) const {
    const auto can = holding(trashed);
    if (!can) return std::nullopt;
    const auto text = readFile(can->info.get(), infoName(trashed.name()).c_str(), longestInfo);
    const auto info = text ? TrashInfo::parse(*text) : std::nullopt;
    const auto url = info ? info->origin(can->top) : std::nullopt;
    if (!url) return std::nullopt;
    return Origin{*url, info->deleted};
}

Trash::Measured LinuxTrash::measure(const CancelToken& token) {
    Measured measured;
    for (const Can& can : all()) {
        try {
            measure(can, token, measured);
        } catch (const std::system_error&) {
            measured.isUnreadable = true;
        }
    }
    return measured;
}

void LinuxTrash::measure(const Can& can, const CancelToken& token, Measured& measured) const {
    const URL files = can.url.appending("files");
    const auto text = readFile(can.folder.get(), sizesName, longestSizes);
    const DirectorySizes before = DirectorySizes::parse(text.value_or(""));
    DirectorySizes after;
    for (const std::string& name : namesIn(can.files)) {
        if (token.isCancelled()) return;
        if (name == ".DS_Store" || name == ".localized") continue;
        const auto item = Statx::attributes(can.files.get(), name.c_str(), AT_SYMLINK_NOFOLLOW);
        if (!item) continue;
        ++measured.items;
        if (item->type != FileType::directory) {
            measured.bytes += item->allocatedSize;
            continue;
        }
        struct stat note;
        const bool hasNote =
            fstatat(can.info.get(), infoName(name).c_str(), &note, AT_SYMLINK_NOFOLLOW) == 0;
        const std::int64_t written = hasNote ? note.st_mtim.tv_sec : 0;
        const auto known = hasNote ? before.size(name, written) : std::nullopt;
        const std::int64_t bytes =
            known ? *known : sizeBelow(*files_, files.appending(name), token);
        if (hasNote) after.set(name, {bytes, written});
        measured.bytes += bytes;
    }
    if (after != before && !token.isCancelled()) writeSizes(can, after.text());
}

/// Only a shortcut for the next one who measures, so that a failure changes nothing.
void LinuxTrash::writeSizes(const Can& can, const std::string& text) {
    const std::string temporary = std::string(sizesName) + "." + UUID::random().string();
    const FileDescriptor fd(openat(can.folder.get(), temporary.c_str(),
                                   O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, infoMode));
    if (!fd) return;
    if (FileIO::writeAll(fd.get(), text) != 0 ||
        renameat(can.folder.get(), temporary.c_str(), can.folder.get(), sizesName) != 0)
        unlinkat(can.folder.get(), temporary.c_str(), 0);
}

Trash::Emptied LinuxTrash::empty(const CancelToken& token, const std::function<void()>& progress) {
    Emptied emptied;
    for (const Can& can : all()) {
        try {
            empty(can, token, progress, emptied);
        } catch (const std::system_error&) {
            ++emptied.failed;
        }
    }
    return emptied;
}

void LinuxTrash::empty(const Can& can, const CancelToken& token,
                       const std::function<void()>& progress, Emptied& emptied) {
    TreeRemoval how;
    how.token = token;
    how.removed = progress;
    how.unlocksFolders = true;
    for (const std::string& name : namesIn(can.files)) {
        if (token.isCancelled()) return;
        try {
            const TreeRemoved removed = TreeRemover(how).remove(can.files.get(), name.c_str());
            if (removed.kept > 0) {
                if (!token.isCancelled()) ++emptied.failed;
                continue;
            }
            ++emptied.items;
        } catch (const std::system_error&) {
            // Taken out of the Trash meanwhile.
        }
        unlinkat(can.info.get(), infoName(name).c_str(), 0);
    }
    removeLonelyNotes(can);
    if (emptied.failed == 0) unlinkat(can.folder.get(), sizesName, 0);
}

void LinuxTrash::removeLonelyNotes(const Can& can) {
    for (const std::string& note : namesIn(can.info)) {
        if (!note.ends_with(infoExtension)) continue;
        const std::string item = note.substr(0, note.size() - infoExtension.size());
        struct stat status;
        if (fstatat(can.files.get(), item.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) continue;
        if (fstatat(can.info.get(), note.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            std::time(nullptr) - status.st_ctim.tv_sec > longestTrashing)
            unlinkat(can.info.get(), note.c_str(), 0);
    }
}

}  // namespace tarn
