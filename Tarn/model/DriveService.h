#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/URL.h"

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

/// A program that keeps files of a volume open.
struct BlockingProcess {
    std::int32_t pid = 0;
    std::string command;
    std::vector<std::string> files;  ///< Paths on the volume.
    bool operator==(const BlockingProcess&) const = default;
};

/// The disks of the machine, from Platform::current().volumes. Callable from any thread.
namespace DriveService {

/// The volumes that hold a person's files: "/" first, then external drives and shares in the
/// order of their mounting. Pseudo file systems, memory and the parts of the running system are
/// left out. Reads the mount table only and touches no disk.
std::vector<Volume> volumes();

/// The same volumes with their sizes filled in. Asks every disk and may wait for a dead server:
/// never on the main thread.
std::vector<Volume> withSpace(std::vector<Volume> volumes);

}  // namespace DriveService

}  // namespace tarn
