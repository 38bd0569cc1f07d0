#include "Tarn/ui/theme/PictureIconEngine.h"

#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

namespace tarn {

QPixmap PictureIconEngine::square(int side, qreal, QIcon::Mode) const {
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(QStringLiteral(":/tarn/icons/") + name_ + QStringLiteral(".svg"))
        .render(&painter, QRectF(0, 0, side, side));
    painter.end();
    return QPixmap::fromImage(image);
}

}  // namespace tarn
