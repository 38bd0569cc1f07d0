#include "Tarn/ui/thumbnails/PictureDecoder.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include <QtCore/QFile>
#include <QtGui/QImageReader>
#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/QuietOpen.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::PictureDecoder {
namespace {

QSize fitted(const QSize& size, int side) {
    if (size.width() <= side && size.height() <= side) return size;
    return size.scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1});
}

QImage byQt(const URL& file, int size) {
    QFile device;
    // By descriptor: a name need not be text.
    const int descriptor = openQuietly(AT_FDCWD, file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return {};
    if (!device.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return {};
    }
    QImageReader reader(&device);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize whole = reader.size();
    if (whole.isValid()) reader.setScaledSize(fitted(whole, size));
    QImage image = reader.read();
    if (image.isNull()) return {};
    if (image.width() > size || image.height() > size)
        image = image.scaled(fitted(image.size(), size), Qt::IgnoreAspectRatio,
                             Qt::SmoothTransformation);
    return image;
}

QImage byPlatform(const URL& file, int size) {
    const auto& decoding = Platform::current().pictures;
    if (!decoding) return {};
    const auto picture = decoding->decode(file, size);
    if (!picture || picture->rgba.size() != static_cast<std::size_t>(picture->width) *
                                                static_cast<std::size_t>(picture->height) * 4)
        return {};
    QImage image(picture->width, picture->height, QImage::Format_RGBA8888);
    const auto lineBytes = static_cast<std::size_t>(picture->width) * 4;
    for (int y = 0; y < picture->height; ++y)
        std::memcpy(image.scanLine(y),
                    picture->rgba.data() + static_cast<std::size_t>(y) * lineBytes, lineBytes);
    return image;
}

}  // namespace

QImage decode(const URL& file, int size) {
    QImage image = byQt(file, size);
    return image.isNull() ? byPlatform(file, size) : image;
}

}  // namespace tarn::PictureDecoder
