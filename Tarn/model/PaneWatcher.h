#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QtCore/QObject>

#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/files/FolderWatcher.h"

namespace tarn {

/// Watches the folders that a pane shows.
///
/// Main thread only. Setting up and ending a watch touches the disk, and a dead server may let
/// that wait, so both happen on a queue of their own.
class PaneWatcher final : public QObject {
    Q_OBJECT
public:
    explicit PaneWatcher(QObject* parent = nullptr);
    ~PaneWatcher() override;

    /// Instead of what was watched before. `latency` in seconds. `whenWatching` runs on the queue
    /// once nothing can be missed any more.
    void watch(std::vector<URL> folders, WatchDepth depth, double latency,
               std::function<void()> whenWatching = {});
    void stop();

signals:
    /// Something changed in the folders that are watched now; paths come without a slash at
    /// the end.
    void changed(const std::vector<std::string>& paths);

private:
    void tellChanged(std::uint64_t watch, const std::vector<std::string>& paths);

    /// Counts calls of `watch` and `stop`; news of an older watch are dropped.
    std::uint64_t current_ = 0;
    std::unique_ptr<FolderWatcher> watcher_;  ///< Touched on queue_ only.
    SerialQueue queue_{"tarn.panewatch"};
};

}  // namespace tarn
