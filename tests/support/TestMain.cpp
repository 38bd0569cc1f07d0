#include <cstdlib>

#include <gtest/gtest.h>

#include "TarnCore/base/Collation.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"

int main(int argc, char** argv) {
    // The same zone, language and order everywhere.
    setenv("TZ", "UTC", 1);
    setenv("LC_ALL", "en_US.UTF-8", 1);
    unsetenv("TARN_ISOLATED_ROOT");
    // What a test learns must not stay on the machine.
    setenv("XDG_CACHE_HOME", "/dev/null", 1);
    tarn::Collation::use("en_US");
    testing::InitGoogleTest(&argc, argv);
    tarn::Platform::setCurrent(tarn::makeLinuxPlatform());
    return RUN_ALL_TESTS();
}
