#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// One mounted file system, as the kernel's mount table names it.
struct Mount {
    URL mountPoint;
    std::string fileSystem;    ///< "ext4", "nfs4", "fuse.gvfsd-fuse", …
    std::string source;        ///< Device or server.
    std::uint64_t device = 0;  ///< As in FileAttributes.
    bool isReadOnly = false;
    bool isPseudo = false;     ///< proc, sysfs, cgroup and the like: no user's files.
    bool isNetwork = false;    ///< May hang: never touched on a thread that someone waits for.
    bool isRemovable = false;  ///< Below /media, /run/media, /mnt, or gvfs: an external drive.
    bool recordsAccessTimes = true;  ///< False for noatime.
    bool operator==(const Mount&) const = default;
};

/// The mount whose folder is the longest beginning of the path; null when none is.
const Mount* mountHolding(const std::vector<Mount>& mounts, const URL& url);

struct VolumeSpace {
    std::int64_t total = 0;  ///< Bytes.
    std::int64_t free = 0;   ///< Bytes that the user may still write.
    bool operator==(const VolumeSpace&) const = default;
};

/// The mounted file systems. Callable from any thread; nothing here touches the mounts themselves
/// except space().
class Volumes {
public:
    virtual ~Volumes() = default;
    /// All mounts, in the order of the kernel; one hidden below a later mount is left out.
    virtual std::vector<Mount> mounts() const = 0;
    /// The mount that holds a path, by its text alone.
    virtual std::optional<Mount> mountHolding(const URL& url) const = 0;
    /// A name to show ("USB STICK", "Server share", "Computer" for "/").
    virtual std::string displayName(const Mount& mount) const = 0;
    /// Asks the file system; may block on a dead server, so not on the main thread.
    virtual std::optional<VolumeSpace> space(const URL& url) const = 0;
    /// Calls back on an unnamed thread when the mount table changes, until the returned handle
    /// goes.
    virtual std::shared_ptr<void> observe(std::function<void()> onChange) = 0;
};

}  // namespace tarn
