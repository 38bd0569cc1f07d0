#pragma once

#include <cstdint>
#include <optional>

#include <fcntl.h>

#include "TarnCore/platform/FileSystem.h"

/// Asking the kernel about one item.
namespace tarn::Statx {

/// A server is not asked again for what the kernel knows, and nothing is mounted for a question.
inline constexpr int cheapFlags = AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;

FileType type(unsigned mode);

/// Returns 0 or the errno. `flags` are AT_SYMLINK_NOFOLLOW, AT_EMPTY_PATH or 0.
int look(int folder, const char* name, int flags, FileAttributes& out);

/// The same; absent with errno set.
std::optional<FileAttributes> attributes(int folder, const char* name, int flags);

/// What tells one open folder from every other.
struct Identity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t mount = 0;  ///< Of the mount it was reached through; 0 where unknown.
};

/// Absent with errno set.
std::optional<Identity> ofDescriptor(int fd);

}  // namespace tarn::Statx
