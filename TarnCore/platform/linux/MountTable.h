#pragma once

#include <string_view>
#include <vector>

#include "TarnCore/platform/Volumes.h"

namespace tarn {

/// Reads the text of /proc/PID/mountinfo: the mounts that can be seen, in the order of the kernel.
/// A mount that a later one covers is left out, and so is one whose folder was removed. Lines that
/// are not understood are skipped.
std::vector<Mount> parseMountInfo(std::string_view text);

/// The mounts of this process as of now; empty when /proc is not there.
std::vector<Mount> currentMounts();

}  // namespace tarn
