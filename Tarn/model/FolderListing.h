#pragma once

#include <functional>

#include "Tarn/model/PaneRows.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/files/SortOrder.h"

/// Reads a folder into rows, for a pane. Synchronous; runs on the pool.
namespace tarn::FolderListing {

/// How many rows the first look at a large folder brings: more than the tallest screen shows.
inline constexpr std::size_t firstRowCount = 240;

/// What is told while a folder is read; either may be empty.
struct Progress {
    /// The names have been read, and no item was looked at yet. Names that have changed until it
    /// returns are read again.
    std::function<void()> onNames;
    /// Gets the rows that there are while the rest is being read: at once those that begin a large
    /// folder, since names alone decide about the order by name; further ones, and those of another
    /// order, only of a disk that takes its time.
    std::function<void(SharedRows)> onPart;
};

/// All rows, sorted. Throws ListingError. A listing that is cancelled returns what it has.
SharedRows rows(const URL& folder, bool includeHidden, const SortOrder& sort,
                const CancelToken& token, const Progress& progress = {});

/// The same rows with the tags that were left out of a listing of many items; null when none of
/// them has any, and when it is cancelled.
SharedRows withTags(const SharedRows& rows, const SortOrder& sort, const CancelToken& token);

}  // namespace tarn::FolderListing
