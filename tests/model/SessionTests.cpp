#include <functional>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/records/Workspace.h"
#include "TarnCore/files/Paths.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

WindowSnapshot showing(const Location& location) {
    return {{{location, std::nullopt}}, 0, true, false};
}

class SessionTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"a", "b", "c", "d"}) folder.folder(name);
    }
    WindowSnapshot at(const char* name) { return showing(Location::folder(folder / name)); }
    static std::string names(const TabGroup& group) {
        std::string names;
        for (int i = 0; i < group.count(); ++i) {
            if (i == group.currentIndex()) names += '*';
            names += group.tab(i).title().toStdString();
        }
        return names;
    }
    static std::string names(const std::vector<WindowSnapshot>& tabs) {
        std::string names;
        for (const WindowSnapshot& tab : tabs) names += tab.panes.front().location.title();
        return names;
    }
    /// The stored windows, as “ab|c”.
    std::string session() {
        std::string text;
        for (const auto& tabs : app.storedSession().windows)
            text += (text.empty() ? "" : "|") + names(tabs);
        return text;
    }

    TestFolder folder;
    AppModel app;
};

TEST_F(SessionTest, closedTabsAreReopenedNewestFirst) {
    TabGroup group(app, {at("a")});
    for (int i = 0; i < 25; ++i) {
        folder.folder(std::to_string(i));
        group.open(at(std::to_string(i).c_str()));
        group.close(group.currentIndex());
    }
    ASSERT_EQ(app.closedTabs().size(), 20u);
    EXPECT_EQ(app.closedTabs().front().panes.front().location.url.name(), "5");
    EXPECT_EQ(app.takeClosedTab()->panes.front().location.url.name(), "24");
    EXPECT_EQ(app.takeClosedTab()->panes.front().location.url.name(), "23");
    EXPECT_EQ(app.closedTabs().size(), 18u);
    while (app.takeClosedTab()) continue;
    EXPECT_TRUE(app.closedTabs().empty());
    // Of a window that goes as a whole, the tab in front is the newest.
    {
        TabGroup other(app, {at("a"), at("b"), at("c")});
        other.setCurrent(1);
    }
    EXPECT_EQ(names(app.closedTabs()), "acb");
}

TEST_F(SessionTest, theSessionFollowsEveryChange) {
    auto first = std::make_unique<TabGroup>(app, std::vector{at("a"), at("b")});
    auto second = std::make_unique<TabGroup>(app, std::vector{at("c")});
    EXPECT_EQ(session(), "ab|c");
    first->tab(1).active().navigate(Location::library(LibraryItem::recents));
    EXPECT_EQ(app.storedSession().windows[0][1].panes[0].location,
              Location::library(LibraryItem::recents));
    first->close(1);
    first->tab(0).setSplit(true);
    first->tab(0).setActiveIndex(1);
    EXPECT_EQ(app.storedSession().windows[0][0].activePane, 1);
    first->tab(0).active().setViewMode(ViewMode::list);
    second->open(at("d"));
    EXPECT_EQ(session(), "a|cd");
    EXPECT_EQ(app.storedSession().windows[0][0].panes.size(), 2u);
    first.reset();
    EXPECT_EQ(session(), "cd");
    // The last one to go is what the next start gets.
    second.reset();
    EXPECT_EQ(session(), "cd");
    auto alone = std::make_unique<WindowModel>(app, at("a"));
    app.saveSession();
    EXPECT_EQ(session(), "a");
    alone.reset();
    EXPECT_EQ(session(), "a");
}

TEST_F(SessionTest, foldersAreRememberedByWhenAndHowOftenTheyWereVisited) {
    const URL often = folder / "a", once = folder / "b";
    for (const URL& visited : {often, often, once, often, often, once, often})
        app.noteVisited(visited);
    const auto isOurs = [&](const URL& url) { return url == often || url == once; };
    std::vector<URL> recent = app.recentFolders();
    std::erase_if(recent, std::not_fn(isOurs));
    EXPECT_EQ(recent, (std::vector{often, once}));
    std::vector<URL> most = app.mostVisited(1000);
    std::erase_if(most, std::not_fn(isOurs));
    EXPECT_EQ(most, (std::vector{often, once}));
    EXPECT_EQ(app.visitCount(often), 5);
}

TEST_F(SessionTest, theSessionHasHowItsPlacesAreShown) {
    auto group = std::make_unique<TabGroup>(app, std::vector{at("a")});
    const auto stored = [this] { return app.storedSession().windows[0][0]; };
    group->tab(0).active().setViewMode(ViewMode::list);
    EXPECT_EQ(stored().panes[0].viewMode, ViewMode::list);
    group->tab(0).setShowsInspector(true);
    EXPECT_TRUE(stored().showInspector);
    group->tab(0).setSidebarVisible(false);
    EXPECT_FALSE(stored().showSidebar);
    const WindowSnapshot shown = group->tab(0).snapshot();
    group.reset();
    EXPECT_EQ(stored(), shown);
}

TEST_F(SessionTest, aSnapshotIsNotTheFoldersOwnView) {
    WindowSnapshot snapshot = at("a");
    snapshot.panes[0].viewMode = ViewMode::list;
    WindowModel window(app, snapshot);
    EXPECT_EQ(window.active().viewMode(), ViewMode::list);
    EXPECT_FALSE(app.viewPrefs(folder / "a"));
    window.active().setIconSize(128);
    ASSERT_TRUE(app.viewPrefs(folder / "a"));
    EXPECT_EQ(app.viewPrefs(folder / "a")->viewMode, ViewMode::list);
}

