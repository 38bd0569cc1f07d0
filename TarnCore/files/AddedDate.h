#pragma once

#include "TarnCore/base/URL.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// When an item came into its folder, kept in an attribute of it (ResourceReader::addedAttribute)
/// by whoever puts it there or sees it arrive. A copy needs none: it was created where it is.
namespace AddedDate {

/// Says that the item came just now. Nothing happens where the disk keeps no attributes or the item
/// belongs to somebody else, nor with a symbolic link, which has none of its own.
void note(const URL& item, FileType type);
/// The same for one whose type is not known.
void note(const URL& item);

}  // namespace AddedDate

}  // namespace tarn
