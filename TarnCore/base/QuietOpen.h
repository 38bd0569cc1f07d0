#pragma once

#include <cerrno>

#include <fcntl.h>

namespace tarn {

/// Opens a file that the program looks at of its own accord, for an index, a preview, a search: no
/// trace of that is left in its access time, which tells when a person opened it last. Only its
/// owner may ask for that; others open it as usual. `folder` and `flags` are those of openat(2).
/// Returns the descriptor, or -1 with errno set. Callable from any thread.
inline int openQuietly(int folder, const char* path, int flags) {
    const int file = openat(folder, path, flags | O_NOATIME);
    return file < 0 && errno == EPERM ? openat(folder, path, flags) : file;
}

}  // namespace tarn
