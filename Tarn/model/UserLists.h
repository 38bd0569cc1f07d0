#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QtCore/QObject>

#include "Tarn/model/records/Favorite.h"
#include "Tarn/model/records/SmartFolder.h"
#include "Tarn/model/records/Workspace.h"

namespace tarn {

/// The lists that a person keeps: favourites, smart folders, workspaces, servers. Each is a store
/// of its own, written after every change. Main thread only.
class UserLists final : public QObject {
    Q_OBJECT
public:
    explicit UserLists(QObject* parent = nullptr);
    ~UserLists() override;

    /// In the order of the sidebar.
    const std::vector<Favorite>& favorites() const { return favorites_; }
    void setFavorites(std::vector<Favorite> favorites);

    /// The built-in ones first, then the user's in their order.
    const std::vector<SmartFolder>& smartFolders() const { return smartFolders_; }
    const SmartFolder* smartFolder(const UUID& id) const;
    /// Built-in ones in it are not stored.
    void setSmartFolders(std::vector<SmartFolder> folders);

    const std::vector<Workspace>& workspaces() const { return workspaces_; }
    void setWorkspaces(std::vector<Workspace> workspaces);

    /// What was typed to connect to servers, the latest first.
    const std::vector<std::string>& servers() const { return servers_; }
    void setServers(std::vector<std::string> servers);

    /// Waits until every list is on the disk.
    void flush();

signals:
    void favoritesChanged();
    void smartFoldersChanged();
    void workspacesChanged();
    void serversChanged();

private:
    struct Stores;

    std::unique_ptr<Stores> stores_;
    std::vector<Favorite> favorites_;
    std::vector<SmartFolder> smartFolders_;
    std::vector<Workspace> workspaces_;
    std::vector<std::string> servers_;
};

}  // namespace tarn
