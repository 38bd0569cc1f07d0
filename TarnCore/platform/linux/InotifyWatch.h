#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/platform/FolderWatching.h"
#include "TarnCore/platform/linux/ChangeBurst.h"
#include "TarnCore/platform/linux/MissingFolders.h"

struct inotify_event;

namespace tarn {

/// One running watch. After the constructor everything but the destructor happens on its own
/// thread, which waits in poll().
class InotifyWatch final : public FolderWatch {
public:
    using Callback = std::function<void(const std::vector<std::string>&)>;
    struct Options {
        WatchDepth depth = WatchDepth::tree;
        double latency = 0;
        std::size_t mostFolders = 0;
        double pollInterval = 3;
        bool hasInotify = true;
    };

    /// The folders themselves are watched when it returns; what lies below them soon after.
    InotifyWatch(const std::vector<URL>& folders, const Options& options, SerialQueue& queue,
                 Callback onChange);
    ~InotifyWatch() override;

private:
    /// Shared with the tasks on the listener's queue, which may outlive the watch.
    struct Listener {
        std::recursive_mutex
            mutex;  ///< Held while the callback runs, so that nobody is called late.
        bool isAlive = true;
        Callback onChange;
    };
    /// A folder that is looked at instead of watched.
    struct Look {
        bool exists = false;
        std::int64_t modified = 0;  ///< Nanoseconds.
        std::uint64_t inode = 0;
        bool operator==(const Look&) const = default;
    };

    void run();
    void tell(double now);
    void readEvents();
    void handle(const inotify_event& event);
    void lookAtPolled();
    void takeArrived();

    /// Watches a root, or finds out otherwise when something happens to it.
    void follow(const std::string& root);
    /// False with errno when the kernel grants none.
    bool addWatch(const std::string& path);
    /// Watches every folder below `path`. With `isNew`, what is found there is told; otherwise
    /// only folders whose names changed since `start_`.
    void addTree(const std::string& path, bool isNew);
    void forgetTree(const std::string& path);
    void lookInstead(const std::string& path);
    bool isRoot(const std::string& path) const;
    bool isOnNetwork(const std::string& path) const;
    static Look look(const std::string& path);

    Options options_;
    SerialQueue& queue_;
    std::shared_ptr<Listener> listener_;
    std::vector<std::string> roots_;
    std::vector<std::string> networkRoots_;
    MissingFolders missing_;  ///< Roots that are not there.
    /// Mounts that are never entered: pseudo file systems and networks.
    std::unordered_set<std::string> skipped_;
    FileDescriptor inotify_;
    FileDescriptor stop_;
    std::atomic<bool> isStopping_ = false;
    ChangeBurst burst_;
    std::unordered_map<int, std::string> watched_;
    std::unordered_map<std::string, int> watchOf_;  ///< The same, the other way round.
    std::map<std::string, Look> polled_;
    double start_ = 0;     ///< Unix time of the constructor, less a moment for coarse clocks.
    double nextLook_ = 0;  ///< On the monotonic clock.
    bool isShortOfWatches_ = false;
    SerialQueue thread_{"tarn.inotify"};  // Last, so that it ends before what its task uses.
};

}  // namespace tarn
