#pragma once

#include "TarnCore/archive/UnpackPlan.h"
#include "TarnCore/files/ZipDirectory.h"

namespace tarn::ZipUnpacker {

/// True when the wanted members are all stored or deflated; others are for the library.
bool canUnpack(const ZipDirectory& directory, const UnpackPlan& plan);

/// Fills the folder of the plan, several members at a time. Throws ArchiveError, and
/// std::system_error for what the disk refuses; the folder is then left half filled.
void unpack(const FileBytes& bytes, const ZipDirectory& directory, const UnpackPlan& plan);

}  // namespace tarn::ZipUnpacker
