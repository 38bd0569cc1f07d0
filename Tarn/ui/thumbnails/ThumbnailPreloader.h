#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "Tarn/model/MachinePause.h"
#include "Tarn/ui/thumbnails/ThumbnailCache.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/SerialQueue.h"

namespace tarn {

class AppModel;

/// Makes the small pictures of folders before they are looked at, while the machine has nothing
/// better to do, and puts them into the desktop's shared store.
///
/// Main thread only; the work has a queue of its own, with the lowest priority. The destructor
/// stops it and waits.
class ThumbnailPreloader {
public:
    /// So many pictures of one folder are made at most: what one sees of it and some more.
    static constexpr std::size_t mostPerFolder = 200;

    explicit ThumbnailPreloader(
        ThumbnailCache cache = ThumbnailCache(ThumbnailCache::defaultFolder()));
    ~ThumbnailPreloader();
    ThumbnailPreloader(const ThumbnailPreloader&) = delete;
    ThumbnailPreloader& operator=(const ThumbnailPreloader&) = delete;

    /// Works on the folders that are visited most, as far as they are shown as grids.
    void preloadVisited(const AppModel& app);
    /// Works on these folders, one after the other, behind those of earlier calls. `pixels` is the
    /// side of the square that a picture is shown in.
    void preload(std::vector<URL> folders, int pixels);
    /// Returns when all that was asked for is there.
    void wait() { queue_.flush(); }

private:
    ThumbnailCache cache_;
    CancelToken token_;
    std::shared_ptr<MachinePause> pause_;
    SerialQueue queue_{"tarn.preload"};
};

}  // namespace tarn
