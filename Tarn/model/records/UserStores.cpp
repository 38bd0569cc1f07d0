#include "Tarn/model/records/UserStores.h"

#include <nlohmann/json.hpp>

namespace tarn::UserStores {

JSONStore<AppSettings> settings() {
    return {"settings.json", [] { return AppSettings(); }, UnknownKeys::kept};
}

JSONStore<StoredList<Favorite>> favorites() {
    return {"favorites.json", [] { return StoredList<Favorite>(); }};
}

JSONStore<StoredList<SmartFolder>> smartFolders() {
    return {"smart-folders.json", [] { return StoredList<SmartFolder>(); }};
}

JSONStore<StoredList<Workspace>> workspaces() {
    return {"workspaces.json", [] { return StoredList<Workspace>(); }};
}

JSONStore<StoredList<std::string>> servers() {
    return {"servers.json", [] { return StoredList<std::string>(); }};
}

JSONStore<std::set<std::string>> exclusions() {
    return {"never-suggest.json", [] { return std::set<std::string>(); }};
}

}  // namespace tarn::UserStores
