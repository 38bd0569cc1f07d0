#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/archive/UnpackPlan.h"

namespace tarn::StreamUnpacker {

/// Fills the folder of the plan. One thread reads and unpacks, another writes. Returns the cleaned
/// paths of members that are not wanted but of which wanted ones are only second names; when there
/// are any, the folder is to be filled again with these as well.
///
/// Throws ArchiveError, and std::system_error for what the disk refuses; the folder is then left
/// half filled. `fileSize` is that of the archive.
std::vector<std::string> unpack(ArchiveStream& stream, std::int64_t fileSize,
                                const UnpackPlan& plan);

/// The same for the one member of a compressed file, which gets this path, and the mode and time
/// given where the archive has none.
void unpackSingleFile(ArchiveStream& stream, std::int64_t fileSize, const UnpackPlan& plan,
                      const std::string& path, const NewItemFacts& facts);

}  // namespace tarn::StreamUnpacker
