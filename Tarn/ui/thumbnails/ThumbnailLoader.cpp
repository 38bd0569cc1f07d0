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
struct ThumbnailLoader::Wishes {
    struct Wish {
        URL file;
        Date modified;
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

ThumbnailLoader::ThumbnailLoader(ThumbnailCache cache, QObject* parent)
    : QObject(parent),
      kept_(memoryBytes),
      wishes_(std::make_shared<Wishes>()),
      cache_(std::move(cache)),
      pool_(workerCount()) {}

ThumbnailLoader::~ThumbnailLoader() { cancelAll(); }

ThumbnailLoader::Made ThumbnailLoader::make(const ThumbnailCache& cache, const URL& file,
                                            Date expected, int pixels) {
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
    const QImage image = PictureDecoder::decode(file, size);
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
    return !item.isDirectory && item.kind == FileKind::image && item.size.value_or(0) > 0 &&
           item.modified;
}

QPixmap ThumbnailLoader::cached(const URL& file, Date modified) const {
    const Kept* kept = kept_.object(file.path());
    return kept && kept->modified == modified ? kept->pixmap : QPixmap();
}

QPixmap ThumbnailLoader::picture(const FileItem& item, int pixels) {
    if (!canThumbnail(item)) return {};
    const Kept* kept = kept_.object(item.path());
    const bool current = kept && kept->modified == *item.modified;
    if (!current || kept->pixels < pixels) request(item.url, *item.modified, pixels);
    return current ? kept->pixmap : QPixmap();
}

void ThumbnailLoader::request(const URL& file, Date modified, int pixels) {
    {
        auto lists = wishes_->lists.lock();
        const auto same = [&file](const Wishes::Wish& wish) { return wish.file == file; };
        const auto begun = std::find_if(lists->begun.begin(), lists->begun.end(), same);
        if (begun != lists->begun.end() && begun->modified == modified && begun->pixels >= pixels)
            return;
        std::erase_if(lists->stack, same);
        lists->stack.push_back({file, modified, pixels});
    }
    pool_.run(
        [wishes = wishes_, cache = cache_, self = QPointer(this)] {
            const auto wish = wishes->take();
            if (!wish) return;
            const Made made = make(cache, wish->file, wish->modified, wish->pixels);
            MainThread::post(self, [wish = *wish, made](ThumbnailLoader& loader) {
                loader.keep(wish.file, wish.modified, wish.pixels, made.image);
            });
        },
        TaskPriority::background);
}

void ThumbnailLoader::keep(const URL& file, Date modified, int pixels, const QImage& image) {
    std::erase_if(wishes_->lists.lock()->begun, [&](const Wishes::Wish& wish) {
        return wish.file == file && wish.modified == modified && wish.pixels == pixels;
    });
    auto* kept = new Kept{modified, pixels, QPixmap::fromImage(image)};
    const qsizetype bytes = qsizetype{image.sizeInBytes()} + qsizetype{256};
    kept_.insert(file.path(), kept, bytes);
    if (image.isNull())
        emit unavailable(file);
    else
        emit ready(file, image);
}

void ThumbnailLoader::setVisible(const std::vector<URL>& files) {
    std::unordered_map<URL, std::size_t> order;
    for (std::size_t i = 0; i < files.size(); ++i) order.emplace(files[i], i);
    auto lists = wishes_->lists.lock();
    std::erase_if(lists->stack, [&order](const auto& wish) { return !order.contains(wish.file); });
    std::stable_sort(
        lists->stack.begin(), lists->stack.end(),
        [&order](const auto& a, const auto& b) { return order.at(a.file) > order.at(b.file); });
}

void ThumbnailLoader::cancelAll() { wishes_->lists.lock()->stack.clear(); }

}  // namespace tarn
