#include "Tarn/ui/search/FlowLayout.h"

#include <algorithm>

#include <QtWidgets/QStyle>
#include <QtWidgets/QWidget>

namespace tarn {

FlowLayout::FlowLayout(QWidget* parent, int gap) : QLayout(parent), gap_(gap) {
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem* item) { items_.emplace_back(item); }

QLayoutItem* FlowLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
    if (index < 0 || index >= count()) return nullptr;
    QLayoutItem* item = items_[static_cast<std::size_t>(index)].release();
    items_.erase(items_.begin() + index);
    return item;
}

int FlowLayout::heightForWidth(int width) const { return arrange(QRect(0, 0, width, 0), false); }

QSize FlowLayout::sizeHint() const { return minimumSize(); }

QSize FlowLayout::minimumSize() const {
    QSize size;
    for (const auto& item : items_)
        if (!item->isEmpty()) size = size.expandedTo(item->minimumSize());
    const QMargins margins = contentsMargins();
    return size + QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

void FlowLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

int FlowLayout::arrange(const QRect& rect, bool place) const {
    const QMargins margins = contentsMargins();
    const QRect room = rect.marginsRemoved(margins);
    const auto direction = parentWidget() ? parentWidget()->layoutDirection() : Qt::LeftToRight;
    int x = room.left();
    int y = room.top();
    int lineHeight = 0;
    for (const auto& item : items_) {
        if (item->isEmpty()) continue;
        QSize size = item->sizeHint();
        size.setWidth(std::min(size.width(), room.width()));
        if (lineHeight > 0 && x + size.width() > room.left() + room.width()) {
            x = room.left();
            y += lineHeight + gap_;
            lineHeight = 0;
        }
        if (place)
            item->setGeometry(QStyle::visualRect(direction, room, QRect(QPoint(x, y), size)));
        x += size.width() + gap_;
        lineHeight = std::max(lineHeight, size.height());
    }
    return y + lineHeight - rect.top() + margins.bottom();
}

}  // namespace tarn
