#include <sys/stat.h>

#include "TarnCore/base/PrivateFolders.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

TEST(PrivateFolders, areClosedToOthersAndLeaveWhatIsThere) {
    const TestFolder folder;
    const auto mode = [&folder](const char* name) {
        struct stat facts {};
        EXPECT_EQ(stat((folder / name).c_str(), &facts), 0) << name;
        return facts.st_mode & 07777;
    };
    folder.folder("open");
    ASSERT_EQ(chmod((folder / "open").c_str(), 0755), 0);
    for (int time = 0; time < 2; ++time) {
        SCOPED_TRACE(time);
        EXPECT_TRUE(PrivateFolders::make(folder / "open/cache\n/deep"));
        EXPECT_EQ(mode("open"), 0755U);
        EXPECT_EQ(mode("open/cache\n"), 0700U);
        EXPECT_EQ(mode("open/cache\n/deep"), 0700U);
    }
    folder.file("file");
    EXPECT_FALSE(PrivateFolders::make(folder / "file/in"));
}

}  // namespace
}  // namespace tarn
