#pragma once

#include <cstddef>

#include "TarnCore/platform/FolderWatching.h"

namespace tarn {

/// inotify, with one instance and one thread for every watch.
///
/// Folders on a network are not watched but looked at, because the kernel does not hear of what
/// other machines do. So are folders for which the kernel grants no watch. Whatever is looked at
/// tells changes of names, not of contents. Roots that are missing are watched as soon as they
/// come (MissingFolders).
class InotifyWatching final : public FolderWatching {
public:
    struct Limits {
        /// Watched folders of one watch; 0 leaves half of the user's watches to other programs.
        std::size_t folders = 0;
        /// Seconds between two looks at folders without a watch.
        double pollInterval = 3;
        /// False behaves as if the kernel had no inotify.
        bool hasInotify = true;
    };
    InotifyWatching() = default;
    explicit InotifyWatching(Limits limits) : limits_(limits) {}

    std::unique_ptr<FolderWatch> watch(
        const std::vector<URL>& folders, WatchDepth depth, double latency, SerialQueue& queue,
        std::function<void(const std::vector<std::string>&)> onChange) override;

private:
    Limits limits_;
};

}  // namespace tarn
