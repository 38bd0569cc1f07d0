#include "TarnCore/platform/ForeignFile.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include <sys/stat.h>

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/FileIO.h"
#include "TarnCore/base/UUID.h"

namespace tarn {
namespace {

constexpr int mostAttempts = 8;

/// Tells whether a file is the one that was read.
struct Version {
    std::uint64_t inode = 0;
    std::int64_t size = -1;     ///< Bytes; -1 for no file.
    std::int64_t modified = 0;  ///< Nanoseconds.
    bool operator==(const Version&) const = default;
};

Version versionOf(const struct stat& status) {
    return {status.st_ino, status.st_size,
            std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec};
}

struct Read {
    Version version;
    std::string text;
    std::optional<mode_t> mode;  ///< Absent for no file.
};

/// 0 or an errno.
int read(const URL& file, std::size_t largest, Read& content) {
    // Without O_NONBLOCK a pipe of this name would hold us here for ever.
    const FileDescriptor fd(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!fd) return errno == ENOENT ? 0 : errno;
    struct stat status {};
    if (fstat(fd.get(), &status) != 0) return errno;
    if (!S_ISREG(status.st_mode)) return EISDIR;
    if (static_cast<std::uint64_t>(status.st_size) > largest) return EFBIG;
    auto text = FileIO::readAll(fd.get());
    if (!text) return errno;
    content = {versionOf(status), *std::move(text), status.st_mode & 07777};
    return 0;
}

bool isStill(const URL& file, const Version& version) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) return errno == ENOENT && version == Version{};
    return versionOf(status) == version;
}

/// 0, EAGAIN when another program has written the file since it was read, or another errno.
int replace(const URL& file, const std::string& text, mode_t mode, const Version& version) {
    const URL temporary =
        file.parent().appending("." + std::string(file.name()) + "." + UUID::random().string());
    const FileDescriptor fd(
        open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!fd) return errno;
    int failure = FileIO::writeAll(fd.get(), text);
    if (failure == 0 && fchmod(fd.get(), mode) != 0) failure = errno;
    if (failure == 0 && !isStill(file, version)) failure = EAGAIN;
    if (failure == 0 && rename(temporary.c_str(), file.c_str()) != 0) failure = errno;
    if (failure != 0) unlink(temporary.c_str());
    return failure;
}

}  // namespace

int ForeignFile::edit(const URL& file, mode_t mode, std::size_t largest,
                      const std::function<std::optional<std::string>(const std::string&)>& change) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(file.c_str(), nullptr),
                                                           &std::free);
    const URL target = real ? URL::fromPath(real.get()) : file;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        Read content;
        if (const int failure = read(target, largest, content); failure != 0) return failure;
        const auto text = change(content.text);
        if (!text || (*text == content.text && content.mode)) return 0;
        const int failure = replace(target, *text, content.mode.value_or(mode), content.version);
        if (failure != EAGAIN) return failure;
    }
    return EBUSY;
}

}  // namespace tarn
