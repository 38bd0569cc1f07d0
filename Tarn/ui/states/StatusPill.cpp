#include "Tarn/ui/states/StatusPill.h"

#include <algorithm>
#include <cmath>

#include <QtCore/QEvent>
#include <QtGui/QAccessible>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {

StatusPill::StatusPill(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFont(Fonts::small());
    hide();
    parent->installEventFilter(this);
}

void StatusPill::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    setAccessibleName(text);
    if (text.isEmpty()) {
        hide();
        return;
    }
    place();
    show();
    raise();
    update();
    QAccessibleEvent said(this, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&said);
}

QSize StatusPill::sizeHint() const {
    const qreal text = Fonts::tabularWidth(font(), text_);
    return {static_cast<int>(std::ceil(text)) + 2 * Metrics::space12,
            fontMetrics().height() + 2 * Metrics::space4 + Metrics::space2};
}

void StatusPill::place() {
    const QRect room = parentWidget()->rect().adjusted(Metrics::space12, Metrics::space12,
                                                       -Metrics::space12, -Metrics::space12);
    const QSize size(std::min(sizeHint().width(), room.width()), sizeHint().height());
    setGeometry(
        QStyle::alignedRect(layoutDirection(), Qt::AlignRight | Qt::AlignBottom, size, room));
}

bool StatusPill::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutDirectionChange) place();
    return QWidget::eventFilter(watched, event);
}

void StatusPill::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ApplicationFontChange) {
        setFont(Fonts::small());
        place();
    }
    QWidget::changeEvent(event);
}

void StatusPill::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors& colors = Colors::current();
    const QRectF pill = rect();
    Paint::fill(painter, pill, pill.height() / 2, colors.raised);
    Paint::outline(painter, pill, pill.height() / 2, colors.border, Metrics::hairline);
    painter.setPen(colors.secondary);
    painter.setFont(font());
    const QRectF room = pill.adjusted(Metrics::space12, 0, -Metrics::space12, 0);
    if (Fonts::tabularWidth(font(), text_) <= room.width() + 1) {
        Fonts::drawTabular(painter, room, Qt::AlignHCenter, text_);
    } else {
        painter.drawText(room, Qt::AlignCenter | Qt::TextSingleLine,
                         QFontMetricsF(font()).elidedText(text_, Qt::ElideRight, room.width()));
    }
}

}  // namespace tarn
