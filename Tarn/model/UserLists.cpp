#include "Tarn/model/UserLists.h"

#include <utility>

#include <nlohmann/json.hpp>

#include "Tarn/model/StoreWatcher.h"
#include "Tarn/model/records/Favorites.h"
#include "Tarn/model/records/NamedRecords.h"
#include "Tarn/model/records/Servers.h"
#include "Tarn/model/records/SmartFolders.h"
#include "Tarn/model/records/UserStores.h"
#include "Tarn/model/records/Workspaces.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {

struct UserLists::Stores {
    JSONStore<StoredList<Favorite>> favorites = UserStores::favorites();
    JSONStore<StoredList<SmartFolder>> smartFolders = UserStores::smartFolders();
    JSONStore<StoredList<Workspace>> workspaces = UserStores::workspaces();
    JSONStore<StoredList<std::string>> servers = UserStores::servers();
    JSONStore<std::set<std::string>> exclusions = UserStores::exclusions();
};

UserLists::UserLists(QObject* parent)
    : QObject(parent),
      stores_(std::make_unique<Stores>()),
      favorites_(stores_->favorites.value().records),
      smartFolders_(SmartFolders::merged(stores_->smartFolders.value().records)),
      workspaces_(stores_->workspaces.value().records),
      servers_(stores_->servers.value().records),
      exclusions_(stores_->exclusions.value()) {}

UserLists::~UserLists() = default;

// --- Favourites

const Favorite* UserLists::favorite(const URL& folder) const {
    return Favorites::find(favorites_, folder);
}

UUID UserLists::addFavorite(const URL& folder, std::optional<std::size_t> index) {
    stores_->favorites.update([favorite = Favorites::make(folder), index](auto& list) {
        Favorites::insert(list.records, favorite, index);
    });
    showFavorites();
    return favorite(folder)->id;
}

void UserLists::removeFavorite(const UUID& id) {
    stores_->favorites.update([id](auto& list) { Favorites::remove(list.records, id); });
    showFavorites();
}

void UserLists::renameFavorite(const UUID& id, std::string_view name) {
    stores_->favorites.update(
        [id, name = std::string(name)](auto& list) { Favorites::rename(list.records, id, name); });
    showFavorites();
}

void UserLists::moveFavorite(const UUID& id, std::size_t index) {
    stores_->favorites.update(
        [id, index](auto& list) { NamedRecords::move(list.records, id, index); });
    showFavorites();
}

void UserLists::showFavorites() {
    auto favorites = stores_->favorites.value().records;
    if (favorites == favorites_) return;
    favorites_ = std::move(favorites);
    emit favoritesChanged();
}

// --- Smart folders

const SmartFolder* UserLists::smartFolder(const UUID& id) const {
    return NamedRecords::find(smartFolders_, id);
}

UUID UserLists::addSmartFolder(std::string_view name, std::string_view query,
                               SearchScopeSetting scope) {
    const SmartFolder folder = SmartFolders::make(smartFolders_, name, query, scope);
    stores_->smartFolders.update([folder](auto& list) { SmartFolders::add(list.records, folder); });
    showSmartFolders();
    return folder.id;
}

void UserLists::removeSmartFolder(const UUID& id) {
    stores_->smartFolders.update([id](auto& list) { SmartFolders::remove(list.records, id); });
    showSmartFolders();
}

void UserLists::changeSmartFolder(const SmartFolder& folder) {
    SmartFolder kept = folder;
    kept.name = SmartFolders::requireName(smartFolders_, folder.name, folder.id);
    kept.query = SmartFolders::requireQuery(folder.query);
    stores_->smartFolders.update([kept](auto& list) { SmartFolders::change(list.records, kept); });
    showSmartFolders();
}

void UserLists::renameSmartFolder(const UUID& id, std::string_view name) {
    const std::string kept = SmartFolders::requireName(smartFolders_, name, id);
    stores_->smartFolders.update(
        [id, kept](auto& list) { SmartFolders::rename(list.records, id, kept); });
    showSmartFolders();
}

