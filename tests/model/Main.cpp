#include <cstdlib>

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
    return RUN_ALL_TESTS();
}
