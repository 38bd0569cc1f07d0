#include "Tarn/ui/text/ListKey.h"

#include <QtGui/QAccessible>
#include <QtWidgets/QAbstractItemView>

namespace tarn {

ListKey ListKey::of(int key, int page) {
    switch (key) {
        case Qt::Key_Escape:
            return {Wish::close};
        case Qt::Key_Down:
        case Qt::Key_Tab:
            return {Wish::move, 1};
        case Qt::Key_Up:
        case Qt::Key_Backtab:
            return {Wish::move, -1};
        // One row of what was seen stays in sight.
        case Qt::Key_PageDown:
            return {Wish::move, page - 1};
        case Qt::Key_PageUp:
            return {Wish::move, 1 - page};
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return {Wish::choose};
        default:
            return {};
    }
}

void ListKey::tellMarked(QAbstractItemView& list, int row) {
    QAccessibleEvent marked(&list, QAccessible::Focus);
    marked.setChild(row);
    QAccessible::updateAccessibility(&marked);
}

}  // namespace tarn
