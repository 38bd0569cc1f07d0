#pragma once

#include <QtGui/QMouseEvent>

namespace tarn {

/// A click that opens a place in a tab of its own instead of going there: with the middle button,
/// or with Ctrl where that selects nothing.
inline bool isAside(const QMouseEvent& event) {
    return event.button() == Qt::MiddleButton ||
           (event.button() == Qt::LeftButton && event.modifiers().testFlag(Qt::ControlModifier));
}

}  // namespace tarn
