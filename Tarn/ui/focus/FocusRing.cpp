#include "Tarn/ui/focus/FocusRing.h"

#include <QtWidgets/QApplication>

namespace tarn {

void FocusRing::step(QWidget& room, bool next) {
    QWidget* current = QApplication::focusWidget();
    if (!current || (current != &room && !room.isAncestorOf(current))) current = &room;
    QWidget* widget = current;
    do {
        widget = next ? widget->nextInFocusChain() : widget->previousInFocusChain();
        if (widget != &room && room.isAncestorOf(widget) && widget->isVisible() &&
            widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus) {
            widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            break;
        }
    } while (widget != current);
}

}  // namespace tarn
