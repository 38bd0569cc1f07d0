#include <ctime>

#include <gtest/gtest.h>

#include "Tarn/model/FolderListing.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

TEST(FolderListing, namesThatChangeBeforeItemsAreLookedAtAreReadAgain) {
    const std::int64_t now = std::time(nullptr);
    const struct {
        const char* title;
        Date before;
        bool leavesTime;  ///< As when two changes come within one tick of the clock.
    } cases[] = {{"a folder that was old", Date::fromUnix(now - 3600), false},
                 {"one that changes all the time", Date::fromUnix(now + 3600), true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.title);
        const TestFolder folder;
        folder.file("a");
        folder.setModified(folder.url(), c.before);
        FolderListing::Progress progress;
        progress.onNames = [&] {
            folder.file("b");
            if (c.leavesTime) folder.setModified(folder.url(), c.before);
        };
        EXPECT_EQ(FolderListing::rows(folder.url(), false, {}, {}, progress)->size(), 2U);
    }
}

}  // namespace
}  // namespace tarn
