#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

class SerialQueue;

/// A running watch; it ends when this goes. After the destructor no callback runs.
class FolderWatch {
public:
    virtual ~FolderWatch() = default;
};

enum class WatchDepth {
    children,  ///< The folder and what is directly inside it.
    tree,      ///< Everything below it.
};

/// Tells of changes below folders as they happen. Callable from any thread.
class FolderWatching {
public:
    virtual ~FolderWatching() = default;

    /// Calls `onChange` on `queue` with the changed paths. The first change of a burst is told at
    /// once, later ones together after `latency` seconds. A change of names inside a folder is
    /// told as the path of the item; renaming or removing a watched folder itself is told as the
    /// folder's path. When something may have been missed (the kernel's queue overflowed, the
    /// watch limit is reached), the watched folder itself is told, meaning "everything below".
    /// Where no watch can be had at all, the folders' times are looked at every few seconds
    /// instead.
    virtual std::unique_ptr<FolderWatch> watch(
        const std::vector<URL>& folders, WatchDepth depth, double latency, SerialQueue& queue,
        std::function<void(const std::vector<std::string>&)> onChange) = 0;
};

}  // namespace tarn
