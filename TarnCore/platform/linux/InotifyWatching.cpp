#include "TarnCore/platform/linux/InotifyWatching.h"

#include <charconv>
#include <system_error>

#include "TarnCore/platform/linux/InotifyWatch.h"
#include "TarnCore/platform/linux/LinuxFileSystem.h"

namespace tarn {
namespace {

/// Half of what the kernel grants the user.
std::size_t fairShare() {
    std::size_t limit = 8192;
    try {
        const std::string text =
            LinuxFileSystem().readFile(URL::fromPath("/proc/sys/fs/inotify/max_user_watches"), 32);
        std::from_chars(text.data(), text.data() + text.size(), limit);
    } catch (const std::system_error&) {
        // The kernel's old default stands.
    }
    return limit / 2;
}

}  // namespace

std::unique_ptr<FolderWatch> InotifyWatching::watch(
    const std::vector<URL>& folders, WatchDepth depth, double latency, SerialQueue& queue,
    std::function<void(const std::vector<std::string>&)> onChange) {
    InotifyWatch::Options options;
    options.depth = depth;
    options.latency = latency;
    options.mostFolders = limits_.folders > 0 ? limits_.folders : fairShare();
    options.pollInterval = limits_.pollInterval;
    options.hasInotify = limits_.hasInotify;
    return std::make_unique<InotifyWatch>(folders, options, queue, std::move(onChange));
}

}  // namespace tarn
