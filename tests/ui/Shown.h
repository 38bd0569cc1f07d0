#pragma once

#include <functional>

#include <QtCore/QDeadlineTimer>
#include <QtCore/QEventLoop>
#include <QtGui/QImage>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>
#include <gtest/gtest.h>

#include "Tarn/ui/theme/Theme.h"

namespace tarn {

/// Shows a widget as the active window.
inline void show(QWidget& widget) {
    widget.show();
    widget.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&widget));
}

/// Handles events until `done`; false when it does not come about.
inline bool waitFor(const std::function<bool()>& done) { return QTest::qWaitFor(done, 5000); }

inline QImage grabbed(QWidget& widget) {
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// Another appearance for the length of a scope.
class ScopedMode {
public:
    explicit ScopedMode(Theme::Mode mode, bool highContrast = false) {
        Theme::shared().setMode(mode);
        Theme::shared().setHighContrast(highContrast);
    }
    ~ScopedMode() {
        Theme::shared().setMode(Theme::Mode::light);
        Theme::shared().setHighContrast(std::nullopt);
    }
    ScopedMode(const ScopedMode&) = delete;
    ScopedMode& operator=(const ScopedMode&) = delete;
};

}  // namespace tarn
