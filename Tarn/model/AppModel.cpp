#include "Tarn/model/AppModel.h"

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

#include "Tarn/model/ContentIndexService.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DownloadsService.h"
#include "Tarn/model/FileMime.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/StoreWatcher.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/VolumeEjector.h"
#include "Tarn/model/VolumeQueues.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/records/Shortcuts.h"
#include "Tarn/model/records/UserStores.h"
#include "TarnCore/files/JSONStore.h"
#include "TarnCore/ops/ChangeJournal.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

constexpr std::size_t mostClosedTabs = 20;
constexpr std::size_t mostRecentFolders = 50;
constexpr double defaultIconSize = 96;

}  // namespace

/// The files in the support folder. Paths in them are written by JSONText::fromPath.
struct AppModel::Stores {
    JSONStore<AppSettings> settings = UserStores::settings();
    JSONStore<std::map<std::string, FolderViewPrefs>> folderPrefs{
        "folder-views.json", [] { return std::map<std::string, FolderViewPrefs>(); },
        UnknownKeys::kept};
    JSONStore<SessionState> session{"session.json", [] { return SessionState(); }};
    JSONStore<std::vector<WindowLayout>> layouts{"window-layouts.json",
                                                 [] { return std::vector<WindowLayout>(); }};
    JSONStore<double> iconSize{"icon-size.json", [] { return defaultIconSize; }};
    JSONStore<std::vector<std::string>> recentFolders{"recent-folders.json",
                                                      [] { return std::vector<std::string>(); }};
    JSONStore<std::map<std::string, std::int64_t>> folderVisits{
        "folder-visits.json", [] { return std::map<std::string, std::int64_t>(); }};
    JSONStore<std::map<std::string, std::int64_t>> usage{
        "palette-usage.json", [] { return std::map<std::string, std::int64_t>(); }};
};

AppModel::AppModel(TaskPool& pool, QObject* parent)
    : QObject(parent),
      pool_(pool),
      stores_(std::make_unique<Stores>()),
      settings_(stores_->settings.value()),
      ejector_(std::make_unique<VolumeEjector>(*this)),
      transfers_(std::make_unique<TransferList>(history_)),
      downloads_(std::make_unique<DownloadsService>()),
      contentIndex_(std::make_unique<ContentIndexService>(activities_)) {
    if (const auto layouts = stores_->layouts.value(); !layouts.empty())
        lastLayout_ = layouts.front();
    setClipboard(std::make_unique<ProcessClipboard>());
    connect(&trash_, &TrashService::changed, this, &AppModel::showEmptying);
    contentIndex_->setSettings(IndexSettings::of(settings_));
}

AppModel::~AppModel() { flush(); }

void AppModel::setClipboard(std::unique_ptr<Clipboard> clipboard) {
    clipboard_ = std::move(clipboard);
    connect(clipboard_.get(), &Clipboard::changed, this, &AppModel::readClipboard);
    if (servicesStarted_) readClipboard();
}

void AppModel::readClipboard() {
    std::unordered_set<URL> cut;
    if (const QMimeData* data = clipboard_->data()) {
        // Not from plain text, which never says that it was cut.
        if (const auto files = FileMime::readDrag(*data); files && files->isCut)
            cut.insert(files->urls.begin(), files->urls.end());
    }
    if (cut == cutURLs_) return;
    cutURLs_ = std::move(cut);
    emit cutURLsChanged();
}

void AppModel::setSettings(const AppSettings& settings) {
    if (settings == settings_) return;
    stores_->settings.update([before = settings_, settings](AppSettings& stored) {
        stored = AppSettings::rebased(before, settings, stored);
    });
    showSettings();
}

void AppModel::showSettings() {
    AppSettings settings = stores_->settings.value();
    if (settings == settings_) return;
    settings_ = std::move(settings);
    contentIndex_->setSettings(IndexSettings::of(settings_));
    if (settings_.hasOnboarded && std::exchange(initialSetupStarted_, false)) startContentIndex();
    emit settingsChanged();
}

