#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

WindowSnapshot tagged(const char* tag) {
    return {{{Location::tag(tag), std::nullopt}}, 0, true, false};
}

class TabGroupTest : public testing::Test {
protected:
    /// The tabs in order, by the tag that each shows; the current one in capitals.
    std::string order() {
        std::string text;
        for (int i = 0; i < group.count(); ++i) {
            std::string tag = group.tab(i).active().location().text;
            if (i == group.currentIndex())
                tag.front() = static_cast<char>(std::toupper(tag.front()));
            text += tag;
        }
        return text;
    }

    TestFolder folder;
    AppModel app;
    TabGroup group{app, {tagged("a"), tagged("b"), tagged("c")}};
};

TEST_F(TabGroupTest, anotherTabTakesThePlaceOfAClosedOne) {
    EXPECT_EQ(order(), "Abc");
    group.open(tagged("d"));
    EXPECT_EQ(order(), "aDbc");
    group.open(tagged("e"), false);
    EXPECT_EQ(order(), "aDebc");
    group.close(1);
    EXPECT_EQ(order(), "aEbc");
    group.close(0);
    EXPECT_EQ(order(), "Ebc");
    group.setCurrent(2);
    group.close(2);
    EXPECT_EQ(order(), "eB");
    EXPECT_EQ(app.takeClosedTab()->panes.front().location, Location::tag("c"));
    group.close(1);
    int emptied = 0;
    QObject::connect(&group, &TabGroup::emptied, &group, [&emptied] { ++emptied; });
    group.close(0);
    EXPECT_EQ(emptied, 1);
    EXPECT_EQ(group.current(), nullptr);
}

TEST_F(TabGroupTest, theCurrentTabStaysWhenTabsMove) {
    group.setCurrent(1);
    group.move(0, 2);
    EXPECT_EQ(order(), "Bca");
    group.move(0, 1);
    EXPECT_EQ(order(), "cBa");
    group.showNext();
    group.showNext();
    EXPECT_EQ(order(), "Cba");
    group.showPrevious();
    EXPECT_EQ(order(), "cbA");
}

TEST_F(TabGroupTest, aSessionHasOneListForEachWindow) {
    TabGroup second(app, {tagged("x")});
    second.current()->setSplit(true);
    group.move(0, 2);
    app.flush();
    const SessionState session = app.storedSession();
    ASSERT_EQ(session.windows.size(), 2u);
    ASSERT_EQ(session.windows[0].size(), 3u);
    EXPECT_EQ(session.windows[0][2].panes.front().location, Location::tag("a"));
    EXPECT_EQ(session.windows[1][0].panes.size(), 2u);
}

}  // namespace
}  // namespace tarn
