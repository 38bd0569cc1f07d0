#pragma once

#include <string>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// A path made short enough for one system call: what is left of it, and the folder it starts from.
/// Does not outlive the URL.
class PathAnchor {
public:
    /// Throws std::system_error when a folder of a long path cannot be opened.
    explicit PathAnchor(const URL& url);
    PathAnchor(const PathAnchor&) = delete;
    PathAnchor& operator=(const PathAnchor&) = delete;

    /// For the "at" functions: AT_FDCWD for all but very long paths.
    int fd() const;
    const char* path() const { return path_; }

private:
    FileDescriptor folder_;
    std::string rest_;
    const char* path_;
};

}  // namespace tarn
