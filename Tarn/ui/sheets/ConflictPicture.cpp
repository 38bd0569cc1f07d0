#include "Tarn/ui/sheets/ConflictPicture.h"

#include <QtGui/QPainter>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {

ConflictPicture::ConflictPicture(QWidget* parent) : QWidget(parent) { setFixedSize(side, side); }

void ConflictPicture::setIcon(const QIcon& icon) {
    icon_ = icon;
    update();
}

void ConflictPicture::setPicture(const QPixmap& picture) {
    picture_ = picture;
    update();
}

void ConflictPicture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (picture_.isNull()) {
        icon_.paint(&painter, rect());
        return;
    }
    QSizeF size = picture_.deviceIndependentSize();
    if (size.width() > side || size.height() > side) size.scale(rect().size(), Qt::KeepAspectRatio);
    QRectF target({}, size);
    target.moveCenter(QRectF(rect()).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, picture_, QRectF(picture_.rect()));
    Paint::outline(painter, target, 0, Colors::current().border, Metrics::hairline);
}

}  // namespace tarn
