#include "Tarn/ui/text/ElidedLabel.h"

#include <algorithm>

#include <QtCore/QEvent>
#include <QtGui/QPainter>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {

ElidedLabel::ElidedLabel(const QString& text, QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setText(text);
}

void ElidedLabel::setText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    setAccessibleName(text);
    updateToolTip();
    updateGeometry();
    update();
}

void ElidedLabel::setElideMode(Qt::TextElideMode mode) {
    mode_ = mode;
    update();
}

void ElidedLabel::setSecondary(bool secondary) {
    isSecondary_ = secondary;
    update();
}

QSize ElidedLabel::sizeHint() const {
    return {Fonts::textWidth(font(), text_), fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    return {std::min(sizeHint().width(), fontMetrics().averageCharWidth() * 6),
            fontMetrics().height()};
}

void ElidedLabel::updateToolTip() {
    setToolTip(Fonts::textWidth(font(), text_) > width() ? text_.toHtmlEscaped() : QString());
}

void ElidedLabel::resizeEvent(QResizeEvent*) { updateToolTip(); }

void ElidedLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) updateGeometry();
    QWidget::changeEvent(event);
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors& colors = Colors::current();
    painter.setFont(font());
    painter.setPen(!isEnabled() ? colors.disabled : isSecondary_ ? colors.secondary : colors.text);
    painter.drawText(
        rect(),
        Qt::AlignVCenter | Qt::TextSingleLine | (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft),
        fontMetrics().elidedText(text_, mode_, width()));
}

}  // namespace tarn
