#pragma once

#include <optional>
#include <string_view>

#include "TarnCore/base/JSON.h"

namespace tarn {

enum class ViewMode { grid, list };

/// Which items of a synchronised folder are shown.
enum class CloudFilter { all, cloudOnly, onThisMac };

/// Where a search in a pane looks.
enum class SearchScopeSetting { currentFolder, home, thisMac };

namespace ViewModes {
std::string_view rawValue(ViewMode mode);
std::optional<ViewMode> fromRawValue(std::string_view raw);
}  // namespace ViewModes

namespace SearchScopes {
std::string_view rawValue(SearchScopeSetting scope);
std::optional<SearchScopeSetting> fromRawValue(std::string_view raw);
}  // namespace SearchScopes

/// An unknown value, say of a newer version, leaves the target as it is.
void to_json(JSON& json, const ViewMode& mode);
void from_json(const JSON& json, ViewMode& mode);
void to_json(JSON& json, const SearchScopeSetting& scope);
void from_json(const JSON& json, SearchScopeSetting& scope);

}  // namespace tarn