void AppModel::watchStores() {
    storeWatcher_ = std::make_unique<StoreWatcher>();
    storeWatcher_->add(stores_->settings, [this] { showSettings(); });
    lists_.watch(*storeWatcher_);
    tagColors_.watch(*storeWatcher_);
    // Read afresh whenever they are asked for.
    storeWatcher_->add(stores_->folderPrefs, [] {});
    storeWatcher_->add(stores_->iconSize, [] {});
    storeWatcher_->add(stores_->recentFolders, [] {});
    storeWatcher_->add(stores_->folderVisits, [] {});
    // Has a queue of its own.
    storeWatcher_->add(
        std::string(OperationHistory::defaultFile().name()), [] {}, [this] { history_.refresh(); });
    storeWatcher_->start();
}

std::optional<FolderViewPrefs> AppModel::viewPrefs(const URL& folder) const {
    const auto prefs = stores_->folderPrefs.value();
    const auto found = prefs.find(JSONText::fromPath(folder));
    if (found == prefs.end()) return std::nullopt;
    return found->second;
}

void AppModel::setViewPrefs(const URL& folder, const FolderViewPrefs& prefs) {
    stores_->folderPrefs.update([path = JSONText::fromPath(folder), prefs](auto& all) {
        all.insert_or_assign(path, prefs);
    });
}

double AppModel::iconSize() const { return stores_->iconSize.value(); }

void AppModel::setIconSize(double size) { stores_->iconSize.set(size); }

void AppModel::noteVisited(const URL& folder) {
    const std::string path = JSONText::fromPath(folder);
    stores_->folderVisits.update([path](auto& visits) { ++visits[path]; });
    stores_->recentFolders.update([path](std::vector<std::string>& recent) {
        std::erase(recent, path);
        recent.insert(recent.begin(), path);
        if (recent.size() > mostRecentFolders) recent.resize(mostRecentFolders);
    });
}

std::vector<URL> AppModel::recentFolders() const {
    std::vector<URL> folders;
    for (const std::string& path : stores_->recentFolders.value()) {
        if (auto url = JSONText::toPath(path)) folders.push_back(std::move(*url));
    }
    return folders;
}

std::int64_t AppModel::visitCount(const URL& folder) const {
    const auto visits = stores_->folderVisits.value();
    const auto found = visits.find(JSONText::fromPath(folder));
    return found == visits.end() ? 0 : found->second;
}

std::vector<URL> AppModel::mostVisited(std::size_t count) const {
    std::vector<std::pair<std::int64_t, std::string>> visits;
    for (const auto& [path, times] : stores_->folderVisits.value())
        visits.emplace_back(-times, path);
    std::ranges::sort(visits);
    std::vector<URL> folders;
    for (const auto& [times, path] : visits) {
        if (folders.size() == count) break;
        if (auto url = JSONText::toPath(path)) folders.push_back(std::move(*url));
    }
    return folders;
}

std::int64_t AppModel::usageCount(std::string_view commandID) const {
    const auto counts = stores_->usage.value();
    const auto found = counts.find(std::string(commandID));
    return found == counts.end() ? 0 : found->second;
}

void AppModel::noteUsed(std::string_view commandID) {
    stores_->usage.update([id = std::string(commandID)](auto& counts) { ++counts[id]; });
}

std::optional<Shortcut> AppModel::shortcut(std::string_view commandID) const {
    return Shortcuts::effective(settings_.shortcutOverrides, commandID);
}

void AppModel::refreshVolumes() {
    pool_.run([self = QPointer<AppModel>(this)] {
        MainThread::post(self, [mounted = DriveService::volumes()](AppModel& app) {
            app.mounted_ = mounted;
            app.showVolumes();
        });
    });
    const auto volumes = Platform::current().volumes;
    const auto drives = Platform::current().drives;
    if (!volumes || !drives) return;
    VolumeQueues::servers().run([volumes, drives, self = QPointer<AppModel>(this)] {
        MainThread::post(self, [servers = DriveService::servers(*volumes, *drives)](AppModel& app) {
            app.servers_ = servers;
            app.showVolumes();
        });
    });
}

void AppModel::showVolumes() {
    std::vector<Volume> volumes = mounted_;
    volumes.insert(volumes.end(), servers_.begin(), servers_.end());
    if (volumes == volumes_) return;
    volumes_ = std::move(volumes);
    emit volumesChanged();
}

