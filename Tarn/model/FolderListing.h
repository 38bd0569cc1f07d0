#pragma once

#include <functional>
#include <memory>
#include <variant>
#include <vector>

#include "Tarn/model/PaneRows.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/files/SortOrder.h"

/// Reads a folder into rows, for a pane. Synchronous; runs on the pool.
namespace tarn::FolderListing {

/// How many rows the first look at a large folder brings: more than the tallest screen shows.
inline constexpr std::size_t firstRowCount = 240;

/// The first rows of a large folder in their final order, long before all of it is known: names
/// alone decide it, so only the rows themselves are looked at. Absent when the folder is small, is
/// not sorted by name; then the whole listing is the way. Throws ListingError.
std::optional<std::vector<FileItem>> firstRows(const URL& folder, bool includeHidden,
                                               const SortOrder& sort, const CancelToken& token);

/// All rows, sorted. Throws ListingError. A listing that is cancelled returns what it has.
SharedRows allRows(const URL& folder, bool includeHidden, const SortOrder& sort,
                   const CancelToken& token);

/// The same rows with the tags that were left out of a listing of many items; null when none of
/// them has any.
SharedRows withTags(const SharedRows& rows, const SortOrder& sort);

}  // namespace tarn::FolderListing
