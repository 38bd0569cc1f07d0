#include "Tarn/ui/path/OfferList.h"

#include <QtCore/QEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QCompleter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>
#include <QtWidgets/QStyledItemDelegate>

#include "Tarn/ui/theme/Metrics.h"

namespace tarn {

void OfferList::install(QCompleter& completer) {
    auto* list = new OfferList;
    completer.setPopup(list);
    // The one that the completer has set draws the ring of the keyboard, which is in the field.
    list->setItemDelegate(new QStyledItemDelegate(list));
}

OfferList::OfferList() {
    setAttribute(Qt::WA_TranslucentBackground);
    viewport()->setAutoFillBackground(false);
    // What a completer adds to the height of its rows has to hold those above and below.
    setViewportMargins(Metrics::space4, Metrics::space2, Metrics::space4, Metrics::space2);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setUniformItemSizes(true);
}

bool OfferList::event(QEvent* event) {
    if (event->type() == QEvent::Paint) {
        QStyleOption option;
        option.initFrom(this);
        QPainter painter(this);
        style()->drawPrimitive(QStyle::PE_PanelMenu, &option, &painter, this);
        return true;
    }
    return QListView::event(event);
}

}  // namespace tarn
