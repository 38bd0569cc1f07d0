#include "Tarn/ui/focus/FocusRing.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QScrollArea>

namespace tarn {
namespace {

/// Scrolls whatever is around a widget until it can be seen.
void reveal(QWidget& widget) {
    for (QWidget* parent = widget.parentWidget(); parent; parent = parent->parentWidget())
        if (auto* area = qobject_cast<QScrollArea*>(parent)) area->ensureWidgetVisible(&widget);
}

}  // namespace

void FocusRing::step(QWidget& room, bool next) {
    QWidget* current = QApplication::focusWidget();
    if (!current || (current != &room && !room.isAncestorOf(current))) current = &room;
    QWidget* widget = current;
    do {
        widget = next ? widget->nextInFocusChain() : widget->previousInFocusChain();
        if (widget != &room && room.isAncestorOf(widget) && widget->isVisible() &&
            widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus) {
            widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            reveal(*widget);
            break;
        }
    } while (widget != current);
}

}  // namespace tarn
