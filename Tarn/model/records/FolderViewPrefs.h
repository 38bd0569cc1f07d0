#pragma once

#include <optional>

#include "Tarn/model/records/ViewMode.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/files/FileGrouping.h"
#include "TarnCore/files/SortOrder.h"

namespace tarn {

/// How one folder is shown; "folder-views.json" maps paths to these.
struct FolderViewPrefs {
    ViewMode viewMode = ViewMode::grid;
    SortOrder sort;
    double iconSize = 96;  ///< Of the grid, in logical pixels.
    std::optional<GroupField> groupBy;
    bool operator==(const FolderViewPrefs&) const = default;
};

void to_json(JSON& json, const FolderViewPrefs& prefs);
void from_json(const JSON& json, FolderViewPrefs& prefs);

}  // namespace tarn
