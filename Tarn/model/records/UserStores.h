#pragma once

#include <set>
#include <string>

#include "Tarn/model/records/AppSettings.h"
#include "Tarn/model/records/Favorite.h"
#include "Tarn/model/records/SmartFolder.h"
#include "Tarn/model/records/StoredList.h"
#include "Tarn/model/records/Workspace.h"
#include "TarnCore/files/JSONStore.h"

/// The stores that both the window and the terminal program open, one file each in the support
/// folder. Each call opens one of its own.
namespace tarn::UserStores {

JSONStore<AppSettings> settings();            ///< "settings.json"
JSONStore<StoredList<Favorite>> favorites();  ///< "favorites.json"
/// "smart-folders.json": the user's own; SmartFolders::merged puts the built-in ones in front.
JSONStore<StoredList<SmartFolder>> smartFolders();
JSONStore<StoredList<Workspace>> workspaces();  ///< "workspaces.json"
JSONStore<StoredList<std::string>> servers();   ///< "servers.json"
/// "never-suggest.json": paths that no tool shall suggest again.
JSONStore<std::set<std::string>> exclusions();

}  // namespace tarn::UserStores
