#include "TarnCore/platform/linux/LinuxFileSystem.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <system_error>
#include <type_traits>

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/PageBuffer.h"
#include "TarnCore/base/QuietOpen.h"
#include "TarnCore/platform/linux/PathAnchor.h"
#include "TarnCore/platform/linux/Statx.h"

namespace tarn {
namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
/// Without O_NONBLOCK, a pipe that nobody writes to would hold us for ever.
constexpr int fileFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

[[noreturn]] void fail(int errnum, const char* what) {
    throw std::system_error(errnum, std::generic_category(), what);
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

int look(const URL& url, Links links, FileAttributes& out) {
    try {
        const PathAnchor anchor(url);
        return Statx::look(anchor.fd(), anchor.path(),
                           links == Links::keep ? AT_SYMLINK_NOFOLLOW : 0, out);
    } catch (const std::system_error& error) {
        return error.code().value();
    }
}

/// ext4 keeps large folders in the order of a hash of their names, and that is also the position
/// that one may seek: half of the names stand before this one.
constexpr std::int64_t middleHash = std::int64_t{1} << 62;
/// Bytes of the folder itself from which on two threads read it faster than one: some 10,000 names,
/// which take one of them 5 ms.
constexpr std::int64_t splitFrom = 512 * 1024;

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
    explicit LinuxFolderReader(FileDescriptor fd, bool isWhole = true)
        : fd_(std::move(fd)), isWhole_(isWhole) {}
    ~LinuxFolderReader() override { releaseBuffer(); }

    std::span<const FolderEntry> read() override;
    std::unique_ptr<FolderReader> splitOff() override;

    std::optional<FileAttributes> attributes(const char* name, Links links) const override {
        FileAttributes out;
        const int flags = links == Links::keep ? AT_SYMLINK_NOFOLLOW : 0;
        if (Statx::look(fd_.get(), name, flags, out) != 0) return std::nullopt;
        return out;
    }

    FileAttributes attributes() const override {
        FileAttributes out;
        if (const int error = Statx::look(fd_.get(), "", AT_EMPTY_PATH, out)) fail(error, "statx");
        return out;
    }

    std::unique_ptr<FolderReader> open(const char* name) const override {
        FileDescriptor child(openat(fd_.get(), name, folderFlags | O_NOFOLLOW));
        if (!child) fail(errno, "open");
        return std::make_unique<LinuxFolderReader>(std::move(child));
    }

    std::string_view readFile(const char* name, std::size_t limit,
                              PageBuffer& buffer) const override;

private:
    void releaseBuffer() {
        if (buffer_) spareBuffers().put(std::move(buffer_));
    }
    FileType typeByAsking(const char* name) const {
        struct statx result;
        if (statx(fd_.get(), name, AT_SYMLINK_NOFOLLOW | Statx::cheapFlags, STATX_TYPE, &result) !=
            0)
            return FileType::unknown;
        return Statx::type(result.stx_mode);
    }

    FileDescriptor fd_;
    std::unique_ptr<ReadBuffer> buffer_;
    std::int64_t end_ = std::numeric_limits<std::int64_t>::max();  ///< Where another reader begins.
    bool isWhole_;  ///< Nothing was read of it, and no part is another's.
    bool atEnd_ = false;
};

std::unique_ptr<FolderReader> LinuxFolderReader::splitOff() {
    if (!isWhole_) return nullptr;
    struct statfs disk;
    struct stat folder;
    if (fstatfs(fd_.get(), &disk) != 0 || disk.f_type != EXT4_SUPER_MAGIC) return nullptr;
    if (fstat(fd_.get(), &folder) != 0 || folder.st_size < splitFrom) return nullptr;
    FileDescriptor later(openat(fd_.get(), ".", folderFlags));
    // A folder without an index has no place so far from its beginning.
    if (!later || lseek(later.get(), middleHash, SEEK_SET) != middleHash) return nullptr;
    end_ = middleHash;
    isWhole_ = false;
    return std::make_unique<LinuxFolderReader>(std::move(later), /*isWhole=*/false);
}

std::span<const FolderEntry> LinuxFolderReader::read() {
    isWhole_ = false;
    while (!atEnd_) {
        if (!buffer_) buffer_ = spareBuffers().take();
        const long bytes =
            syscall(SYS_getdents64, fd_.get(), buffer_->bytes.data(), ReadBuffer::size);
        if (bytes < 0 && errno == EINTR) continue;
        // A folder that was removed while it is read has no more names.
        if (bytes < 0 && errno != ENOENT) fail(errno, "getdents64");
        if (bytes <= 0) break;
        std::size_t count = 0;
        for (long at = 0; at < bytes && !atEnd_;) {
            const auto* record = reinterpret_cast<const dirent64*>(buffer_->bytes.data() + at);
            at += record->d_reclen;
            atEnd_ = record->d_off >= end_;  // It tells where the next one stands.
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

std::string_view LinuxFolderReader::readFile(const char* name, std::size_t limit,
                                             PageBuffer& buffer) const {
    // Most texts end within the first piece, which costs no look at their size.
    constexpr std::size_t firstPiece = 256 * 1024;
    const FileDescriptor file(openQuietly(fd_.get(), name, fileFlags | O_NOFOLLOW));
    if (!file) fail(errno, "open");
    buffer.grow(firstPiece, 0);
    std::size_t length = 0;
    while (length < limit) {
        if (length == buffer.size()) buffer.grow(std::min(limit, length * 4), length);
        const std::size_t room = std::min(buffer.size(), limit) - length;
        const ssize_t got = ::read(file.get(), buffer.data() + length, room);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) fail(errno, "read");
        if (got == 0) break;
        length += static_cast<std::size_t>(got);
    }
    return {buffer.data(), length};
}

}  // namespace

std::unique_ptr<FolderReader> LinuxFileSystem::openFolder(const URL& folder) const {
    const PathAnchor anchor(folder);
    FileDescriptor fd(openat(anchor.fd(), anchor.path(), folderFlags));
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
    const PathAnchor anchor(url);
    std::string target(256, '\0');
    for (;;) {
        const ssize_t size = readlinkat(anchor.fd(), anchor.path(), target.data(), target.size());
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
    const PathAnchor anchor(url);
    const FileDescriptor fd(openQuietly(anchor.fd(), anchor.path(), fileFlags));
    if (!fd) fail(errno, "open");
    FileAttributes attributes;
    if (const int error = Statx::look(fd.get(), "", AT_EMPTY_PATH, attributes))
        fail(error, "statx");
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
        // As long as was said, and nothing behind it.
        if (length == promised && length < content.size()) break;
    }
    content.resize(length);
    return content;
}

bool LinuxFileSystem::isReadableFolder(const URL& url) const {
    try {
        const PathAnchor anchor(url);
        return static_cast<bool>(FileDescriptor(openat(anchor.fd(), anchor.path(), folderFlags)));
    } catch (const std::system_error&) {
        return false;
    }
}

}  // namespace tarn
