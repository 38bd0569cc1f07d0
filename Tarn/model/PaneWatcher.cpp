#include "Tarn/model/PaneWatcher.h"

#include "Tarn/model/MainThread.h"

namespace tarn {

PaneWatcher::PaneWatcher(QObject* parent) : QObject(parent) {}

PaneWatcher::~PaneWatcher() {
    queue_.run([this] { watcher_.reset(); });
    queue_.flush();
}

void PaneWatcher::watch(std::vector<URL> folders, WatchDepth depth, double latency,
                        std::function<void()> whenWatching) {
    const std::uint64_t watch = ++current_;
    queue_.run([this, watch, folders = std::move(folders), depth, latency,
                whenWatching = std::move(whenWatching), self = QPointer<PaneWatcher>(this)] {
        auto fresh =
            std::make_unique<FolderWatcher>([self, watch](const std::vector<std::string>& paths) {
                MainThread::post(self, [watch, paths](PaneWatcher& watcher) {
                    watcher.tellChanged(watch, paths);
                });
            });
        fresh->watch(folders, latency, depth);
        if (whenWatching) whenWatching();
        // Ending the old one takes the kernel 20 ms, which nobody is to wait for.
        watcher_ = std::move(fresh);
    });
}

void PaneWatcher::stop() {
    ++current_;
    queue_.run([this] { watcher_.reset(); });
}

void PaneWatcher::tellChanged(std::uint64_t watch, const std::vector<std::string>& paths) {
    if (watch == current_) emit changed(paths);
}

}  // namespace tarn
