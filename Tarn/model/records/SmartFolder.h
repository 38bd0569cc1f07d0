#pragma once

#include <string>
#include <vector>

#include "Tarn/model/records/ViewMode.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/UUID.h"

namespace tarn {

/// A saved search; one of "smart-folders.json".
struct SmartFolder {
    UUID id;
    std::string name;
    std::string symbol;
    std::string query;  ///< As typed.
    SearchScopeSetting scope = SearchScopeSetting::home;
    bool builtIn = false;
    bool operator==(const SmartFolder&) const = default;

    /// Those that every list has. Their ids never change, so that a stored session finds them.
    static const std::vector<SmartFolder>& builtIns();
};

void to_json(JSON& json, const SmartFolder& folder);
void from_json(const JSON& json, SmartFolder& folder);

}  // namespace tarn
