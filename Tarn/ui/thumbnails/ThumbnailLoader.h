#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <QtCore/QCache>
#include <QtCore/QObject>
#include <QtGui/QImage>
#include <QtGui/QPixmap>

#include "Tarn/ui/thumbnails/HelperPictures.h"
#include "Tarn/ui/thumbnails/ThumbnailCache.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/files/FileItem.h"

namespace tarn {

/// Makes small pictures of files, the latest wish first, and keeps them: in memory up to a bound
/// of bytes, and in the desktop's shared store.
///
/// Main thread only; reading and decoding happen on threads of its own. Files on network mounts
/// and in the store itself get none.
class ThumbnailLoader final : public QObject {
    Q_OBJECT
public:
    explicit ThumbnailLoader(ThumbnailCache cache = ThumbnailCache(ThumbnailCache::defaultFolder()),
                             QObject* parent = nullptr);
    ~ThumbnailLoader() override;

    /// True for files that are worth asking about, by their kind and name alone.
    static bool canThumbnail(const FileItem& item);

    /// The picture kept in memory, whatever size it was made for; null when there is none or the
    /// file has changed since.
    QPixmap cached(const URL& file, Date modified) const;

    /// The picture, or null while it is being made: then ready() tells, once, when it is there.
    /// `pixels` is the side of the square it must fit, in device pixels.
    QPixmap picture(const FileItem& item, int pixels);

    /// ready() or unavailable() follows, unless the wish is dropped before. Of what
    /// canThumbnail().
    void request(const FileItem& item, int pixels);

    /// Drops the wishes for all files but these, in whose order the rest are met.
    void setVisible(const std::vector<URL>& files);
    void cancelAll();
    /// Forgets the pictures in memory; those in the store stay, which go by the time of the file.
    void forgetAll() { kept_.clear(); }

    /// What a request comes to: the time of the file and its picture, null when it has none. Stores
    /// what it had to make. From any thread but the main one.
    struct Made {
        Date modified;
        QImage image;
    };
    static Made make(const ThumbnailCache& cache, HelperPictures& helper, const FileItem& item,
                     int pixels, const CancelToken& token);

signals:
    void ready(const tarn::URL& file, const QImage& image);
    /// There is no picture of this file.
    void unavailable(const tarn::URL& file);

private:
    struct Kept {
        Date modified;
        int pixels = 0;
        QPixmap pixmap;  ///< Null for a file that has none.
    };
    /// Pictures are decoded by threads of this process; what the helper draws has to wait for it,
    /// and does not hold them up.
    struct Lane {
        struct Wishes;
        explicit Lane(std::size_t threads);
        std::shared_ptr<Wishes> wishes;
        TaskPool pool;
    };

    void keep(Lane& lane, const FileItem& item, int pixels, const QImage& image);

    QCache<std::string, Kept> kept_;  ///< By path; costs in bytes.
    ThumbnailCache cache_;
    CancelToken token_;
    std::shared_ptr<HelperPictures> helper_;
    Lane decoded_;
    Lane drawn_;
};

}  // namespace tarn
