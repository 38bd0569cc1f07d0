#include "Tarn/ui/preview/DrawnImage.h"

#include <cstddef>
#include <cstring>

#include <QtGui/QPainter>

namespace tarn::DrawnImage {
namespace {

QImage copy(const DrawnPicture& picture, QImage::Format format, std::size_t bytesPerPixel) {
    const std::size_t rowBytes = static_cast<std::size_t>(picture.width) * bytesPerPixel;
    if (picture.width < 1 || picture.height < 1 ||
        picture.pixels.size() != rowBytes * static_cast<std::size_t>(picture.height))
        return {};
    QImage image(picture.width, picture.height, format);
    if (image.isNull()) return {};
    for (int y = 0; y < picture.height; ++y)
        std::memcpy(image.scanLine(y),
                    picture.pixels.data() + static_cast<std::size_t>(y) * rowBytes, rowBytes);
    return image;
}

}  // namespace

QImage image(const DrawnPicture& picture) {
    if (picture.form != DrawnPicture::Form::colour) return {};
    return copy(picture, QImage::Format_ARGB32_Premultiplied, 4);
}

QImage mask(const DrawnPicture& picture) {
    if (picture.form != DrawnPicture::Form::coverage) return {};
    return copy(picture, QImage::Format_Alpha8, 1);
}

QImage tinted(const QImage& mask, const QColor& color) {
    QImage image(mask.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    return image;
}

}  // namespace tarn::DrawnImage
