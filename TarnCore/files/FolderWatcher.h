#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/platform/FolderWatching.h"

namespace tarn {

/// Tells its owner when something below the watched folders changed. `watch` and `stop` belong to
/// one thread; the callback runs on a private queue. Paths come without a trailing slash.
class FolderWatcher {
public:
    using Callback = std::function<void(const std::vector<std::string>&)>;
    explicit FolderWatcher(Callback callback);
    ~FolderWatcher();
    FolderWatcher(const FolderWatcher&) = delete;
    FolderWatcher& operator=(const FolderWatcher&) = delete;

    /// Watches these instead of what was watched before. `latency` in seconds; the first event of
    /// a burst comes at once.
    void watch(const std::vector<URL>& folders, double latency,
               WatchDepth depth = WatchDepth::tree);
    /// No callback runs after it returns, so it waits for one that is running; not to be called
    /// from the callback. Safe when nothing is watched.
    void stop();
    const std::vector<URL>& watched() const { return watched_; }

private:
    Callback callback_;
    SerialQueue queue_{"tarn.watcher"};
    std::vector<URL> watched_;
    std::unique_ptr<FolderWatch> watch_;
};

}  // namespace tarn
