#pragma once

#include <optional>

#include <QtGui/QImage>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// The desktop's shared store of small pictures, after the freedesktop thumbnail specification:
/// folders "normal", "large", "x-large" and "xx-large" for 128, 256, 512 and 1024 pixels, in each
/// a PNG per file named by the MD5 of its URI, with the URI in the text key "Thumb::URI" and the
/// whole seconds of the file's time in "Thumb::MTime". A picture with another time is stale.
/// "fail/tarn-1" holds marks, of the same form, for files that cannot be drawn. Other programs read
/// what is written here, and the other way round.
///
/// A value; callable from any thread. Nothing throws: a store that cannot be used is empty.
class ThumbnailCache {
public:
    explicit ThumbnailCache(URL folder) : folder_(std::move(folder)) {}

    /// "$XDG_CACHE_HOME/thumbnails"; inside the isolated root in isolated mode.
    static URL defaultFolder();
    /// The pixels of the smallest folder that is large enough; the largest one's for more.
    static int storedSize(int pixels);

    /// A picture at least as large as that of `pixels`' folder (or as large as the file itself).
    std::optional<QImage> find(const URL& file, Date modified, int pixels) const;
    /// Writes beside and renames; replaces a stale picture.
    void store(const URL& file, Date modified, int pixels, const QImage& image) const;

    bool hasFailed(const URL& file, Date modified) const;
    void storeFailure(const URL& file, Date modified) const;

    /// True for the store's own pictures, which must not get any.
    bool holds(const URL& file) const { return file.isInside(folder_); }

private:
    URL folder_;
};

}  // namespace tarn
