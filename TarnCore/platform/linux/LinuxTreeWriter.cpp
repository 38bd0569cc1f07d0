#include "TarnCore/platform/linux/LinuxTreeWriter.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <system_error>

#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <fcntl.h>
#include <limits.h>
#include <unistd.h>

#include "TarnCore/base/FileIO.h"

namespace tarn {
namespace {

constexpr mode_t newFileMode = 0666;
constexpr mode_t newFolderMode = 0777;
constexpr mode_t permissionBits = 0777;
constexpr int folderFlags = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

[[noreturn]] void fail(int errnum, const char* what) {
    throw std::system_error(errnum, std::generic_category(), what);
}

timespec converted(const std::optional<UnixTime>& time) {
    if (!time) return {.tv_sec = 0, .tv_nsec = UTIME_NOW};
    return {.tv_sec = static_cast<time_t>(time->seconds), .tv_nsec = time->nanoseconds};
}

void writeTo(int fd, std::string_view bytes, std::int64_t at) {
    if (const int errnum = FileIO::writeAllAt(fd, bytes, at)) fail(errnum, "write");
}

/// Times that the disk cannot keep are no reason to lose the file.
void setTime(int fd, const std::optional<UnixTime>& modified) {
    if (!modified) return;
    const std::array<timespec, 2> times = {converted(modified), converted(modified)};
    if (futimens(fd, times.data()) != 0 && errno != EINVAL && errno != EPERM)
        fail(errno, "futimens");
}

mode_t fileMode(const NewItemFacts& facts) {
    return static_cast<mode_t>(facts.mode.value_or(newFileMode)) & permissionBits;
}

class LinuxNewFile final : public NewFile {
public:
    LinuxNewFile(FileDescriptor fd, const std::optional<UnixTime>& modified)
        : fd_(std::move(fd)), modified_(modified) {}