TEST_F(SessionTest, windowsThatCloseTogetherStayInTheSession) {
    auto first = std::make_unique<TabGroup>(app, std::vector{at("a"), at("b")});
    auto second = std::make_unique<TabGroup>(app, std::vector{at("c")});
    app.setKeepSessionWhileClosing(true);
    first.reset();
    second.reset();
    EXPECT_EQ(session(), "ab|c");
    app.flush();
    // Another start reads it from the disk.
    AppModel again;
    ASSERT_EQ(again.storedSession(), app.storedSession());
    TabGroup restored(again, again.storedSession().windows.front());
    EXPECT_EQ(names(restored), "*ab");
}

TEST_F(SessionTest, aSnapshotBringsEveryPlaceBack) {
    const URL archive = folder.file("x.zip", "no archive, but a place all the same");
    const Location cases[] = {
        Location::folder(folder / "a"),
        Location::archive(archive, "inner/deep"),
        Location::smartFolder(SmartFolder::builtIns().front().id),
        Location::smartFolder(UUID::random()),
        Location::library(LibraryItem::images),
        Location::tag("Rot & Grün"),
        Location::source("Gmail"),
        Location::home(),
        Location::tags(),
    };
    for (const Location& location : cases) {
        SCOPED_TRACE(location.title());
        const WindowSnapshot snapshot{
            {{location, ViewMode::list}, {Location::folder(folder / "b"), ViewMode::grid}},
            1,
            false,
            true};
        const WindowModel window(app, snapshot);
        EXPECT_EQ(window.snapshot(), snapshot);
    }
}

TEST_F(SessionTest, comingBackDecidesNothingForTheFolder) {
    const ViewMode other =
        app.settings().defaultView == ViewMode::list ? ViewMode::grid : ViewMode::list;
    const WindowModel window(app, {{{Location::folder(folder / "a"), other}}, 0, true, false});
    EXPECT_EQ(window.active().viewMode(), other);
    EXPECT_EQ(app.viewPrefs(folder / "a"), std::nullopt);
}

TEST_F(SessionTest, aWindowHasOnePaneOrTwo) {
    const ViewMode other =
        app.settings().defaultView == ViewMode::list ? ViewMode::grid : ViewMode::list;
    WindowModel window(app, {{{Location::folder(folder / "a"), other}}, 0, true, false});
    EXPECT_FALSE(window.otherPane());
    window.setSplit(true);
    ASSERT_EQ(window.panes().size(), 2u);
    // The second begins where the first is, which goes on being the active one.
    EXPECT_EQ(window.activeIndex(), 0);
    EXPECT_EQ(window.otherPane()->location(), Location::folder(folder / "a"));
    EXPECT_EQ(window.otherPane()->viewMode(), other);
    window.setShowHidden(true);
    EXPECT_TRUE(window.active().showsHidden() && window.otherPane()->showsHidden());
    window.setActiveIndex(1);
    window.active().navigate(Location::folder(folder / "b"));
    EXPECT_EQ(window.title(), QStringLiteral("b"));
    window.setActiveIndex(2);
    EXPECT_EQ(window.activeIndex(), 1);
    // The active one stays.
    const QSignalSpy moves(&window, &WindowModel::activePaneChanged);
    window.setSplit(false);
    EXPECT_EQ(moves.count(), 1) << "it has another number now";
    EXPECT_EQ(window.active().location(), Location::folder(folder / "b"));
    EXPECT_EQ(window.activeIndex(), 0);
    // More than two were never stored by us.
    WindowSnapshot odd = at("a");
    odd.panes.resize(5, odd.panes.front());
    odd.activePane = 4;
    EXPECT_EQ(WindowModel(app, odd).panes().size(), 2u);
    odd.panes.clear();
    EXPECT_EQ(WindowModel(app, odd).active().location(), Location::folder(Paths::home()));
}

TEST_F(SessionTest, aWorkspaceOpensItsTabsBesideThoseThatAreOpen) {
    TabGroup group(app, {at("a"), at("d")});
    group.open(std::vector{at("b"), at("c")});
    EXPECT_EQ(names(group), "a*bcd");
    group.open(std::vector<WindowSnapshot>());
    EXPECT_EQ(names(group), "a*bcd");
}

TEST_F(SessionTest, theSidebarIsShownOrHiddenForAllTabs) {
    TabGroup group(app, {at("a"), at("b")});
    group.tab(1).setSidebarVisible(false);
    EXPECT_FALSE(group.tab(0).sidebarVisible());
    EXPECT_FALSE(group.open(at("c")).sidebarVisible());
    TabGroup other(app, {at("d")});
    other.add(group.take(1));
    EXPECT_TRUE(other.tab(1).sidebarVisible());
    group.tab(0).setSidebarVisible(true);
    group.tab(0).setSidebarVisible(false);
    EXPECT_TRUE(other.tab(1).sidebarVisible());
}

TEST_F(SessionTest, sizesAreKeptWithTheSession) {
    TabGroup first(app, {at("a"), at("b")});
    TabGroup second(app, {at("c")});
    second.setLayout({640, 480, false, 250, 300, 0});
    first.setLayout({1000, 700, true, 210, 0, 0});
    first.setCurrent(1);
    app.flush();
    AppModel again;
    EXPECT_EQ(again.storedLayouts(), (std::vector<WindowLayout>{{1000, 700, true, 210, 0, 1},
                                                                {640, 480, false, 250, 300, 0}}));
    EXPECT_EQ(again.lastLayout().width, 1000);
}

}  // namespace
}  // namespace tarn
