#include "Tarn/ui/preview/MediaStage.h"

#include <algorithm>

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

constexpr int largestIcon = 128;

}  // namespace

MediaStage::MediaStage(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setMinimumSize(1, 1);
}

void MediaStage::setIcon(const QIcon& icon) {
    icon_ = icon;
    update();
}

void MediaStage::setPicture(const QImage& picture, QSize whole) {
    picture_ = picture;
    whole_ = whole.isEmpty() ? picture.size() : whole;
    update();
}

void MediaStage::clear() {
    picture_ = {};
    icon_ = {};
    update();
}

void MediaStage::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (picture_.isNull()) {
        const int side = std::min({largestIcon, width(), height()});
        QRect icon(0, 0, side, side);
        icon.moveCenter(rect().center());
        icon_.paint(&painter, icon);
        return;
    }
    QSizeF size = QSizeF(whole_) / devicePixelRatioF();
    if (size.width() > width() || size.height() > height())
        size.scale(this->size(), Qt::KeepAspectRatio);
    QRectF target({}, size);
    target.moveCenter(QRectF(rect()).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, picture_);
    Paint::outline(painter, target, 0, Colors::current().border, Metrics::hairline);
}

void MediaStage::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->pos())) emit clicked();
}

}  // namespace tarn
