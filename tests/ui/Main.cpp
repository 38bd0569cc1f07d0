#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <QtGui/QFont>
#include <gtest/gtest.h>

#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/window/WatchedApplication.h"
#include "TarnCore/base/Collation.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "tests/ui/EventListener.h"

int main(int argc, char** argv) {
    // The same zone, language, screen, font and desktop everywhere.
    setenv("TZ", "UTC", 1);
    setenv("LC_ALL", "en_US.UTF-8", 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    unsetenv("TARN_ISOLATED_ROOT");
    tarn::SupportDirectory::useTestFolder();
    tarn::Collation::use("en_US");
    testing::InitGoogleTest(&argc, argv);
    tarn::Platform::setCurrent(tarn::makeLinuxPlatform());
    tarn::WatchedApplication app(argc, argv);
    tarn::EventListener::install(app.watch());
    app.setFont(QFont(QStringLiteral("Inter"), 10));
    tarn::Theme& theme = tarn::Theme::install(app);
    theme.setMode(tarn::Theme::Mode::light);
    theme.setAnimations(false);
    const int status = RUN_ALL_TESTS();
    std::error_code ignored;
    std::filesystem::remove_all(tarn::SupportDirectory::url().path(), ignored);
    return status;
}
