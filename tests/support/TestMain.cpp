#include <cstdlib>
#include <filesystem>
#include <string>

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
    // Nothing reaches the user's stores or Trash.
    std::string home = (std::filesystem::temp_directory_path() / "tarn-home-XXXXXX").native();
    if (mkdtemp(home.data()) == nullptr) std::abort();
    setenv("HOME", home.c_str(), 1);
    unsetenv("XDG_DATA_HOME");
    unsetenv("XDG_CONFIG_HOME");
    tarn::Collation::use("en_US");
    testing::InitGoogleTest(&argc, argv);
    tarn::Platform::setCurrent(tarn::makeLinuxPlatform());
    const int status = RUN_ALL_TESTS();
    std::error_code ignored;
    std::filesystem::remove_all(home, ignored);
    return status;
}
