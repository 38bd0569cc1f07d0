#pragma once

#include <string>
#include <vector>

#include "Tarn/model/records/SessionState.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/UUID.h"

namespace tarn {

/// The tabs of a window under a name; one of "workspaces.json".
struct Workspace {
    UUID id;
    std::string name;
    std::vector<WindowSnapshot> tabs;
    Date savedAt;
    bool operator==(const Workspace&) const = default;
};

void to_json(JSON& json, const Workspace& workspace);
void from_json(const JSON& json, Workspace& workspace);

}  // namespace tarn
