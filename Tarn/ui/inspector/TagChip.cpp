#include "Tarn/ui/inspector/TagChip.h"

#include <algorithm>
#include <utility>

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QToolButton>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/ui/tags/TagDots.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

using namespace Metrics;

constexpr int beforeText = space8 + tagDot + space6;
constexpr int afterText = space2 + chipCloseTarget + space4;
constexpr int shortestText = 32;

}  // namespace

TagChip::TagChip(FinderTag tag, bool isShared, QWidget* parent)
    : QAbstractButton(parent),
      tag_(std::move(tag)),
      isShared_(isShared),
      remove_(new QToolButton(this)) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    const QString name = tagText(tag_.name);
    setText(name);
    setAccessibleName(tr("Tag “%1”").arg(name));
    setAccessibleDescription(isShared ? tr("Press Delete to remove it.")
                                      : tr("Some of the selected items have it."));
    setToolTip(isShared ? name.toHtmlEscaped()
                        : tr("Some of the selected items have it.").toHtmlEscaped());
    remove_->setFocusPolicy(Qt::NoFocus);
    remove_->setIcon(Icons::symbol("xmark", Icons::Tint::secondary));
    remove_->setIconSize({space12, space12});
    remove_->setFixedSize(chipCloseTarget, chipCloseTarget);
    remove_->setAccessibleName(tr("Remove the tag “%1”").arg(name));
    remove_->setToolTip(tr("Remove"));
    connect(remove_, &QToolButton::clicked, this, &TagChip::removeRequested);
}

QSize TagChip::sizeHint() const {
    return {beforeText + Fonts::textWidth(font(), text()) + afterText,
            std::max(chipHeight, fontMetrics().height() + space8)};
}

QSize TagChip::minimumSizeHint() const {
    const QSize whole = sizeHint();
    return {std::min(beforeText + shortestText + afterText, whole.width()), whole.height()};
}

QRect TagChip::textRect() const {
    return QStyle::visualRect(layoutDirection(), rect(),
                              rect().adjusted(beforeText, 0, -afterText, 0));
}

void TagChip::resizeEvent(QResizeEvent*) {
    const QRect logical(width() - space4 - chipCloseTarget, (height() - chipCloseTarget) / 2,
                        chipCloseTarget, chipCloseTarget);
    remove_->setGeometry(QStyle::visualRect(layoutDirection(), rect(), logical));
}

void TagChip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors& colors = Colors::current();
    const qreal radius = height() / 2.0;
    const QColor ground =
        underMouse() || hasFocus() ? colors.selection : colors.tinted(colors.window, hoverTint);
    Paint::fill(painter, rect(), radius, ground);
    if (hasFocus())
        Paint::focusRing(painter, rect(), radius);
    else if (colors.isHighContrast)
        Paint::outline(painter, rect(), radius, colors.border, hairline);
    const QRect dot = QStyle::visualRect(layoutDirection(), rect(),
                                         QRect(space8, (height() - tagDot) / 2, tagDot, tagDot));
    TagDots::paint(painter, dot, {tag_.color}, ground);
    painter.setPen(isShared_ ? colors.text : colors.secondary);
    const QRect room = textRect();
    painter.drawText(room, Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, room.width()));
}

void TagChip::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
        emit removeRequested();
    else
        QAbstractButton::keyPressEvent(event);
}

}  // namespace tarn