void UserLists::moveSmartFolder(const UUID& id, std::size_t index) {
    stores_->smartFolders.update(
        [id, index](auto& list) { SmartFolders::move(list.records, id, index); });
    showSmartFolders();
}

void UserLists::showSmartFolders() {
    auto folders = SmartFolders::merged(stores_->smartFolders.value().records);
    if (folders == smartFolders_) return;
    smartFolders_ = std::move(folders);
    emit smartFoldersChanged();
}

// --- Workspaces

const Workspace* UserLists::workspace(const UUID& id) const {
    return NamedRecords::find(workspaces_, id);
}

const Workspace* UserLists::workspaceNamed(std::string_view name) const {
    return Workspaces::named(workspaces_, name);
}

UUID UserLists::saveWorkspace(std::string_view name, std::vector<WindowSnapshot> tabs) {
    const Workspace workspace =
        Workspaces::make(name, std::move(tabs), Platform::current().clock->now());
    stores_->workspaces.update(
        [workspace](auto& list) { Workspaces::save(list.records, workspace); });
    showWorkspaces();
    return workspaceNamed(workspace.name)->id;
}

void UserLists::removeWorkspace(const UUID& id) {
    stores_->workspaces.update([id](auto& list) { Workspaces::remove(list.records, id); });
    showWorkspaces();
}

void UserLists::renameWorkspace(const UUID& id, std::string_view name) {
    const std::string kept = Workspaces::requireName(workspaces_, name, id);
    stores_->workspaces.update(
        [id, kept](auto& list) { Workspaces::rename(list.records, id, kept); });
    showWorkspaces();
}

void UserLists::showWorkspaces() {
    auto workspaces = stores_->workspaces.value().records;
    if (workspaces == workspaces_) return;
    workspaces_ = std::move(workspaces);
    emit workspacesChanged();
}

// --- Servers and exclusions

void UserLists::rememberServer(std::string_view address) {
    stores_->servers.update(
        [address = std::string(address)](auto& list) { Servers::remember(list.records, address); });
    showServers();
}

void UserLists::forgetServer(std::string_view address) {
    stores_->servers.update(
        [address = std::string(address)](auto& list) { Servers::forget(list.records, address); });
    showServers();
}

void UserLists::showServers() {
    auto servers = stores_->servers.value().records;
    if (servers == servers_) return;
    servers_ = std::move(servers);
    emit serversChanged();
}

bool UserLists::isExcluded(const URL& url) const {
    return exclusions_.contains(JSONText::fromPath(url));
}

void UserLists::exclude(const URL& url) {
    stores_->exclusions.update(
        [path = JSONText::fromPath(url)](std::set<std::string>& paths) { paths.insert(path); });
    showExclusions();
}

void UserLists::include(const URL& url) {
    stores_->exclusions.update(
        [path = JSONText::fromPath(url)](std::set<std::string>& paths) { paths.erase(path); });
    showExclusions();
}

void UserLists::showExclusions() {
    auto exclusions = stores_->exclusions.value();
    if (exclusions == exclusions_) return;
    exclusions_ = std::move(exclusions);
    emit exclusionsChanged();
}

// --- The disk

void UserLists::watch(StoreWatcher& watcher) {
    watcher.add(stores_->favorites, [this] { showFavorites(); });
    watcher.add(stores_->smartFolders, [this] { showSmartFolders(); });
    watcher.add(stores_->workspaces, [this] { showWorkspaces(); });
    watcher.add(stores_->servers, [this] { showServers(); });
    watcher.add(stores_->exclusions, [this] { showExclusions(); });
}

void UserLists::flush() {
    stores_->favorites.flush();
    stores_->smartFolders.flush();
    stores_->workspaces.flush();
    stores_->servers.flush();
    stores_->exclusions.flush();
}

}  // namespace tarn
