#include "Tarn/model/StoreWatcher.h"

#include <utility>
#include <vector>

#include "Tarn/model/MainThread.h"
#include "TarnCore/files/SupportDirectory.h"

namespace tarn {
namespace {

/// Seconds between two looks while files change all the time, as those of an index do.
constexpr double latency = 0.2;

}  // namespace

StoreWatcher::StoreWatcher(QObject* parent) : QObject(parent) {}

StoreWatcher::~StoreWatcher() = default;

void StoreWatcher::add(const std::string& name, std::function<void()> reload,
                       std::function<void()> show) {
    Q_ASSERT(!watcher_);
    stores_.insert({name, {std::move(reload), std::move(show)}});
}

void StoreWatcher::start() {
    if (watcher_) return;
    const URL folder = SupportDirectory::url();
    watcher_ = std::make_unique<FolderWatcher>(
        [this, folder, self = QPointer(this)](const std::vector<std::string>& paths) {
            for (const std::string& path : paths) {
                const URL url = URL::fromPath(path);
                // The folder itself stands for everything in it.
                changed(url == folder ? std::string() : std::string(url.name()), self);
            }
        });
    watcher_->watch({folder}, latency, WatchDepth::children);
    for (const auto& [name, store] : stores_) {
        store.reload();
        store.show();
    }
}

void StoreWatcher::changed(const std::string& name, const QPointer<StoreWatcher>& self) {
    bool isOne = false;
    for (const auto& [file, store] : stores_) {
        if (!name.empty() && name != file) continue;
        isOne = true;
        store.reload();
    }
    if (!isOne) return;
    MainThread::post(self, [name](StoreWatcher& watcher) { watcher.showAll(name); });
}

void StoreWatcher::showAll(const std::string& name) {
    for (const auto& [file, store] : stores_)
        if (name.empty() || name == file) store.show();
}

}  // namespace tarn
