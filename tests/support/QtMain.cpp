// The main function of tests that need the event loop of Qt, and no window.
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <QtCore/QCoreApplication>
#include <gtest/gtest.h>

#include "TarnCore/base/Collation.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"

int main(int argc, char** argv) {
    setenv("TZ", "UTC", 1);
    setenv("LC_ALL", "en_US.UTF-8", 1);
    unsetenv("TARN_ISOLATED_ROOT");
    tarn::Collation::use("en_US");
    tarn::SupportDirectory::useTestFolder();
    testing::InitGoogleTest(&argc, argv);
    tarn::Platform::setCurrent(tarn::makeLinuxPlatform());
    QCoreApplication app(argc, argv);
    const int status = RUN_ALL_TESTS();
    std::error_code ignored;
    std::filesystem::remove_all(tarn::SupportDirectory::url().path(), ignored);
    return status;
}
