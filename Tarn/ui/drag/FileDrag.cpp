#include "Tarn/ui/drag/FileDrag.h"

#include <algorithm>
#include <cmath>

#include <QtCore/QLocale>
#include <QtGui/QDrag>
#include <QtGui/QPainter>
#include <QtWidgets/QWidget>

#include "Tarn/model/FileMime.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn::FileDrag {
namespace {

constexpr int iconSide = 48;
constexpr std::size_t mostStacked = 3;
constexpr int step = Metrics::space6;
constexpr int room = Metrics::space12;  // for the badge

void paintItem(QPainter& painter, const FileItem& item, const QPixmap& picture, const QRect& rect) {
    if (picture.isNull()) {
        Icons::forItem(item).paint(&painter, rect);
        return;
    }
    QSizeF size = picture.deviceIndependentSize();
    size.scale(rect.size(), Qt::KeepAspectRatio);
    QRectF target({}, size);
    target.moveCenter(QRectF(rect).center());
    painter.drawPixmap(target, picture, QRectF(picture.rect()));
    Paint::outline(painter, target, 0, Colors::current().border, Metrics::hairline);
}

}  // namespace

QPixmap image(const std::vector<FileItem>& items,
              const std::function<QPixmap(const FileItem&)>& picture, qreal ratio) {
    const std::size_t stacked = std::min(items.size(), mostStacked);
    const int side = iconSide + 2 * room + static_cast<int>(stacked) * step;
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    // The first item lies on top.
    for (std::size_t i = stacked; i-- > 0;) {
        const int offset = room + static_cast<int>(i) * step;
        paintItem(painter, items[i], picture ? picture(items[i]) : QPixmap(),
                  QRect(offset, offset, iconSide, iconSide));
    }
    if (items.size() > 1) {
        const Colors& colors = Colors::current();
        const QString count = QLocale().toString(static_cast<qlonglong>(items.size()));
        painter.setFont(Fonts::semibold(Fonts::small()));
        const int height = painter.fontMetrics().height() + Metrics::space2;
        const int width =
            std::max(height, Fonts::textWidth(painter.font(), count) + 2 * Metrics::space6);
        const QRect badge(std::min(room + iconSide - width / 2, side - width), room - height / 2,
                          width, height);
        Paint::fill(painter, badge, height / 2.0, colors.accent);
        painter.setPen(colors.onAccent);
        painter.drawText(badge, Qt::AlignCenter, count);
    }
    return pixmap;
}

void start(QWidget& source, const std::vector<URL>& urls, const QPixmap& image,
           Qt::DropActions actions) {
    if (urls.empty()) return;
    auto* drag = new QDrag(&source);
    drag->setMimeData(FileMime::makeDrag(urls).release());
    drag->setPixmap(image);
    drag->setHotSpot({room + iconSide / 2, room + iconSide / 2});
    drag->exec(actions, actions.testFlag(Qt::MoveAction) ? Qt::MoveAction : Qt::CopyAction);
}

}  // namespace tarn::FileDrag
