#include "TarnCore/platform/linux/PathAnchor.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <limits.h>

namespace tarn {

PathAnchor::PathAnchor(const URL& url) : path_(url.c_str()) {
    const std::string& path = url.path();
    if (path.size() < PATH_MAX) return;
    std::size_t begin = 0;
    while (path.size() - begin >= PATH_MAX) {
        const std::size_t slash = path.rfind('/', begin + PATH_MAX - 2);
        if (slash == path.npos || slash <= begin)
            throw std::system_error(ENAMETOOLONG, std::generic_category(), "open");
        const std::string piece = path.substr(begin, slash - begin);
        FileDescriptor next(openat(fd(), piece.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!next) throw std::system_error(errno, std::generic_category(), "open");
        folder_ = std::move(next);
        begin = slash + 1;
    }
    rest_ = path.substr(begin);
    path_ = rest_.c_str();
}

int PathAnchor::fd() const { return folder_ ? folder_.get() : AT_FDCWD; }

}  // namespace tarn
