#include "Tarn/ui/window/FirstRows.h"

#include <utility>

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

#include "Tarn/ui/pane/PaneView.h"

namespace tarn {
namespace {

constexpr int patience = 500;  // milliseconds

}  // namespace

FirstRows::FirstRows(std::function<void()> then, QObject* parent)
    : QObject(parent), then_(std::move(then)) {
    QCoreApplication::instance()->installEventFilter(this);
    patience_.setSingleShot(true);
    connect(&patience_, &QTimer::timeout, this, &FirstRows::finish);
    patience_.start(patience);
}

bool FirstRows::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint) {
        const auto* view = qobject_cast<PaneView*>(watched->parent());
        if (view && view->viewport() == watched && view->model()->rowCount() > 0) {
            QCoreApplication::instance()->removeEventFilter(this);
            patience_.start(0);  // Once they are on the screen.
        }
    }
    return false;
}

void FirstRows::finish() {
    QCoreApplication::instance()->removeEventFilter(this);
    std::exchange(then_, {})();
}

}  // namespace tarn
