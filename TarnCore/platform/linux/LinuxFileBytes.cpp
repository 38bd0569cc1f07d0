#include "TarnCore/platform/linux/LinuxFileBytes.h"

#include <cerrno>
#include <system_error>

#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/QuietOpen.h"

namespace tarn {
namespace {

[[noreturn]] void fail(int errnum, const char* what) {
    throw std::system_error(errnum, std::generic_category(), what);
}

}  // namespace

LinuxFileBytes::LinuxFileBytes(const char* path, Links links)
    // Without O_NONBLOCK, a pipe that nobody writes to would hold us here for ever.
    : fd_(openQuietly(
          AT_FDCWD, path,
          O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | (links == Links::keep ? O_NOFOLLOW : 0))) {
    if (!fd_) fail(errno, "open");
    struct stat facts;
    if (fstat(fd_.get(), &facts) != 0) fail(errno, "stat");
    if (S_ISDIR(facts.st_mode)) fail(EISDIR, "open");
    if (!S_ISREG(facts.st_mode)) fail(EINVAL, "open");
    size_ = facts.st_size;
}

std::size_t LinuxFileBytes::read(std::int64_t offset, std::span<char> into) const {
    std::size_t done = 0;
    while (done < into.size()) {
        const ssize_t got = pread(fd_.get(), into.data() + done, into.size() - done,
                                  offset + static_cast<std::int64_t>(done));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) fail(errno, "read");
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

}  // namespace tarn
