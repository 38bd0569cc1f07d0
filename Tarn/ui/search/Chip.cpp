#include "Tarn/ui/search/Chip.h"

#include <algorithm>
#include <utility>

#include <QtCore/QEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QToolButton>

#include "Tarn/model/DisplayText.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

using namespace Metrics;

/// From the left edge to the text: margin, icon, gap.
constexpr int beforeText = space8 + iconSmall + space6;
constexpr int shortestText = 40;

}  // namespace

Chip::Chip(SearchChip chip, QWidget* parent)
    : QAbstractButton(parent), close_(new QToolButton(this)) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    close_->setFocusPolicy(Qt::NoFocus);
    close_->setIcon(Icons::symbol("xmark", Icons::Tint::secondary));
    close_->setIconSize({space12, space12});
    close_->setFixedSize(chipCloseTarget, chipCloseTarget);
    connect(close_, &QToolButton::clicked, this, &Chip::removeRequested);
    setChip(std::move(chip));
}

void Chip::setChip(SearchChip chip) {
    chip_ = std::move(chip);
    const QString label = displayText(chip_.label);
    setText(label);
    setAccessibleName(label);
    setAccessibleDescription(isReadOnly_ ? tr("Search filter")
                                         : tr("Search filter. Press Delete to remove it."));
    close_->setAccessibleName(tr("Remove “%1”").arg(label));
    close_->setToolTip(tr("Remove"));
    updateGeometry();
    update();
}

void Chip::setReadOnly(bool isReadOnly) {
    isReadOnly_ = isReadOnly;
    setFocusPolicy(isReadOnly ? Qt::NoFocus : Qt::StrongFocus);
    close_->setVisible(!isReadOnly);
    setChip(chip_);
}

/// From the text to the right edge: gap, ✕, margin.
int Chip::afterText() const { return isReadOnly_ ? space12 : space4 + chipCloseTarget + space4; }

QSize Chip::sizeHint() const {
    return {beforeText + Fonts::textWidth(font(), text()) + afterText(),
            std::max(chipHeight, fontMetrics().height() + space8)};
}

QSize Chip::minimumSizeHint() const {
    const QSize whole = sizeHint();
    return {std::min(beforeText + shortestText + afterText(), whole.width()), whole.height()};
}

QRect Chip::textRect() const {
    return QStyle::visualRect(layoutDirection(), rect(),
                              rect().adjusted(beforeText, 0, -afterText(), 0));
}

void Chip::placeClose() {
    const QRect logical(width() - space4 - chipCloseTarget, (height() - chipCloseTarget) / 2,
                        chipCloseTarget, chipCloseTarget);
    close_->setGeometry(QStyle::visualRect(layoutDirection(), rect(), logical));
    const bool elided = Fonts::textWidth(font(), text()) > textRect().width();
    setToolTip(elided ? text() : QString());
}

void Chip::resizeEvent(QResizeEvent*) { placeClose(); }

void Chip::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LayoutDirectionChange || event->type() == QEvent::FontChange)
        placeClose();
    QAbstractButton::changeEvent(event);
}

void Chip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors& colors = Colors::current();
    const qreal radius = height() / 2.0;
    const bool active = !isReadOnly_ && (underMouse() || hasFocus());
    const QColor quiet = colors.tinted(colors.window, hoverTint);
    Paint::fill(painter, rect(), radius, active ? colors.selection : quiet);
    if (hasFocus())
        Paint::focusRing(painter, rect(), radius);
    else if (colors.isHighContrast)
        Paint::outline(painter, rect(), radius, colors.border, hairline);
    const QRect icon = QStyle::visualRect(
        layoutDirection(), rect(), QRect(space8, (height() - iconSmall) / 2, iconSmall, iconSmall));
    Icons::symbol(ChipCategories::symbol(chip_.category),
                  active ? Icons::Tint::text : Icons::Tint::secondary)
        .paint(&painter, icon);
    painter.setPen(colors.text);
    const QRect room = textRect();
    painter.drawText(room, Qt::AlignCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, room.width()));
}

void Chip::keyPressEvent(QKeyEvent* event) {
    const int forwards = layoutDirection() == Qt::RightToLeft ? -1 : 1;
    switch (event->key()) {
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            emit removeRequested();
            return;
        case Qt::Key_Left:
            emit stepRequested(-forwards);
            return;
        case Qt::Key_Right:
            emit stepRequested(forwards);
            return;
        default:
            QAbstractButton::keyPressEvent(event);
    }
}

}  // namespace tarn
