#include "Tarn/ui/theme/SquareIconEngine.h"

#include <algorithm>
#include <cmath>

#include <QtGui/QPainter>
#include <QtWidgets/QStyle>

namespace tarn {
namespace {

int sideOf(const QSizeF& size) {
    return std::max(1, static_cast<int>(std::lround(std::min(size.width(), size.height()))));
}

}  // namespace

void SquareIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) {
    const qreal scale = deviceScale(*painter);
    const int side = std::min(rect.width(), rect.height());
    QPixmap pixmap = square(sideOf(QSizeF(side, side) * scale), scale, mode);
    pixmap.setDevicePixelRatio(scale);
    const QRect place = QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, {side, side}, rect);
    painter->drawPixmap(place.topLeft(), pixmap);
}

QPixmap SquareIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) {
    return square(sideOf(size), 1.0, mode);
}

QPixmap SquareIconEngine::scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State,
                                       qreal scale) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    return square(sideOf(QSizeF(size) * scale), scale, mode);
#else
    return square(sideOf(size), scale, mode);  // Before Qt 6.8 the size came in device pixels.
#endif
}

qreal SquareIconEngine::deviceScale(const QPainter& painter) {
    const QTransform toDevice = painter.deviceTransform();
    return std::hypot(toDevice.m11(), toDevice.m12());
}

}  // namespace tarn
