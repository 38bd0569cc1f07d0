#include "Tarn/ui/text/WrappingCheckBox.h"

#include <algorithm>

#include <QtWidgets/QStyleOptionButton>
#include <QtWidgets/QStylePainter>

#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int textFlags = Qt::TextWordWrap | Qt::TextHideMnemonic | Qt::AlignTop;
/// Enough for any text to wrap in.
constexpr int unlimited = 10'000;

}  // namespace

WrappingCheckBox::WrappingCheckBox(const QString& text, QWidget* parent) : QCheckBox(text, parent) {
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred, QSizePolicy::CheckBox);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QStyleOptionButton WrappingCheckBox::option() const {
    QStyleOptionButton option;
    initStyleOption(&option);
    return option;
}

int WrappingCheckBox::textLeft() const {
    const QStyleOptionButton shown = option();
    return style()->pixelMetric(QStyle::PM_IndicatorWidth, &shown, this) +
           style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, &shown, this);
}

QRect WrappingCheckBox::textRect(int width) const {
    const QRect room(0, 0, std::max(1, width - textLeft()), unlimited);
    return fontMetrics().boundingRect(room, textFlags, text());
}

QSize WrappingCheckBox::sizeHint() const {
    const int width = textLeft() + textRect(unlimited).width();
    return {width, heightForWidth(width)};
}

QSize WrappingCheckBox::minimumSizeHint() const {
    // As narrow as its longest word.
    int word = 0;
    for (const QString& one : text().split(u' '))
        word = std::max(word, fontMetrics().horizontalAdvance(one));
    return {textLeft() + word + 1, Metrics::smallestTarget};
}

int WrappingCheckBox::heightForWidth(int width) const {
    const int line = fontMetrics().height();
    // The first line stands in the middle of the smallest height, beside the box.
    return std::max(Metrics::smallestTarget, line) + std::max(0, textRect(width).height() - line);
}

bool WrappingCheckBox::hitButton(const QPoint& point) const { return rect().contains(point); }

void WrappingCheckBox::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionButton shown = option();
    const QRect whole = shown.rect;
    const int first = std::max(Metrics::smallestTarget, fontMetrics().height());
    shown.rect.setHeight(first);
    QStyleOptionButton mark = shown;
    mark.rect = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &shown, this);
    // Without a text, in a table, it stands in the middle of what can be clicked.
    if (text().isEmpty()) mark.rect.moveCenter(whole.center());
    painter.drawPrimitive(QStyle::PE_IndicatorCheckBox, mark);
    const int top = (first - fontMetrics().height()) / 2;
    const QRect words =
        QStyle::visualRect(shown.direction, whole, whole.adjusted(textLeft(), top, 0, 0));
    style()->drawItemText(
        &painter, words,
        textFlags | static_cast<int>(QStyle::visualAlignment(shown.direction, Qt::AlignLeft)),
        shown.palette, isEnabled(), text(), QPalette::WindowText);
    if (!hasFocus()) return;
    QStyleOptionFocusRect ring;
    ring.initFrom(this);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, ring);
}

}  // namespace tarn
