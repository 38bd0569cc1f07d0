#pragma once

#include <memory>
#include <string>
#include <vector>

#include <QtCore/QObject>

#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/files/FolderWatcher.h"

namespace tarn {

/// Follows the folder of downloads: keeps with each item that arrives in it when that was, and
/// forgets what was known of where changed ones came from.
///
/// Main thread only; the folder is looked at on a queue of its own. What a browser is still loading
/// (".part", ".crdownload", hidden files) has not arrived. While there is no such folder, the one
/// that will hold it is watched.
class DownloadsService final : public QObject {
    Q_OBJECT
public:
    /// Of the watch, in seconds.
    static constexpr double latency = 0.25;

    explicit DownloadsService(QObject* parent = nullptr);
    ~DownloadsService() override;

    /// Once. What lies there by then has arrived before.
    void start();
    /// Returns when what was begun until now is done.
    void flush() { queue_.flush(); }

signals:
    /// New in the folder; what was only given another name there is not.
    void arrived(const std::vector<tarn::URL>& items);

private:
    struct Folder;

    void watch();
    void look(const std::vector<std::string>& paths);

    std::unique_ptr<Folder> folder_;          ///< Touched on queue_ only, as the functions above.
    std::unique_ptr<FolderWatcher> watcher_;  ///< The same.
    SerialQueue queue_{"tarn.downloads"};
};

}  // namespace tarn
