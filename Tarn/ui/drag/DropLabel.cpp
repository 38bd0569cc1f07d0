#include "Tarn/ui/drag/DropLabel.h"

#include <algorithm>

#include <QtGui/QPainter>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

/// From the pointer, clear of the dragged icons.
constexpr QPoint away(Metrics::space16, Metrics::space24 + Metrics::space16);
constexpr int widest = 320;

}  // namespace

DropLabel::DropLabel(QWidget* window) : QWidget(window) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFont(Fonts::small());
}

DropLabel* DropLabel::of(QWidget& target) {
    return target.window()->findChild<DropLabel*>(QString(), Qt::FindDirectChildrenOnly);
}

void DropLabel::show(QWidget& target, const QPoint& point, const FileDrop& drop) {
    show(target, point, drop.label(), drop.symbol());
}

void DropLabel::show(QWidget& target, const QPoint& point, const QString& text,
                     std::string_view symbol) {
    DropLabel* label = of(target);
    if (!label) label = new DropLabel(target.window());
    if (text != label->text_) {
        label->text_ = text;
        label->symbol_ = symbol;
        label->setAccessibleName(text);
        label->update();
    }
    const int wanted = Fonts::textWidth(label->font(), label->text_) + Metrics::iconSmall +
                       Metrics::space6 + 2 * Metrics::space8;
    label->resize(std::min(wanted, widest),
                  std::max(label->fontMetrics().height(), Metrics::iconSmall) + Metrics::space8);
    const QRect room = target.window()->rect();
    QPoint place = target.mapTo(target.window(), point) + away;
    place.setX(std::clamp(place.x(), 0, std::max(0, room.width() - label->width())));
    place.setY(std::clamp(place.y(), 0, std::max(0, room.height() - label->height())));
    label->move(place);
    label->QWidget::show();
    label->raise();
}

void DropLabel::hide(QWidget& target) {
    if (DropLabel* label = of(target)) label->QWidget::hide();
}

void DropLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors& colors = Colors::current();
    Paint::fill(painter, rect(), Metrics::radiusControl, colors.accent);
    const QRect icon(Metrics::space8, (height() - Metrics::iconSmall) / 2, Metrics::iconSmall,
                     Metrics::iconSmall);
    Icons::symbol(symbol_, Icons::Tint::onAccent).paint(&painter, icon);
    painter.setFont(font());
    painter.setPen(colors.onAccent);
    const QRect text = rect().adjusted(icon.right() + Metrics::space6, 0, -Metrics::space8, 0);
    painter.drawText(text, Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text_, Qt::ElideMiddle, text.width()));
}

}  // namespace tarn
