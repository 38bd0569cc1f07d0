#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/URL.h"
#include "TarnCore/platform/Drives.h"

namespace tarn {

/// A mounted disk or share, as a person would name it. Identified by its URL.
struct Volume {
    URL url;
    std::string name;
    bool isEjectable = false;
    bool isRemovable = false;
    bool isNetwork = false;
    bool isInternal = false;
    std::int64_t total = 0;             ///< Bytes; 0 until withSpace() was asked.
    std::int64_t available = 0;         ///< Bytes; 0 until withSpace() was asked.
    std::optional<std::string> format;  ///< "ext4", "nfs4", …

    /// Name of its icon.
    std::string_view symbol() const;
    bool operator==(const Volume&) const = default;
};

/// The disks of the machine and its servers, from Platform::current(). Callable from any thread;
/// what is said to wait, never on the main thread.
namespace DriveService {

using tarn::EjectResult;

/// The volumes that hold a person's files: "/" first, then external drives and shares in the
/// order of their mounting. Pseudo file systems, memory, the parts of the running system and the
/// folder in which the desktop shows its servers are left out. Reads the mount table only and
/// touches no disk.
std::vector<Volume> volumes();

/// The same volumes with their sizes filled in. Asks every disk and may wait for a dead server:
/// never on the main thread.
std::vector<Volume> withSpace(std::vector<Volume> volumes);

/// The servers that are connected without being mounted by the system, as the desktop does it.
/// Waits for the program that keeps them.
std::vector<Volume> servers(const Volumes& volumes, Drives& drives);

/// Unmounts the volume at `url` and lets go of its disk; with `force` even while it is in use.
/// Waits for the disk, for as long as it has to write.
EjectResult eject(const URL& url, bool force);

/// Who keeps files of it open. Waits up to 30 seconds. Throws tarn::Error when that cannot be found
/// out.
std::vector<BlockingProcess> blockingProcesses(const URL& on);

/// The URL of a server from what was typed, as ServerAddress::parse() has it.
std::optional<std::string> serverURL(std::string_view text);

}  // namespace DriveService

}  // namespace tarn
