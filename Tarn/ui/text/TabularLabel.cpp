#include "Tarn/ui/text/TabularLabel.h"

#include <cmath>

#include <QtCore/QEvent>
#include <QtGui/QPainter>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"

namespace tarn {

TabularLabel::TabularLabel(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFont(Fonts::small());
}

void TabularLabel::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    setAccessibleName(text);
    updateToolTip();
    updateGeometry();
    update();
}

void TabularLabel::updateToolTip() {
    setToolTip(sizeHint().width() > width() ? text_.toHtmlEscaped() : QString());
}

void TabularLabel::resizeEvent(QResizeEvent*) { updateToolTip(); }

QSize TabularLabel::sizeHint() const {
    return {static_cast<int>(std::ceil(Fonts::tabularWidth(font(), text_))),
            fontMetrics().height()};
}

QSize TabularLabel::minimumSizeHint() const { return {1, fontMetrics().height()}; }

void TabularLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ApplicationFontChange) setFont(Fonts::small());
    QWidget::changeEvent(event);
}

void TabularLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(Colors::current().secondary);
    const bool fits = sizeHint().width() <= width();
    if (!isRightToLeft() && fits) {
        Fonts::drawTabular(painter, rect(), Qt::AlignLeft, text_);
        return;
    }
    painter.drawText(
        rect(),
        Qt::AlignVCenter | Qt::TextSingleLine | (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft),
        fontMetrics().elidedText(text_, Qt::ElideRight, width()));
}

}  // namespace tarn
