#include "Tarn/ui/tags/TagDotRow.h"

#include <algorithm>

#include <QtGui/QHelpEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QToolTip>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

constexpr int side = Metrics::smallestTarget;
constexpr int dot = Metrics::iconSmall;

}  // namespace

TagDotRow::TagDotRow(std::vector<Entry> entries, QWidget* parent)
    : QWidget(parent), entries_(std::move(entries)), margin_(Metrics::space4) {
    setObjectName(QStringLiteral("tagDots"));
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Tags"));
}

void TagDotRow::setEntries(std::vector<Entry> entries) {
    entries_ = std::move(entries);
    pointed_ = std::min(pointed_, static_cast<int>(entries_.size()) - 1);
    updateGeometry();
    update();
}

void TagDotRow::alignWithEdge() {
    margin_ = -(side - dot) / 2;
    updateGeometry();
}

QSize TagDotRow::sizeHint() const {
    return {static_cast<int>(entries_.size()) * side + 2 * margin_, side + 2 * Metrics::space2};
}

QRect TagDotRow::target(std::size_t index) const {
    const QRect logical(margin_ + static_cast<int>(index) * side, (height() - side) / 2, side,
                        side);
    return QStyle::visualRect(layoutDirection(), rect(), logical);
}

QPoint TagDotRow::middle(std::size_t index) const { return target(index).center(); }

int TagDotRow::entryAt(const QPoint& point) const {
    for (std::size_t i = 0; i < entries_.size(); ++i)
        if (target(i).contains(point)) return static_cast<int>(i);
    return -1;
}

void TagDotRow::point(int index) {
    if (index == pointed_) return;
    pointed_ = index;
    setAccessibleDescription(
        index < 0 ? QString() : tagText(entries_[static_cast<std::size_t>(index)].tag.name));
    update();
}

void TagDotRow::choose() {
    if (pointed_ >= 0) emit chosen(entries_[static_cast<std::size_t>(pointed_)].tag);
}

void TagDotRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const QRect place = target(i);
        if (static_cast<int>(i) == pointed_) {
            QColor ground = Colors::current().text;
            ground.setAlphaF(static_cast<float>(Metrics::checkedTint));
            Paint::fill(painter, place, Metrics::radiusControl, ground);
            if (hasFocus()) Paint::focusRing(painter, place, Metrics::radiusControl);
        }
        QRectF circle(0, 0, dot, dot);
        circle.moveCenter(QRectF(place).center());
        TagDots::paintLarge(painter, circle, entries_[i].tag.color, entries_[i].share);
    }
}

void TagDotRow::mouseMoveEvent(QMouseEvent* event) { point(entryAt(event->pos())); }

void TagDotRow::mouseReleaseEvent(QMouseEvent* event) {
    point(entryAt(event->pos()));
    choose();
}

void TagDotRow::leaveEvent(QEvent*) {
    // The keyboard stays at its dot.
    if (!hasFocus()) point(-1);
}

void TagDotRow::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    if (pointed_ < 0 && !entries_.empty()) {
        const auto chosen = std::find_if(entries_.begin(), entries_.end(), [](const Entry& entry) {
            return entry.share != TagDots::Share::none;
        });
        point(chosen == entries_.end() ? 0 : static_cast<int>(chosen - entries_.begin()));
    }
    update();
}

void TagDotRow::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    point(-1);
    update();
}

void TagDotRow::keyPressEvent(QKeyEvent* event) {
    const int last = static_cast<int>(entries_.size()) - 1;
    const int step = layoutDirection() == Qt::RightToLeft ? -1 : 1;
    switch (event->key()) {
        case Qt::Key_Left:
            point(std::clamp(pointed_ - step, 0, last));
            return;
        case Qt::Key_Right:
            point(std::clamp(pointed_ + step, 0, last));
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            choose();
            return;
        default:
            QWidget::keyPressEvent(event);
    }
}

bool TagDotRow::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const int index = entryAt(help->pos());
        if (index >= 0)
            QToolTip::showText(
                help->globalPos(),
                tagText(entries_[static_cast<std::size_t>(index)].tag.name).toHtmlEscaped(), this);
        return true;
    }
    return QWidget::event(event);
}

}  // namespace tarn
