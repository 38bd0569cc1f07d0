#pragma once

#include <map>
#include <set>
#include <string>

#include "Tarn/model/PaneRows.h"
#include "Tarn/model/records/ViewMode.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/files/FileGrouping.h"
#include "TarnCore/files/SortOrder.h"

namespace tarn {

/// What a pane makes of the sorted items of its place before it shows them: which of them, under
/// which headings, and with what is in the folders that are unfolded. A value, for any thread.
struct RowArrangement {
    SortOrder sort;  ///< Of what is in unfolded folders; the items come sorted.
    GroupField groupBy = GroupField::none;
    CloudFilter cloudFilter = CloudFilter::all;
    std::set<std::string> foldedGroups;  ///< Titles of groups that show their heading only.
    std::map<URL, SharedRows> unfolded;  ///< What is in folders, sorted or not.

    bool operator==(const RowArrangement&) const = default;

    /// The items are shown as they are.
    bool isPlain() const {
        return groupBy == GroupField::none && cloudFilter == CloudFilter::all && unfolded.empty();
    }
    bool shows(const FileItem& item) const;
    /// `rows` themselves when nothing is to be done. Groups judge “today” by the platform's clock.
    SharedRows arrange(const SharedRows& rows) const;
};

}  // namespace tarn