    void append(std::string_view bytes) override {
        writeTo(fd_.get(), bytes, size_);
        size_ += static_cast<std::int64_t>(bytes.size());
    }
    void skip(std::int64_t bytes) override {
        size_ += bytes;
        if (ftruncate(fd_.get(), size_) != 0) fail(errno, "ftruncate");
    }
    void writeAt(std::int64_t offset, std::string_view bytes) override {
        writeTo(fd_.get(), bytes, offset);
    }
    std::int64_t size() const override { return size_; }
    void finish() override {
        setTime(fd_.get(), modified_);
        fd_.close();
    }

private:
    FileDescriptor fd_;
    std::optional<UnixTime> modified_;
    std::int64_t size_ = 0;
};

/// True once the kernel has refused openat2, which a sandbox may do as well.
std::atomic<bool> openat2IsMissing = false;

}  // namespace

FileDescriptor LinuxTreeWriter::openByNames(const std::string& path, Missing missing) const {
    FileDescriptor folder;
    for (std::size_t begin = 0; begin <= path.size();) {
        std::size_t end = path.find('/', begin);
        if (end == path.npos) end = path.size();
        const std::string name = path.substr(begin, end - begin);
        begin = end + 1;
        if (name.empty() || name == ".") continue;
        if (name == "..") fail(EXDEV, "open");
        const int parent = folder ? folder.get() : root_.get();
        int fd = openat(parent, name.c_str(), folderFlags);
        if (fd < 0 && errno == ENOENT && missing == Missing::create) {
            if (mkdirat(parent, name.c_str(), newFolderMode) != 0 && errno != EEXIST)
                fail(errno, "mkdir");
            fd = openat(parent, name.c_str(), folderFlags);
        }
        if (fd < 0) fail(errno, "open");
        folder = FileDescriptor(fd);
    }
    if (!folder) folder = FileDescriptor(openat(root_.get(), ".", folderFlags));
    if (!folder) fail(errno, "open");
    return folder;
}

FileDescriptor LinuxTreeWriter::openFolder(const std::string& path, Missing missing) const {
    if (path.empty() || path.size() >= PATH_MAX ||
        openat2IsMissing.load(std::memory_order_relaxed)) {
        return openByNames(path, missing);
    }
    open_how how{};
    how.flags = folderFlags;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
    const long fd = syscall(SYS_openat2, root_.get(), path.c_str(), &how, sizeof how);
    if (fd >= 0) return FileDescriptor(static_cast<int>(fd));
    if (errno == ENOSYS || errno == EPERM) {
        openat2IsMissing.store(true, std::memory_order_relaxed);
        return openByNames(path, missing);
    }
    if (errno == ENOENT && missing == Missing::create) return openByNames(path, missing);
    fail(errno, "open");
}

LinuxTreeWriter::Place LinuxTreeWriter::place(std::string_view path, Missing missing) {
    const std::size_t slash = path.rfind('/');
    const std::string_view folder = slash == path.npos ? std::string_view() : path.substr(0, slash);
    std::string name(slash == path.npos ? path : path.substr(slash + 1));
    if (name.empty() || name == "." || name == "..") fail(EXDEV, "open");
    if (name.find('\0') != name.npos) fail(EINVAL, "open");
    if (!last_ || lastPath_ != folder) {
        std::string wanted(folder);
        last_ = openFolder(wanted, missing);
        lastPath_ = std::move(wanted);
    }
    return {last_.get(), std::move(name)};
}

void LinuxTreeWriter::createFolder(std::string_view path) {
    const Place place = this->place(path, Missing::create);
    if (mkdirat(place.folder, place.name.c_str(), newFolderMode) == 0) return;
    if (errno != EEXIST) fail(errno, "mkdir");
    struct stat there;
    if (fstatat(place.folder, place.name.c_str(), &there, AT_SYMLINK_NOFOLLOW) != 0)
        fail(errno, "stat");
    if (!S_ISDIR(there.st_mode)) fail(EEXIST, "mkdir");
}

std::unique_ptr<NewFile> LinuxTreeWriter::createFile(std::string_view path,
                                                     const NewItemFacts& facts) {
    const Place place = this->place(path, Missing::create);
    FileDescriptor fd(openat(place.folder, place.name.c_str(),
                             O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                             fileMode(facts)));
    if (!fd) fail(errno, "open");
    return std::make_unique<LinuxNewFile>(std::move(fd), facts.modified);
}

void LinuxTreeWriter::writeFile(std::string_view path, std::string_view content,
                                const NewItemFacts& facts) {
    const Place place = this->place(path, Missing::create);
    const FileDescriptor fd(openat(place.folder, place.name.c_str(),
                                   O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                   fileMode(facts)));
    if (!fd) fail(errno, "open");
    try {
        writeTo(fd.get(), content, 0);
        setTime(fd.get(), facts.modified);
    } catch (const std::system_error&) {
        unlinkat(place.folder, place.name.c_str(), 0);
        throw;
    }
}

void LinuxTreeWriter::createLink(std::string_view path, const std::string& target,
                                 const std::optional<UnixTime>& modified) {
    const Place place = this->place(path, Missing::create);
    if (target.empty() || target.find('\0') != target.npos) fail(EINVAL, "symlink");
    if (symlinkat(target.c_str(), place.folder, place.name.c_str()) != 0) fail(errno, "symlink");
    if (!modified) return;
    const std::array<timespec, 2> times = {converted(modified), converted(modified)};
    // Not every disk keeps the time of a link, and nobody misses it.
    utimensat(place.folder, place.name.c_str(), times.data(), AT_SYMLINK_NOFOLLOW);
}

void LinuxTreeWriter::createHardLink(std::string_view path, std::string_view existing) {
    const std::size_t slash = existing.rfind('/');
    const std::string folder(slash == existing.npos ? std::string_view()
                                                    : existing.substr(0, slash));
    const std::string name(slash == existing.npos ? existing : existing.substr(slash + 1));
    if (name.empty() || name == "." || name == ".." || name.find('\0') != name.npos)
        fail(EXDEV, "link");
    const FileDescriptor from = openFolder(folder, Missing::fail);
    const Place place = this->place(path, Missing::create);
    if (linkat(from.get(), name.c_str(), place.folder, place.name.c_str(), 0) != 0)
        fail(errno, "link");
}

void LinuxTreeWriter::finishFolder(std::string_view path, const NewItemFacts& facts) {
    const Place place = this->place(path, Missing::fail);
    const FileDescriptor fd(
        openat(place.folder, place.name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!fd) fail(errno, "open");
    if (facts.mode) {
        struct stat now;
        if (fstat(fd.get(), &now) != 0) fail(errno, "stat");
        const mode_t wanted = now.st_mode & static_cast<mode_t>(*facts.mode) & permissionBits;
        if (wanted != (now.st_mode & 07777) && fchmod(fd.get(), wanted) != 0) fail(errno, "chmod");
    }
    setTime(fd.get(), facts.modified);
}

void LinuxTreeWriter::removeFile(std::string_view path) {
    const Place place = this->place(path, Missing::fail);
    if (unlinkat(place.folder, place.name.c_str(), 0) != 0) fail(errno, "unlink");
}

}  // namespace tarn
