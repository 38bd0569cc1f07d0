#include "Tarn/ui/path/CrumbButton.h"

#include <algorithm>

#include <QtGui/QDropEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include "Tarn/ui/drag/DropLabel.h"
#include "Tarn/ui/drag/FileDrag.h"
#include "Tarn/ui/drag/FileDrop.h"
#include "Tarn/ui/focus/AsideClick.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {

using namespace Metrics;

CrumbButton::CrumbButton(const QString& text, std::string_view symbol, QWidget* parent)
    : QAbstractButton(parent) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setText(text);
    setAccessibleName(text);
    if (!symbol.empty()) setIcon(Icons::symbol(symbol));
    setFont(parent->font());
}

void CrumbButton::setLast(bool last) {
    last_ = last;
    update();
}

int CrumbButton::textLeft() const { return space8 + (icon().isNull() ? 0 : iconSmall + space6); }

int CrumbButton::markWidth() const { return last_ ? 0 : space12; }

QSize CrumbButton::sizeHint() const {
    const int wanted = textLeft() + Fonts::textWidth(font(), text()) + space8;
    return {std::min(wanted, crumbMaximum) + markWidth(),
            std::max(smallestTarget, fontMetrics().height() + space4)};
}

int CrumbButton::shortestWidth() const {
    const int few = textLeft() + fontMetrics().averageCharWidth() * 5 + space8 + markWidth();
    return std::min(few, sizeHint().width());
}

void CrumbButton::resizeEvent(QResizeEvent*) {
    const int room = width() - textLeft() - space8 - markWidth();
    setToolTip(Fonts::textWidth(font(), text()) > room ? text() : QString());
}

void CrumbButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors& colors = Colors::current();
    const auto placed = [this](const QRect& logical) {
        return QStyle::visualRect(layoutDirection(), rect(), logical);
    };
    const QRect face = placed(rect().adjusted(0, 0, -markWidth(), 0));
    if (isDown() || underMouse())
        Paint::fill(painter, face, radiusSmall,
                    colors.tinted(colors.base, isDown() ? checkedHoverTint : hoverTint));
    if (hasFocus() || isDropTarget_) Paint::focusRing(painter, face, radiusSmall);
    if (!icon().isNull())
        icon().paint(&painter,
                     placed(QRect(space8, (height() - iconSmall) / 2, iconSmall, iconSmall)));
    const int room = width() - textLeft() - space8 - markWidth();
    const QRect words = placed(QRect(textLeft(), 0, room, height()));
    painter.setPen(last_ || underMouse() || hasFocus() ? colors.text : colors.secondary);
    painter.drawText(
        words,
        Qt::AlignVCenter | Qt::TextSingleLine | (isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft),
        fontMetrics().elidedText(text(), Qt::ElideMiddle, room));
    if (!last_) {
        const QRect mark =
            placed(QRect(width() - space12, (height() - space12) / 2, space12, space12));
        Icons::symbol(isRightToLeft() ? "chevron.left" : "chevron.right", Icons::Tint::secondary)
            .paint(&painter, mark);
    }
}

void CrumbButton::setDropFolder(const URL& folder) {
    folder_ = folder;
    setAcceptDrops(true);
}

void CrumbButton::setDropTarget(bool isTarget) {
    isDropTarget_ = isTarget;
    if (!isTarget) DropLabel::hide(*this);
    update();
}

void CrumbButton::dragEnterEvent(QDragEnterEvent* event) { dragMoveEvent(event); }

void CrumbButton::dragMoveEvent(QDragMoveEvent* event) {
    const auto drop = folder_ ? FileDrop::of(*event, *folder_) : std::nullopt;
    setDropTarget(drop.has_value());
    if (!drop) {
        event->ignore();
        return;
    }
    drop->accept(*event);
    DropLabel::show(*this, event->position().toPoint(), *drop);
}

void CrumbButton::dragLeaveEvent(QDragLeaveEvent*) { setDropTarget(false); }

void CrumbButton::dropEvent(QDropEvent* event) {
    setDropTarget(false);
    const auto drop = folder_ ? FileDrop::of(*event, *folder_) : std::nullopt;
    if (!drop) return;
    drop->accept(*event);
    emit dropped(*drop);
}

void CrumbButton::mousePressEvent(QMouseEvent* event) {
    if (isAside(*event)) return event->accept();
    pressedAt_ = event->pos();
    QAbstractButton::mousePressEvent(event);
}

void CrumbButton::mouseReleaseEvent(QMouseEvent* event) {
    if (!isAside(*event)) return QAbstractButton::mouseReleaseEvent(event);
    if (rect().contains(event->position().toPoint())) emit clickedAside();
}

void CrumbButton::mouseMoveEvent(QMouseEvent* event) {
    const bool isFar =
        (event->pos() - pressedAt_).manhattanLength() >= QApplication::startDragDistance();
    if (!folder_ || !isDown() || !isFar) return QAbstractButton::mouseMoveEvent(event);
    setDown(false);
    FileItem item;
    item.url = *folder_;
    item.name = folder_->name();
    item.isDirectory = true;
    // The way to where one is must not be moved away by a slip of the hand.
    FileDrag::start(*this, {*folder_}, FileDrag::image({item}, {}, devicePixelRatioF()),
                    Qt::CopyAction | Qt::LinkAction);
}

}  // namespace tarn
