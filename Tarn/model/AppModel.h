#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QtCore/QObject>

#include "Tarn/model/DriveService.h"
#include "Tarn/model/ListingCache.h"
#include "Tarn/model/records/AppSettings.h"
#include "Tarn/model/records/FolderViewPrefs.h"
#include "Tarn/model/records/SessionState.h"
#include "TarnCore/base/TaskPool.h"

namespace tarn {

class WindowModel;

/// What all windows share: the stores, the volumes, the listings kept in memory.
///
/// Main thread only. One per process; it outlives every window.
class AppModel final : public QObject {
    Q_OBJECT
public:
    explicit AppModel(TaskPool& pool = TaskPool::shared(), QObject* parent = nullptr);
    ~AppModel() override;

    TaskPool& pool() { return pool_; }
    ListingCache& listings() { return *listings_; }
    const std::shared_ptr<ListingCache>& sharedListings() const { return listings_; }

    const AppSettings& settings() const { return settings_; }
    void setSettings(AppSettings settings);

    /// How a folder was last shown; absent for one that was never changed.
    std::optional<FolderViewPrefs> viewPrefs(const URL& folder) const;
    void setViewPrefs(const URL& folder, const FolderViewPrefs& prefs);
    /// Size of the grid's icons where a folder has none of its own, in logical pixels.
    double iconSize() const;
    void setIconSize(double size);

    /// Counts the visit and puts the folder in front of the recent ones.
    void noteVisited(const URL& folder);
    std::vector<URL> recentFolders() const;
    std::int64_t visitCount(const URL& folder) const;

    const std::vector<Volume>& volumes() const { return volumes_; }
    void refreshVolumes();

    /// Open windows, oldest first. Windows enter and leave by themselves.
    const std::vector<WindowModel*>& windows() const { return windows_; }
    void windowOpened(WindowModel* window);
    /// Remembers what the window showed, for reopening it.
    void windowClosed(WindowModel* window);
    /// The newest last, at most 20.
    const std::vector<WindowSnapshot>& closedTabs() const { return closedTabs_; }

    void saveSession();
    SessionState storedSession() const;

    /// Starts what runs beside the windows; once, later calls do nothing.
    void startBackgroundServices();

    /// Waits until every store is on the disk.
    void flush();

signals:
    void settingsChanged();
    void volumesChanged();

private:
    struct Stores;

    TaskPool& pool_;
    std::unique_ptr<Stores> stores_;
    std::shared_ptr<ListingCache> listings_ = std::make_shared<ListingCache>();
    AppSettings settings_;
    std::vector<Volume> volumes_;
    std::vector<WindowModel*> windows_;
    std::vector<WindowSnapshot> closedTabs_;
    std::shared_ptr<void> volumeObserver_;
    bool servicesStarted_ = false;
};

}  // namespace tarn
