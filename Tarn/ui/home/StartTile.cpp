#include "Tarn/ui/home/StartTile.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>

#include "Tarn/ui/focus/AsideClick.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

constexpr int barHeight = Metrics::space4;

}  // namespace

StartTile::StartTile(QWidget* parent) : QAbstractButton(parent) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void StartTile::setPlace(const StartPlace& place) {
    if (place == place_) return;
    place_ = place;
    setText(place.title);
    const bool isFolder = place.location.isFolder() && !place.workspace &&
                          !place.symbol.starts_with("externaldrive") &&
                          !place.symbol.starts_with("internaldrive") && place.symbol != "network";
    icon_ = isFolder ? Icons::folder(place.symbol == "folder" ? std::string() : place.symbol)
                     : Icons::symbol(place.symbol, Icons::Tint::accent);
    setAccessibleName(place.title);
    setAccessibleDescription(place.detail);
    setToolTip(place.detail.isEmpty() ? QString() : place.title + u'\n' + place.detail);
    updateGeometry();
    update();
}

QSize StartTile::sizeHint() const {
    const int lines = fontMetrics().height() +
                      (place_.detail.isEmpty() ? 0 : QFontMetrics(Fonts::small()).height());
    const int bar = place_.fullness ? barHeight + Metrics::space6 : 0;
    return {Metrics::startTileWidth,
            std::max(lines + bar, Metrics::iconLarge) + 2 * Metrics::space12};
}

void StartTile::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Colors& colors = Colors::current();
    const double part = isDown()       ? Metrics::checkedHoverTint
                        : underMouse() ? Metrics::checkedTint
                                       : Metrics::hoverTint / 2;
    Paint::fill(painter, rect(), Metrics::radiusCard, colors.tinted(colors.base, part));
    if (colors.isHighContrast)
        Paint::outline(painter, rect(), Metrics::radiusCard, colors.border, Metrics::hairline);
    if (hasFocus()) Paint::focusRing(painter, rect(), Metrics::radiusCard);

    const auto placed = [this](const QRect& logical) {
        return QStyle::visualRect(layoutDirection(), rect(), logical);
    };
    const bool isSymbol = place_.workspace || place_.location.which == Location::Case::library;
    const int side = isSymbol ? Metrics::iconRow : Metrics::iconLarge;
    const int margin = Metrics::space12;
    icon_.paint(&painter, placed({margin, (height() - side) / 2, side, side}));

    const int left = margin + side + Metrics::space12;
    const int room = width() - left - margin;
    const QFontMetrics small(Fonts::small());
    const int detailHeight = place_.detail.isEmpty() ? 0 : small.height();
    const int bar = place_.fullness ? barHeight + Metrics::space6 : 0;
    int y = (height() - fontMetrics().height() - detailHeight - bar) / 2;
    const Qt::Alignment leading =
        (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter | Qt::AlignAbsolute;
    painter.setPen(colors.text);
    painter.drawText(placed({left, y, room, fontMetrics().height()}), leading,
                     fontMetrics().elidedText(place_.title, Qt::ElideMiddle, room));
    y += fontMetrics().height();
    if (place_.fullness) {
        y += Metrics::space4;
        const QRectF track(left, y, room, barHeight);
        QRectF used = track;
        used.setWidth(track.width() * *place_.fullness);
        const auto mirrored = [this](QRectF logical) {
            if (isRightToLeft()) logical.moveLeft(width() - logical.right());
            return logical;
        };
        Paint::fill(painter, mirrored(track), barHeight / 2.0,
                    colors.tinted(colors.base, Metrics::checkedHoverTint));
        Paint::fill(painter, mirrored(used), barHeight / 2.0,
                    *place_.fullness > 0.9 ? colors.danger : colors.accent);
        y += barHeight + Metrics::space2;
    }
    if (place_.detail.isEmpty()) return;
    painter.setFont(Fonts::small());
    painter.setPen(colors.secondary);
    painter.drawText(placed({left, y, room, detailHeight}), leading,
                     small.elidedText(place_.detail, Qt::ElideMiddle, room));
}

void StartTile::mousePressEvent(QMouseEvent* event) {
    if (isAside(*event)) return event->accept();
    QAbstractButton::mousePressEvent(event);
}

void StartTile::mouseReleaseEvent(QMouseEvent* event) {
    if (!isAside(*event)) return QAbstractButton::mouseReleaseEvent(event);
    if (rect().contains(event->position().toPoint())) emit openedAside();
}

void StartTile::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) updateGeometry();
    QAbstractButton::changeEvent(event);
}

}  // namespace tarn
