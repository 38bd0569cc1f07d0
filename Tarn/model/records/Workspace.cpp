#include "Tarn/model/records/Workspace.h"

#include "TarnCore/base/JSONFields.h"

namespace tarn {

void to_json(JSON& json, const Workspace& workspace) {
    json = JSON{{"id", workspace.id},
                {"name", workspace.name},
                {"tabs", workspace.tabs},
                {"savedAt", workspace.savedAt}};
}

void from_json(const JSON& json, Workspace& workspace) {
    JSONFields::read(json, "id", workspace.id);
    JSONFields::read(json, "name", workspace.name);
    JSONFields::read(json, "tabs", workspace.tabs);
    JSONFields::read(json, "savedAt", workspace.savedAt);
}

}  // namespace tarn
