#pragma once

#include <cstdint>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// Takes from this process, and from all that it will start, whatever reading a document does not
/// need. Nothing of it can be taken back. What the kernel does not offer is left out.
namespace Sandbox {

struct Limits {
    std::int64_t memory = 0;        ///< Bytes of its own; more cannot be had.
    std::int64_t addressSpace = 0;  ///< Bytes, what is mapped from files included.
    int descriptors = 0;            ///< Open at once.
};

/// Which of the walls stand.
struct Walls {
    bool limits = false;
    bool calls = false;    ///< Of the system calls only harmless ones are left (seccomp).
    bool folders = false;  ///< Of the disk only what `readable` names can be opened (Landlock).
};

/// From now on the process writes no file, changes nothing on the disk, has no network, looks into
/// no other process, gains no rights, and leaves no core dump. Files can be opened, and programs
/// started, only below the system's own folders and `readable`. Before the first thread.
Walls enter(const Limits& limits, const std::vector<URL>& readable);

/// Sets the limit of memory to so many bytes, at most those that `enter` was given. What the
/// process has already stays.
void limitMemory(std::int64_t bytes);

/// Ends the process with SIGXCPU when it has worked for so many seconds from now.
void limitProcessorTime(std::int64_t seconds);

}  // namespace Sandbox

}  // namespace tarn
