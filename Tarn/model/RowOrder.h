#pragma once

#include <cstdint>

#include "TarnCore/files/FileGrouping.h"
#include "TarnCore/files/SortOrder.h"

namespace tarn {

/// What decides where the rows of a pane stand. While it stays, new rows of the same place are the
/// old ones with some more and some less, in which a view finds its way back to what it showed.
struct RowOrder {
    SortOrder sort;
    GroupField groupBy = GroupField::none;
    std::uint64_t search = 0;  ///< Whose results they are, another number for every question; 0 for
                               ///< the place itself.
    bool isRanked = false;     ///< Results, the best first.
    bool operator==(const RowOrder&) const = default;
};

}  // namespace tarn
