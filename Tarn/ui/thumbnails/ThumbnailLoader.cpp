#include "Tarn/ui/thumbnails/ThumbnailLoader.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include <QtCore/QThread>

#include "Tarn/model/MainThread.h"
#include "Tarn/ui/thumbnails/PictureDecoder.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

constexpr qsizetype memoryBytes = qsizetype{96} << 20;  // some 1,500 pictures of 128 px at 1×

std::size_t workerCount() {
    return static_cast<std::size_t>(std::clamp(QThread::idealThreadCount() - 1, 1, 4));
}

QImage fitted(const QImage& image, int pixels) {
    if (image.width() <= pixels && image.height() <= pixels) return image;
    return image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

/// What is still to be made; the workers take from the end.
struct ThumbnailLoader::Lane::Wishes {
    struct Wish {
        FileItem item;
        int pixels;
    };
    struct Lists {
        std::vector<Wish> stack;
        std::vector<Wish> begun;  ///< By a worker; until the picture has arrived.
    };
    Guarded<Lists> lists;

    std::optional<Wish> take() {
        auto held = lists.lock();
        if (held->stack.empty()) return std::nullopt;
        held->begun.push_back(held->stack.back());
        held->stack.pop_back();
        return held->begun.back();
    }
};

ThumbnailLoader::Lane::Lane(std::size_t threads)
    : wishes(std::make_shared<Wishes>()), pool(threads) {}

ThumbnailLoader::ThumbnailLoader(ThumbnailCache cache, QObject* parent)
    : QObject(parent),
      kept_(memoryBytes),
      cache_(std::move(cache)),
      helper_(HelperPictures::shared()),
      decoded_(workerCount()),
      drawn_(1) {}

ThumbnailLoader::~ThumbnailLoader() {
    cancelAll();
    token_.cancel();
}

ThumbnailLoader::Made ThumbnailLoader::make(const ThumbnailCache& cache, HelperPictures& helper,
                                            const FileItem& item, int pixels,
                                            const CancelToken& token) {
    const URL& file = item.url;
    const Date expected = *item.modified;
    const Platform& platform = Platform::current();
    if (cache.holds(file)) return {expected, {}};
    const auto mount = platform.volumes->mountHolding(file);
    if (mount && mount->isNetwork) return {expected, {}};
    const auto facts = platform.files->attributes(file, Links::follow);
    if (!facts || facts->type != FileType::file) return {expected, {}};
    const Date modified = facts->modified;
    if (auto stored = cache.find(file, modified, pixels))
        return {modified, fitted(*stored, pixels)};
    if (cache.hasFailed(file, modified)) return {modified, {}};
    const int size = ThumbnailCache::storedSize(pixels);
    const PreviewKind kind = PreviewKinds::of(item);
    const std::optional<QImage> drawn = HelperPictures::draws(kind)
                                            ? helper.picture(file, kind, size, token)
                                            : PictureDecoder::decode(file, size);
    if (!drawn) return {expected, {}};
    const QImage& image = *drawn;
    // A file that is just being written must not be remembered as broken.
    const auto after = platform.files->attributes(file, Links::follow);
    if (!after || after->modified != modified || after->size != facts->size)
        return {expected, image.isNull() ? image : fitted(image, pixels)};
    if (image.isNull()) {
        cache.storeFailure(file, modified);
        return {modified, {}};
    }
    cache.store(file, modified, pixels, image);
    return {modified, fitted(image, pixels)};
}

bool ThumbnailLoader::canThumbnail(const FileItem& item) {
    if (item.isDirectory || item.size.value_or(0) <= 0 || !item.modified) return false;
    return item.kind == FileKind::image || HelperPictures::draws(PreviewKinds::of(item));
}

QPixmap ThumbnailLoader::cached(const URL& file, Date modified) const {
    const Kept* kept = kept_.object(file.path());
    return kept && kept->modified == modified ? kept->pixmap : QPixmap();
}

QPixmap ThumbnailLoader::picture(const FileItem& item, int pixels) {
    if (!canThumbnail(item)) return {};
    const Kept* kept = kept_.object(item.path());
    const bool current = kept && kept->modified == *item.modified;
    if (!current || kept->pixels < pixels) request(item, pixels);
    return current ? kept->pixmap : QPixmap();
}

void ThumbnailLoader::request(const FileItem& item, int pixels) {
    Lane& lane = HelperPictures::draws(PreviewKinds::of(item)) ? drawn_ : decoded_;
    {
        auto lists = lane.wishes->lists.lock();
        const auto same = [&item](const Lane::Wishes::Wish& wish) {
            return wish.item.url == item.url;
        };
        const auto begun = std::find_if(lists->begun.begin(), lists->begun.end(), same);
        if (begun != lists->begun.end() && begun->item.modified == item.modified &&
            begun->pixels >= pixels)
            return;
        std::erase_if(lists->stack, same);
        lists->stack.push_back({item, pixels});
    }
    lane.pool.run(
        [&lane, wishes = lane.wishes, cache = cache_, helper = helper_, token = token_,
         self = QPointer(this)] {
            const auto wish = wishes->take();
            if (!wish) return;
            Made made = make(cache, *helper, wish->item, wish->pixels, token);
            MainThread::post(self, [&lane, wish = *wish,
                                    image = std::move(made.image)](ThumbnailLoader& loader) {
                loader.keep(lane, wish.item, wish.pixels, image);
            });
        },
        TaskPriority::background);
}

void ThumbnailLoader::keep(Lane& lane, const FileItem& item, int pixels, const QImage& image) {
    std::erase_if(lane.wishes->lists.lock()->begun, [&](const Lane::Wishes::Wish& wish) {
        return wish.item.url == item.url && wish.item.modified == item.modified &&
               wish.pixels == pixels;
    });
    auto* kept = new Kept{*item.modified, pixels, QPixmap::fromImage(image)};
    const qsizetype bytes = qsizetype{image.sizeInBytes()} + qsizetype{256};
    kept_.insert(item.path(), kept, bytes);
    if (image.isNull())
        emit unavailable(item.url);
    else
        emit ready(item.url, image);
}

void ThumbnailLoader::setVisible(const std::vector<URL>& files) {
    std::unordered_map<URL, std::size_t> order;
    for (std::size_t i = 0; i < files.size(); ++i) order.emplace(files[i], i);
    const auto place = [&order](const auto& wish) { return order.find(wish.item.url); };
    for (const Lane* lane : {&decoded_, &drawn_}) {
        auto lists = lane->wishes->lists.lock();
        std::erase_if(lists->stack, [&](const auto& wish) { return place(wish) == order.end(); });
        std::stable_sort(
            lists->stack.begin(), lists->stack.end(),
            [&](const auto& a, const auto& b) { return place(a)->second > place(b)->second; });
    }
}

void ThumbnailLoader::cancelAll() {
    for (const Lane* lane : {&decoded_, &drawn_}) lane->wishes->lists.lock()->stack.clear();
}

}  // namespace tarn
