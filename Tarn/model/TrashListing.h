#pragma once

#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/files/FileItem.h"

/// What the Trash shows: the items of every disk's Trash as if they lay in one folder.
namespace tarn::TrashListing {

/// In no order. Synchronous; runs on the pool. A Trash that is not there is empty; one that cannot
/// be read is left out as long as others have something. Else throws ListingError.
std::vector<FileItem> items(bool includeHidden, const CancelToken& token);

}  // namespace tarn::TrashListing
