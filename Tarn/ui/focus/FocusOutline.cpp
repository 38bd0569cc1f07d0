#include "Tarn/ui/focus/FocusOutline.h"

#include <QtGui/QFocusEvent>
#include <QtGui/QPainter>

#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {

FocusOutline::FocusOutline(QWidget& view) : QWidget(&view) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    view.installEventFilter(this);
}

void FocusOutline::follow(Qt::FocusReason reason) {
    switch (reason) {
        case Qt::TabFocusReason:
        case Qt::BacktabFocusReason:
        case Qt::ShortcutFocusReason:
            cameByKey_ = true;
            break;
        // Back from a menu or another window: as before.
        case Qt::PopupFocusReason:
        case Qt::MenuBarFocusReason:
        case Qt::ActiveWindowFocusReason:
            break;
        default:
            cameByKey_ = false;
    }
    if (!cameByKey_) return;
    setGeometry(parentWidget()->rect());
    show();
    raise();
}

bool FocusOutline::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::FocusIn:
            follow(static_cast<QFocusEvent*>(event)->reason());
            break;
        case QEvent::FocusOut:
            hide();
            break;
        case QEvent::Resize:
            setGeometry(parentWidget()->rect());
            break;
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

void FocusOutline::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::focusRing(painter, rect(), Metrics::radiusControl);
}

}  // namespace tarn
