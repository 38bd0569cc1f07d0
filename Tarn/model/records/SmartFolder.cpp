#include "Tarn/model/records/SmartFolder.h"

#include "TarnCore/base/JSONFields.h"

namespace tarn {

const std::vector<SmartFolder>& SmartFolder::builtIns() {
    const auto make = [](const char* id, const char* name, const char* symbol, const char* query) {
        return SmartFolder{*UUID::parse(id), name, symbol, query, SearchScopeSetting::home, true};
    };
    // Number 3 was given out once and must not come back with another meaning.
    static const std::vector<SmartFolder> folders = {
        make("7A2D0000-0000-0000-0000-000000000001", "Large Files",
             "externaldrive.badge.exclamationmark", "over 1 gb"),
        make("7A2D0000-0000-0000-0000-000000000002", "Screenshots", "camera.viewfinder",
             "Screenshots"),
        make("7A2D0000-0000-0000-0000-000000000004", "Installers", "shippingbox", "Installers"),
    };
    return folders;
}

void to_json(JSON& json, const SmartFolder& folder) {
    json = JSON{{"id", folder.id},       {"name", folder.name},   {"symbol", folder.symbol},
                {"query", folder.query}, {"scope", folder.scope}, {"builtIn", folder.builtIn}};
}

void from_json(const JSON& json, SmartFolder& folder) {
    JSONFields::read(json, "id", folder.id);
    JSONFields::read(json, "name", folder.name);
    JSONFields::read(json, "symbol", folder.symbol);
    JSONFields::read(json, "query", folder.query);
    JSONFields::read(json, "scope", folder.scope);
    JSONFields::read(json, "builtIn", folder.builtIn);
}

}  // namespace tarn
