#include <cstdlib>

#include <QtGui/QFont>
#include <QtWidgets/QApplication>
#include <gtest/gtest.h>

#include "Tarn/ui/theme/Theme.h"
#include "tests/ui/screens/ScreenHome.h"

int main(int argc, char** argv) {
    if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    testing::InitGoogleTest(&argc, argv);
    const tarn::ScreenHome home;
    QApplication app(argc, argv);
    app.setFont(QFont(QStringLiteral("Inter"), 10));
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setCursorFlashTime(0);
    tarn::Theme& theme = tarn::Theme::install(app);
    theme.setMode(tarn::Theme::Mode::light);
    theme.setAnimations(false);
    return RUN_ALL_TESTS();
}
