#include "Tarn/ui/pane/NoteBubble.h"

#include <algorithm>

#include <QtGui/QAccessible>
#include <QtGui/QPainter>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

constexpr int sidePadding = Metrics::space8;
constexpr int endPadding = Metrics::space6;
constexpr int widest = 320;
constexpr int iconRoom = Metrics::iconSmall + Metrics::space6;

}  // namespace

NoteBubble::NoteBubble(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
}

void NoteBubble::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    setAccessibleName(text);
    setVisible(!text.isEmpty());
    if (text.isEmpty()) return;
    raise();
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
    update();
}

void NoteBubble::pointAt(const QRect& field) {
    if (text_.isEmpty()) return;
    const QRect room = parentWidget()->rect().adjusted(Metrics::space4, Metrics::space4,
                                                       -Metrics::space4, -Metrics::space4);
    const int longest = std::min(widest, room.width()) - 2 * sidePadding - iconRoom;
    const QRect text = QFontMetrics(Fonts::body())
                           .boundingRect(QRect(0, 0, longest, room.height()),
                                         Qt::TextWordWrap | Qt::AlignLeft, text_);
    const QSize size(std::min(longest, text.width() + 1) + 2 * sidePadding + iconRoom,
                     std::max(text.height(), Metrics::iconSmall) + 2 * endPadding);
    QRect rect(QPoint(field.left(), field.bottom() + 1 + Metrics::space4), size);
    if (rect.bottom() > room.bottom()) rect.moveBottom(field.top() - 1 - Metrics::space4);
    rect.moveLeft(std::clamp(rect.left(), room.left(),
                             std::max(room.left(), room.right() + 1 - rect.width())));
    setGeometry(rect);
    raise();
}

void NoteBubble::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors& colors = Colors::current();
    Paint::fill(painter, rect(), Metrics::radiusControl, colors.raised);
    Paint::outline(painter, rect(), Metrics::radiusControl, colors.danger, Metrics::hairline);
    const QRect inner = rect().adjusted(sidePadding, endPadding, -sidePadding, -endPadding);
    const QRect icon(inner.left(), inner.top(), Metrics::iconSmall, Metrics::iconSmall);
    const QRect place = QStyle::visualRect(layoutDirection(), inner, icon);
    Icons::symbol("exclamationmark.circle", Icons::Tint::danger).paint(&painter, place);
    painter.setFont(Fonts::body());
    painter.setPen(colors.text);
    painter.drawText(
        QStyle::visualRect(layoutDirection(), inner, inner.adjusted(iconRoom, 0, 0, 0)),
        Qt::TextWordWrap | Qt::AlignLeading | Qt::AlignVCenter, text_);
}

}  // namespace tarn
