#include "TarnCore/platform/linux/LinuxFileSystem.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <system_error>
#include <type_traits>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>

#include "TarnCore/base/FileDescriptor.h"

namespace tarn {
namespace {

constexpr unsigned attributeMask = STATX_BASIC_STATS | STATX_BTIME;
constexpr int statFlags = AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

[[noreturn]] void fail(int errnum, const char* what) {
    throw std::system_error(errnum, std::generic_category(), what);
}

Date date(const statx_timestamp& time) { return Date::fromUnix(time.tv_sec, time.tv_nsec); }

FileType typeOfMode(unsigned mode) {
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

FileType typeOfEntry(unsigned char type) {
    switch (type) {
        case DT_REG:
            return FileType::file;
        case DT_DIR:
            return FileType::directory;
        case DT_LNK:
            return FileType::symlink;
        case DT_UNKNOWN:
            return FileType::unknown;
        default:
            return FileType::other;
    }
}

FileAttributes converted(const struct statx& from) {
    FileAttributes to;
    to.type = typeOfMode(from.stx_mode);
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

/// Returns 0 or the errno.
int look(int folder, const char* name, int flags, FileAttributes& out) {
    struct statx result;
    if (statx(folder, name, flags | statFlags, attributeMask, &result) != 0) return errno;
    out = converted(result);
    return 0;
}

/// A path made short enough for one system call: what is left of it, and the folder it starts from.
struct Anchor {
    FileDescriptor folder;
    std::string rest;

    explicit Anchor(const URL& url) {
        const std::string& path = url.path();
        if (path.size() < PATH_MAX) return;
        std::size_t begin = 0;
        while (path.size() - begin >= PATH_MAX) {
            const std::size_t slash = path.rfind('/', begin + PATH_MAX - 2);
            if (slash == path.npos || slash <= begin) fail(ENAMETOOLONG, "open");
            const std::string piece = path.substr(begin, slash - begin);
            FileDescriptor next(openat(folder ? folder.get() : AT_FDCWD, piece.c_str(),
                                       O_PATH | O_DIRECTORY | O_CLOEXEC));
            if (!next) fail(errno, "open");
            folder = std::move(next);
            begin = slash + 1;
        }
        rest = path.substr(begin);
    }
    int fd() const { return folder ? folder.get() : AT_FDCWD; }
    const char* path(const URL& url) const { return folder ? rest.c_str() : url.c_str(); }
};

int look(const URL& url, Links links, FileAttributes& out) {
    try {
        const Anchor anchor(url);
        return look(anchor.fd(), anchor.path(url), links == Links::keep ? AT_SYMLINK_NOFOLLOW : 0,
                    out);
    } catch (const std::system_error& error) {
        return error.code().value();
    }
}

/// What a folder is read into, left as it comes: clearing it would cost more than most folders.
struct ReadBuffer {
    static constexpr std::size_t size = 64 * 1024;
    /// The shortest record of the kernel: 19 bytes and a name with its NUL, rounded up to 8.
    static constexpr std::size_t mostEntries = size / 24;
    static_assert(std::is_trivially_destructible_v<FolderEntry>);

    alignas(8) std::array<char, size> bytes;
    alignas(FolderEntry) std::array<std::byte, mostEntries * sizeof(FolderEntry)> entries;

    void add(std::size_t index, const FolderEntry& entry) {
        new (entries.data() + index * sizeof(FolderEntry)) FolderEntry(entry);
    }
    std::span<const FolderEntry> first(std::size_t count) const {
        return {std::launder(reinterpret_cast<const FolderEntry*>(entries.data())), count};
    }
};

/// Buffers for the next folders of the same thread, because a walk opens tens of thousands; a
/// reader holds one only between its first read and its last.
class SpareBuffers {
public:
    std::unique_ptr<ReadBuffer> take() {
        if (count_ == 0) return std::unique_ptr<ReadBuffer>(new ReadBuffer);
        return std::move(buffers_[--count_]);
    }
    void put(std::unique_ptr<ReadBuffer> buffer) {
        if (count_ < buffers_.size()) buffers_[count_++] = std::move(buffer);
    }

private:
    std::array<std::unique_ptr<ReadBuffer>, 8> buffers_;
    std::size_t count_ = 0;
};

SpareBuffers& spareBuffers() {
    thread_local SpareBuffers buffers;
    return buffers;
}

class LinuxFolderReader final : public FolderReader {
public:
    explicit LinuxFolderReader(FileDescriptor fd) : fd_(std::move(fd)) {}
    ~LinuxFolderReader() override { releaseBuffer(); }

    std::span<const FolderEntry> read() override;

    std::optional<FileAttributes> attributes(const char* name, Links links) const override {
        FileAttributes out;
        const int flags = links == Links::keep ? AT_SYMLINK_NOFOLLOW : 0;
        if (look(fd_.get(), name, flags, out) != 0) return std::nullopt;
        return out;
    }

    FileAttributes attributes() const override {
        FileAttributes out;
        if (const int error = look(fd_.get(), "", AT_EMPTY_PATH, out)) fail(error, "statx");
        return out;
    }

    std::unique_ptr<FolderReader> open(const char* name) const override {
        FileDescriptor child(openat(fd_.get(), name, folderFlags | O_NOFOLLOW));
        if (!child) fail(errno, "open");
        return std::make_unique<LinuxFolderReader>(std::move(child));
    }

private:
    void releaseBuffer() {
        if (buffer_) spareBuffers().put(std::move(buffer_));
    }
    FileType typeByAsking(const char* name) const {
        struct statx result;
        if (statx(fd_.get(), name, AT_SYMLINK_NOFOLLOW | statFlags, STATX_TYPE, &result) != 0)
            return FileType::unknown;
        return typeOfMode(result.stx_mode);
    }

    FileDescriptor fd_;
    std::unique_ptr<ReadBuffer> buffer_;
    bool atEnd_ = false;
};

std::span<const FolderEntry> LinuxFolderReader::read() {
    while (!atEnd_) {
        if (!buffer_) buffer_ = spareBuffers().take();
        const long bytes =
            syscall(SYS_getdents64, fd_.get(), buffer_->bytes.data(), ReadBuffer::size);
        if (bytes < 0 && errno == EINTR) continue;
        // A folder that was removed while it is read has no more names.
        if (bytes < 0 && errno != ENOENT) fail(errno, "getdents64");
        if (bytes <= 0) break;
        std::size_t count = 0;
        for (long at = 0; at < bytes;) {
            const auto* record = reinterpret_cast<const dirent64*>(buffer_->bytes.data() + at);
            at += record->d_reclen;
            const char* name = record->d_name;
            if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
                continue;
            FolderEntry entry;
            entry.name = name;
            entry.length = static_cast<std::uint32_t>(std::strlen(name));
            entry.type = typeOfEntry(record->d_type);
            entry.inode = record->d_ino;
            if (entry.type == FileType::unknown) entry.type = typeByAsking(name);
            buffer_->add(count++, entry);
        }
        if (count > 0) return buffer_->first(count);
    }
    atEnd_ = true;
    releaseBuffer();
    return {};
}

}  // namespace

std::unique_ptr<FolderReader> LinuxFileSystem::openFolder(const URL& folder) const {
    const Anchor anchor(folder);
    FileDescriptor fd(openat(anchor.fd(), anchor.path(folder), folderFlags));
    if (!fd) fail(errno, "open");
    return std::make_unique<LinuxFolderReader>(std::move(fd));
}

std::optional<FileAttributes> LinuxFileSystem::attributes(const URL& url, Links links) const {
    FileAttributes out;
    if (look(url, links, out) != 0) return std::nullopt;
    return out;
}

FileAttributes LinuxFileSystem::requireAttributes(const URL& url, Links links) const {
    FileAttributes out;
    if (const int error = look(url, links, out)) fail(error, "statx");
    return out;
}

std::string LinuxFileSystem::linkTarget(const URL& url) const {
    const Anchor anchor(url);
    std::string target(256, '\0');
    for (;;) {
        const ssize_t size =
            readlinkat(anchor.fd(), anchor.path(url), target.data(), target.size());
        if (size < 0) fail(errno, "readlink");
        if (static_cast<std::size_t>(size) < target.size()) {
            target.resize(static_cast<std::size_t>(size));
            return target;
        }
        target.resize(target.size() * 2);
    }
}

std::optional<URL> LinuxFileSystem::resolved(const URL& url) const {
    std::unique_ptr<char, decltype(&std::free)> path(realpath(url.c_str(), nullptr), &std::free);
    if (!path) return std::nullopt;
    return URL::fromPath(path.get());
}

std::string LinuxFileSystem::readFile(const URL& url, std::size_t limit) const {
    const Anchor anchor(url);
    // Without O_NONBLOCK, a pipe that nobody writes to would hold us here for ever.
    const FileDescriptor fd(
        openat(anchor.fd(), anchor.path(url), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!fd) fail(errno, "open");
    FileAttributes attributes;
    if (const int error = look(fd.get(), "", AT_EMPTY_PATH, attributes)) fail(error, "statx");
    if (attributes.type == FileType::directory) fail(EISDIR, "read");
    if (attributes.type != FileType::file) fail(EINVAL, "read");

    // Files in /proc say that they are empty, so a first piece is always tried.
    const auto promised = static_cast<std::size_t>(attributes.size);
    std::string content(std::min(limit, std::max<std::size_t>(promised + 1, 4096)), '\0');
    std::size_t length = 0;
    while (length < limit) {
        if (length == content.size()) content.resize(std::min(limit, content.size() * 2));
        const ssize_t got = ::read(fd.get(), content.data() + length, content.size() - length);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) fail(errno, "read");
        if (got == 0) break;
        length += static_cast<std::size_t>(got);
    }
    content.resize(length);
    return content;
}

bool LinuxFileSystem::isReadableFolder(const URL& url) const {
    try {
        const Anchor anchor(url);
        return static_cast<bool>(
            FileDescriptor(openat(anchor.fd(), anchor.path(url), folderFlags)));
    } catch (const std::system_error&) {
        return false;
    }
}

}  // namespace tarn
