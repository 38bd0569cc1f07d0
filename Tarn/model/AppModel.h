#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include <QtCore/QObject>
#include <QtCore/QPointer>

#include "Tarn/model/ActivityList.h"
#include "Tarn/model/ArchiveCache.h"
#include "Tarn/model/ArchiveMembers.h"
#include "Tarn/model/Clipboard.h"
#include "Tarn/model/DriveService.h"
#include "Tarn/model/HistoryModel.h"
#include "Tarn/model/ListColumns.h"
#include "Tarn/model/ListingCache.h"
#include "Tarn/model/TagColors.h"
#include "Tarn/model/TransferList.h"
#include "Tarn/model/TrashService.h"
#include "Tarn/model/UserLists.h"
#include "Tarn/model/records/AppSettings.h"
#include "Tarn/model/records/FolderViewPrefs.h"
#include "Tarn/model/records/SessionState.h"
#include "Tarn/model/records/WindowLayout.h"
#include "TarnCore/base/TaskPool.h"

namespace tarn {

class ContentIndexService;
class DownloadsService;
class StoreWatcher;
class TabGroup;
class VolumeEjector;
class WindowModel;

/// What all windows share: the stores, the volumes, the listings kept in memory, the history of
/// changes, the transfers and the clipboard.
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

    const std::shared_ptr<ArchiveCache>& sharedArchives() const { return archives_; }

    ActivityList& activities() { return activities_; }
    ArchiveMembers& archiveMembers() { return archiveMembers_; }
    TagColors& tagColors() { return tagColors_; }
    ListColumns& listColumns() { return listColumns_; }

    /// What another process changes in them shows here too.
    const AppSettings& settings() const { return settings_; }
    /// Stores what differs from settings(), so that a change made elsewhere meanwhile stays.
    void setSettings(const AppSettings& settings);

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
    /// The folder visited most first.
    std::vector<URL> mostVisited(std::size_t count) const;

    /// How often a command was run from the palette.
    std::int64_t usageCount(std::string_view commandID) const;
    void noteUsed(std::string_view commandID);
    /// The keys of a command, the user's changes applied; absent for none.
    std::optional<Shortcut> shortcut(std::string_view commandID) const;

    /// Those that are mounted, then the servers that are connected.
    const std::vector<Volume>& volumes() const { return volumes_; }
    void refreshVolumes();
    VolumeEjector& ejector() { return *ejector_; }

    UserLists& lists() { return lists_; }
    const UserLists& lists() const { return lists_; }

    HistoryModel& history() { return history_; }
    TransferList& transfers() { return *transfers_; }
    TrashService& trash() { return trash_; }
    ContentIndexService& contentIndex() { return *contentIndex_; }

    Clipboard& clipboard() { return *clipboard_; }
    /// Instead of the one that only this process sees. Once, before the first window.
    void setClipboard(std::unique_ptr<Clipboard> clipboard);
    /// The files on the clipboard that pasting will move; views show them dimmed.
    const std::unordered_set<URL>& cutURLs() const { return cutURLs_; }
    bool isCut(const URL& url) const { return cutURLs_.contains(url); }

    /// Open windows, oldest first. Windows enter and leave by themselves.
    const std::vector<WindowModel*>& windows() const { return windows_; }
    void windowOpened(WindowModel* window);
    /// Remembers what the window showed, for reopening it.
    void windowClosed(WindowModel* window);
    /// The windows as a person sees them, each with its tabs; oldest first.
    const std::vector<TabGroup*>& groups() const { return groups_; }
    void groupOpened(TabGroup* group) { groups_.push_back(group); }
    /// Before its tabs go. The last window's session is what the next start may want back.
    void groupClosed(TabGroup* group);

    /// The newest last, at most 20.
    const std::vector<WindowSnapshot>& closedTabs() const { return closedTabs_; }
    /// The newest, which is forgotten by that; absent when there is none.
    std::optional<WindowSnapshot> takeClosedTab();

    /// Nothing while the session is kept.
    void saveSession();
    SessionState storedSession() const;
    /// While all windows close at once, each as a part of the session that was saved before.
    void setKeepSessionWhileClosing(bool keep) { keepSessionWhileClosing_ = keep; }
    /// Of the windows of the stored session, in its order; there may be fewer.
    std::vector<WindowLayout> storedLayouts() const;
    /// How the window was that was changed last; nothing is remembered before there was one.
    const WindowLayout& lastLayout() const { return lastLayout_; }
    void setLastLayout(const WindowLayout& layout) { lastLayout_ = layout; }

    DownloadsService& downloads() { return *downloads_; }

    /// What runs beside the windows, in the order in which it is started.
    enum class Service { volumes, downloads, contentIndex, thumbnails, trash };
    Q_ENUM(Service)
    /// Once; later calls do nothing. With `initialSetup` the person is being asked what shall be
    /// read in files: that waits until they have answered, `AppSettings::hasOnboarded`.
    void startBackgroundServices(bool initialSetup);
    /// Makes small pictures ahead of time; called once, when its turn has come. Before the start.
    void setThumbnailPreloading(std::function<void(AppModel&)> start);

    /// Waits until every store is on the disk.
    void flush();

signals:
    void settingsChanged();
    void serviceStarted(tarn::AppModel::Service service);
    void volumesChanged();
    void cutURLsChanged();

private:
    struct Stores;

    void readClipboard();
    void showEmptying();
    void showSettings();
    void watchStores();
    void showVolumes();
    void startContentIndex();

    TaskPool& pool_;
    std::unique_ptr<Stores> stores_;
    std::shared_ptr<ListingCache> listings_ = std::make_shared<ListingCache>();
    std::shared_ptr<ArchiveCache> archives_ = std::make_shared<ArchiveCache>();
    AppSettings settings_;
    UserLists lists_;
    std::vector<Volume> mounted_;
    std::vector<Volume> servers_;
    std::vector<Volume> volumes_;  ///< Both of them.
    std::unique_ptr<VolumeEjector> ejector_;
    std::vector<WindowModel*> windows_;
    std::vector<TabGroup*> groups_;
    std::vector<WindowSnapshot> closedTabs_;
    bool keepSessionWhileClosing_ = false;
    WindowLayout lastLayout_;
    std::shared_ptr<void> volumeObserver_;
    std::unique_ptr<Clipboard> clipboard_;
    std::unordered_set<URL> cutURLs_;
    HistoryModel history_{OperationHistory::defaultFile()};
    TrashService trash_;
    std::unique_ptr<TransferList> transfers_;  ///< Ends before the history does.
    bool servicesStarted_ = false;
    bool initialSetupStarted_ = false;  ///< And not over.
    std::function<void(AppModel&)> preloading_;
    std::unique_ptr<DownloadsService> downloads_;
    TagColors tagColors_{pool_};
    ListColumns listColumns_;
    ArchiveMembers archiveMembers_;
    QPointer<ActivityTask> emptying_;
    ActivityList activities_;  ///< Ends before what its jobs use.
    std::unique_ptr<ContentIndexService> contentIndex_;
    std::unique_ptr<StoreWatcher> storeWatcher_;  ///< Ends before all that it looks at.
};

}  // namespace tarn
