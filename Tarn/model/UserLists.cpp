#include "Tarn/model/UserLists.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "TarnCore/files/JSONStore.h"

namespace tarn {
namespace {

template <class Record>
std::vector<Record> none() {
    return {};
}

std::vector<SmartFolder> withBuiltIns(const std::vector<SmartFolder>& stored) {
    std::vector<SmartFolder> folders = SmartFolder::builtIns();
    for (const SmartFolder& folder : stored) {
        const bool isKnown =
            std::any_of(folders.begin(), folders.end(),
                        [&folder](const SmartFolder& known) { return known.id == folder.id; });
        if (!isKnown) folders.push_back(folder);
    }
    return folders;
}

}  // namespace

struct UserLists::Stores {
    JSONStore<std::vector<Favorite>> favorites{"favorites.json", none<Favorite>};
    JSONStore<std::vector<SmartFolder>> smartFolders{"smart-folders.json", none<SmartFolder>};
    JSONStore<std::vector<Workspace>> workspaces{"workspaces.json", none<Workspace>};
    JSONStore<std::vector<std::string>> servers{"servers.json", none<std::string>};
};

UserLists::UserLists(QObject* parent)
    : QObject(parent),
      stores_(std::make_unique<Stores>()),
      favorites_(stores_->favorites.value()),
      smartFolders_(withBuiltIns(stores_->smartFolders.value())),
      workspaces_(stores_->workspaces.value()),
      servers_(stores_->servers.value()) {}

UserLists::~UserLists() = default;

void UserLists::setFavorites(std::vector<Favorite> favorites) {
    if (favorites == favorites_) return;
    favorites_ = std::move(favorites);
    stores_->favorites.set(favorites_);
    emit favoritesChanged();
}

const SmartFolder* UserLists::smartFolder(const UUID& id) const {
    const auto found = std::find_if(smartFolders_.begin(), smartFolders_.end(),
                                    [&id](const SmartFolder& folder) { return folder.id == id; });
    return found == smartFolders_.end() ? nullptr : &*found;
}

void UserLists::setSmartFolders(std::vector<SmartFolder> folders) {
    std::erase_if(folders, [](const SmartFolder& folder) { return folder.builtIn; });
    auto all = withBuiltIns(folders);
    if (all == smartFolders_) return;
    smartFolders_ = std::move(all);
    stores_->smartFolders.set(std::move(folders));
    emit smartFoldersChanged();
}

void UserLists::setWorkspaces(std::vector<Workspace> workspaces) {
    if (workspaces == workspaces_) return;
    workspaces_ = std::move(workspaces);
    stores_->workspaces.set(workspaces_);
    emit workspacesChanged();
}

void UserLists::setServers(std::vector<std::string> servers) {
    if (servers == servers_) return;
    servers_ = std::move(servers);
    stores_->servers.set(servers_);
    emit serversChanged();
}

void UserLists::flush() {
    stores_->favorites.flush();
    stores_->smartFolders.flush();
    stores_->workspaces.flush();
    stores_->servers.flush();
}

}  // namespace tarn