void AppModel::windowOpened(WindowModel* window) { windows_.push_back(window); }

void AppModel::windowClosed(WindowModel* window) {
    std::erase(windows_, window);
    if (closedTabs_.size() >= mostClosedTabs) closedTabs_.erase(closedTabs_.begin());
    closedTabs_.push_back(window->snapshot());
    // Tabs that go with their whole window have left the session together. The last window's is
    // what the next start may want back.
    if (!window->group() && !windows_.empty()) saveSession();
    transfers_->repeatQuestions();
}

std::optional<WindowSnapshot> AppModel::takeClosedTab() {
    if (closedTabs_.empty()) return std::nullopt;
    WindowSnapshot newest = std::move(closedTabs_.back());
    closedTabs_.pop_back();
    return newest;
}

void AppModel::groupClosed(TabGroup* group) {
    std::erase(groups_, group);
    if (!groups_.empty()) saveSession();
}

void AppModel::saveSession() {
    if (keepSessionWhileClosing_) return;
    SessionState session;
    std::vector<WindowLayout> layouts;
    for (const TabGroup* group : groups_) {
        if (group->count() == 0) continue;
        session.windows.push_back(group->snapshots());
        layouts.push_back(group->layout());
        layouts.back().currentTab = group->currentIndex();
    }
    for (const WindowModel* window : windows_) {
        if (!window->group()) session.windows.push_back({window->snapshot()});
    }
    if (session != stores_->session.value()) stores_->session.set(std::move(session));
    if (layouts != stores_->layouts.value()) stores_->layouts.set(std::move(layouts));
}

std::vector<WindowLayout> AppModel::storedLayouts() const { return stores_->layouts.value(); }

SessionState AppModel::storedSession() const { return stores_->session.value(); }

void AppModel::setThumbnailPreloading(std::function<void(AppModel&)> start) {
    preloading_ = std::move(start);
}

void AppModel::startContentIndex() {
    contentIndex_->start();
    emit serviceStarted(Service::contentIndex);
}

void AppModel::startBackgroundServices(bool initialSetup) {
    if (std::exchange(servicesStarted_, true)) return;
    initialSetupStarted_ = initialSetup;
    // What it holds is asked of another program.
    readClipboard();
    watchStores();
    pool_.run([] { ChangeJournal::repair(); });
    refreshVolumes();
    if (const auto& volumes = Platform::current().volumes) {
        volumeObserver_ = volumes->observe([self = QPointer<AppModel>(this)] {
            MainThread::post(self, [](AppModel& app) { app.refreshVolumes(); });
        });
    }
    emit serviceStarted(Service::volumes);
    downloads_->start();
    emit serviceStarted(Service::downloads);
    if (!initialSetupStarted_) startContentIndex();
    if (preloading_) preloading_(*this);
    emit serviceStarted(Service::thumbnails);
    trash_.measure();
    // A disk comes and goes with its Trash.
    connect(this, &AppModel::volumesChanged, &trash_, &TrashService::measure);
    emit serviceStarted(Service::trash);
}

void AppModel::showEmptying() {
    if (!trash_.isEmptying()) {
        if (emptying_) activities_.end(emptying_->id());
        return;
    }
    if (!emptying_) {
        emptying_ = &activities_.show(tr("Emptying the Trash"), "trash");
        emptying_->setCanPause(false);
        connect(emptying_, &ActivityTask::changed, this, [this] {
            if (emptying_ && emptying_->isStopped()) trash_.cancelEmptying();
        });
    }
    emptying_->tell(tr("%1 deleted").arg(Counts::files(trash_.deletedFiles())), std::nullopt);
}

void AppModel::flush() {
    stores_->settings.flush();
    stores_->folderPrefs.flush();
    stores_->session.flush();
    stores_->layouts.flush();
    stores_->iconSize.flush();
    stores_->recentFolders.flush();
    stores_->folderVisits.flush();
    stores_->usage.flush();
    lists_.flush();
    history_.flush();
    tagColors_.flush();
    listColumns_.flush();
}

}  // namespace tarn
