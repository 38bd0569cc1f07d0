#include "Tarn/ui/focus/Overlay.h"

#include <QtCore/QEvent>

namespace tarn {

bool Overlay::keeps(QEvent& event) {
    switch (event.type()) {
        case QEvent::ShortcutOverride:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::DragEnter:
            event.accept();
            return true;
        default:
            return false;
    }
}

}  // namespace tarn
