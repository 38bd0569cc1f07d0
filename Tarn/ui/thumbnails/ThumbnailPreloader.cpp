#include "Tarn/ui/thumbnails/ThumbnailPreloader.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>

#include <QtGui/QGuiApplication>

#include "Tarn/model/AppModel.h"
#include "Tarn/ui/thumbnails/ThumbnailLoader.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

constexpr std::size_t mostFolders = 5;

/// Folders on servers are not read for something that nobody has asked for.
bool isWorthIt(const URL& folder) {
    const auto mount = Platform::current().volumes->mountHolding(folder);
    return !mount || !mount->isNetwork;
}

void preloadFolder(const ThumbnailCache& cache, HelperPictures& helper, const URL& folder,
                   int pixels, MachinePause& pause, const CancelToken& token) {
    if (!isWorthIt(folder)) return;
    std::vector<FileItem> items;
    try {
        items = DirectoryLister::list(folder, false, token);
    } catch (const ListingError&) {
        return;  // It has gone, or is not ours.
    }
    std::erase_if(items, [](const FileItem& item) { return !ThumbnailLoader::canThumbnail(item); });
    // What came last is what one comes back for.
    std::ranges::stable_sort(items, std::greater(), &FileItem::modified);
    if (items.size() > ThumbnailPreloader::mostPerFolder)
        items.resize(ThumbnailPreloader::mostPerFolder);
    for (const FileItem& item : items) {
        pause.wait(token);
        if (token.isCancelled()) return;
        // Which looks into the store first.
        ThumbnailLoader::make(cache, helper, item, pixels, token);
    }
}

}  // namespace

ThumbnailPreloader::ThumbnailPreloader(ThumbnailCache cache)
    : cache_(std::move(cache)),
      pause_(std::make_shared<MachinePause>(Platform::current().load, MachinePause::Timing(),
                                            nullptr)) {}

ThumbnailPreloader::~ThumbnailPreloader() {
    token_.cancel();
    pause_->wake();
}

void ThumbnailPreloader::preloadVisited(const AppModel& app) {
    const double ratio = qGuiApp->devicePixelRatio();
    for (const URL& folder : app.mostVisited(mostFolders)) {
        const auto prefs = app.viewPrefs(folder);
        if ((prefs ? prefs->viewMode : app.settings().defaultView) != ViewMode::grid) continue;
        const double size = prefs ? prefs->iconSize : app.iconSize();
        preload({folder}, static_cast<int>(size * ratio));
    }
}

void ThumbnailPreloader::preload(std::vector<URL> folders, int pixels) {
    queue_.run([cache = cache_, helper = HelperPictures::shared(), folders = std::move(folders),
                pixels, token = token_, pause = pause_] {
        const auto& load = Platform::current().load;
        if (load) load->lowerPriorityOfThread();
        for (const URL& folder : folders)
            if (!token.isCancelled()) preloadFolder(cache, *helper, folder, pixels, *pause, token);
    });
}

}  // namespace tarn
