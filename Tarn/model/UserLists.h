#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <QtCore/QObject>

#include "Tarn/model/records/Favorite.h"
#include "Tarn/model/records/SmartFolder.h"
#include "Tarn/model/records/Workspace.h"
#include "TarnCore/base/URL.h"

namespace tarn {

class StoreWatcher;

/// The lists that a person keeps: favourites, smart folders, workspaces, servers, and what is never
/// to be suggested again. Each is a store of its own, written after every change; what another
/// process changes in it shows here too. Main thread only.
///
/// Changes that name a record which has gone meanwhile do nothing.
class UserLists final : public QObject {
    Q_OBJECT
public:
    explicit UserLists(QObject* parent = nullptr);
    ~UserLists() override;

    /// In the order of the sidebar; no folder is in it twice.
    const std::vector<Favorite>& favorites() const { return favorites_; }
    /// Null when the folder is none.
    const Favorite* favorite(const URL& folder) const;
    /// Puts it in front of the one at `index`, else at the end. One that is there already moves, or
    /// without an index stays.
    UUID addFavorite(const URL& folder, std::optional<std::size_t> index = {});
    void removeFavorite(const UUID& id);
    /// An empty name, or the folder's own, takes back the given one.
    void renameFavorite(const UUID& id, std::string_view name);
    /// `index` counts the others.
    void moveFavorite(const UUID& id, std::size_t index);

    /// The built-in ones first, then the user's in their order.
    const std::vector<SmartFolder>& smartFolders() const { return smartFolders_; }
    /// Null when there is none.
    const SmartFolder* smartFolder(const UUID& id) const;
    /// Throws ListError when the name is empty or taken, or the query empty.
    UUID addSmartFolder(std::string_view name, std::string_view query, SearchScopeSetting scope);
    // Built-in ones stay as they are.
    void removeSmartFolder(const UUID& id);
    /// The one with its id becomes this. Throws ListError as addSmartFolder() does.
    void changeSmartFolder(const SmartFolder& folder);
    /// Throws ListError when the name is empty or taken.
    void renameSmartFolder(const UUID& id, std::string_view name);
    /// `index` counts the user's other ones.
    void moveSmartFolder(const UUID& id, std::size_t index);

    const std::vector<Workspace>& workspaces() const { return workspaces_; }
    /// Null when there is none.
    const Workspace* workspace(const UUID& id) const;
    /// In any case of letters; null when there is none.
    const Workspace* workspaceNamed(std::string_view name) const;
    /// Replaces the one of this name. Throws ListError when the name is empty.
    UUID saveWorkspace(std::string_view name, std::vector<WindowSnapshot> tabs);
    void removeWorkspace(const UUID& id);
    /// Throws ListError when the name is empty or taken.
    void renameWorkspace(const UUID& id, std::string_view name);

    /// What was typed to connect to servers, the latest first.
    const std::vector<std::string>& servers() const { return servers_; }
    void rememberServer(std::string_view address);
    void forgetServer(std::string_view address);

    /// Whether no tool is to suggest this file again.
    bool isExcluded(const URL& url) const;
    void exclude(const URL& url);
    void include(const URL& url);

    /// Has the stores looked at whenever their files change.
    void watch(StoreWatcher& watcher);
    /// Waits until every list is on the disk.
    void flush();

signals:
    void favoritesChanged();
    void smartFoldersChanged();
    void workspacesChanged();
    void serversChanged();
    void exclusionsChanged();

private:
    struct Stores;

    void showFavorites();
    void showSmartFolders();
    void showWorkspaces();
    void showServers();
    void showExclusions();

    std::unique_ptr<Stores> stores_;
    std::vector<Favorite> favorites_;
    std::vector<SmartFolder> smartFolders_;
    std::vector<Workspace> workspaces_;
    std::vector<std::string> servers_;
    std::set<std::string> exclusions_;
};

}  // namespace tarn
