// Groups, unfolded folders and filters of a pane's rows.
#include <filesystem>
#include <functional>

#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/PaneModel.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

class PaneArrangementTest : public testing::Test {
protected:
    void open(const URL& to) {
        pane.navigate(Location::folder(to));
        waitFor([this] { return !pane.isLoading(); });
    }
    static void waitFor(const std::function<bool()>& condition) {
        ASSERT_TRUE(QTest::qWaitFor(condition, 10'000));
    }
    /// Names, each moved on by a blank for every folder it lies in; headings in brackets.
    std::vector<std::string> shown() const {
        std::vector<std::string> lines;
        const PaneRows& rows = *pane.items().rows();
        std::size_t group = 0;
        const auto addHeadings = [&](std::size_t row) {
            for (; group < rows.groups().size() && rows.groups()[group].first <= row; ++group)
                lines.push_back("[" + rows.groups()[group].title + " " +
                                std::to_string(rows.groups()[group].itemCount) + "]");
        };
        for (std::size_t row = 0; row < rows.size(); ++row) {
            addHeadings(row);
            lines.push_back(std::string(rows.depth(row), ' ') + rows.item(row).name);
        }
        addHeadings(rows.size());
        return lines;
    }
    void waitForRows(const std::vector<std::string>& lines) {
        (void)QTest::qWaitFor([&] { return shown() == lines; }, 10'000);
        EXPECT_EQ(shown(), lines);
    }

    TestFolder folder;
    AppModel app;
    PaneModel pane{app, false};
};

TEST_F(PaneArrangementTest, groupsKeepTheOrderInsideAndAreRemembered) {
    folder.file("b.txt");
    folder.file("a.jpg");
    folder.file("c.jpg");
    const URL inner = folder.folder("inner");
    open(folder.url());
    pane.select({folder / "c.jpg"});
    pane.setGroupBy(GroupField::kind);
    waitForRows({"[Folders 1]", "inner", "[Images 2]", "a.jpg", "c.jpg", "[Documents 1]", "b.txt"});
    EXPECT_EQ(pane.selectedItems().front().name, "c.jpg");
    open(inner);
    EXPECT_EQ(pane.groupBy(), GroupField::none);
    pane.goBack();
    waitForRows({"[Folders 1]", "inner", "[Images 2]", "a.jpg", "c.jpg", "[Documents 1]", "b.txt"});
    waitFor([this] { return !pane.isLoading(); });
    // What changes on the disk, and the order, go through the groups.
    folder.file("d.jpg");
    pane.sortBy(SortField::name);
    waitForRows({"[Folders 1]", "inner", "[Images 3]", "d.jpg", "c.jpg", "a.jpg", "[Documents 1]",
                 "b.txt"});
    EXPECT_EQ(app.viewPrefs(folder.url())->groupBy, GroupField::kind);
    pane.setGroupBy(GroupField::none);
    waitForRows({"inner", "d.jpg", "c.jpg", "b.txt", "a.jpg"});
    EXPECT_EQ(app.viewPrefs(folder.url())->groupBy, std::nullopt);
}

TEST_F(PaneArrangementTest, aFoldedGroupShowsItsHeadingOnly) {
    folder.file("a.jpg");
    folder.file("b.txt");
    folder.file("c.txt");
    open(folder.url());
    pane.setGroupBy(GroupField::kind);
    pane.setGroupFolded("Documents", true);
    waitForRows({"[Images 1]", "a.jpg", "[Documents 2]"});
    folder.file("d.txt");
    waitForRows({"[Images 1]", "a.jpg", "[Documents 3]"});
    pane.setGroupFolded("Images", true);
    waitForRows({"[Images 1]", "[Documents 3]"});
    EXPECT_FALSE(pane.groups().empty());
    pane.setGroupFolded("Documents", false);
    waitForRows({"[Images 1]", "[Documents 3]", "b.txt", "c.txt", "d.txt"});
}

TEST_F(PaneArrangementTest, resultsAreGroupedTheBestFirstInEach) {
    folder.file("big pear.jpg");
    folder.file("pear.jpg");
    folder.file("pear.txt");
    folder.file("plum.txt");
    open(folder.url());
    pane.setGroupBy(GroupField::kind);
    waitFor([this] { return !pane.isLoading(); });
    pane.setScope(SearchScopeSetting::currentFolder);
    pane.setSearchText("pear");
    waitForRows({"[Images 2]", "pear.jpg", "big pear.jpg", "[Documents 1]", "pear.txt"});
    EXPECT_TRUE(pane.isRanked());
    pane.setGroupFolded("Images", true);
    waitForRows({"[Images 2]", "[Documents 1]", "pear.txt"});
    pane.setGroupFolded("Images", false);
    pane.sortBy(SortField::name);  // It was by name: now the other way round.
    waitForRows({"[Images 2]", "pear.jpg", "big pear.jpg", "[Documents 1]", "pear.txt"});
    pane.sortBy(SortField::name);
    waitForRows({"[Images 2]", "big pear.jpg", "pear.jpg", "[Documents 1]", "pear.txt"});
    pane.setGroupBy(GroupField::none);
    waitForRows({"big pear.jpg", "pear.jpg", "pear.txt"});
    pane.clearSearch(false);
    waitForRows({"big pear.jpg", "pear.jpg", "pear.txt", "plum.txt"});
}

TEST_F(PaneArrangementTest, changesOfResultsWaitForTheNameThatIsEdited) {
    folder.file("pear 1");
    folder.file("pear 2");
    open(folder.url());
    pane.setScope(SearchScopeSetting::currentFolder);
    pane.setSearchText("pear");
    waitForRows({"pear 1", "pear 2"});
    waitFor([this] { return !pane.isSearching(); });
    pane.beginRename(folder / "pear 2");
    std::filesystem::remove((folder / "pear 1").path());
    pane.lookAgain({folder / "pear 1"});
    waitFor([this] { return pane.search().rows()->size() == 1; });
    EXPECT_EQ(shown(), (std::vector<std::string>{"pear 1", "pear 2"}));
    pane.endRename();
    EXPECT_EQ(shown(), std::vector<std::string>{"pear 2"});
}

TEST_F(PaneArrangementTest, theCloudFilterIsForResultsToo) {
    folder.file("pear.txt");
    open(folder.url());
    pane.setScope(SearchScopeSetting::currentFolder);
    pane.setCloudFilter(CloudFilter::cloudOnly);
    pane.setSearchText("pear");
    waitFor([this] { return pane.showsResults() && !pane.isSearching() && !pane.isLoading(); });
    EXPECT_EQ(shown(), std::vector<std::string>{});
    EXPECT_EQ(pane.search().rows()->size(), 1u);
    pane.setCloudFilter(CloudFilter::onThisMac);
    waitForRows({"pear.txt"});
}

TEST_F(PaneArrangementTest, unfoldedFoldersShowWhatIsInThemInTheOrderOfThePane) {
    folder.file("in/b");
    folder.file("in/a");
    folder.file("in/deep/z");
    folder.file("in/.hidden");
    folder.file("top");
    open(folder.url());
    pane.setViewMode(ViewMode::list);
    pane.loadChildren(folder / "in");
    waitForRows({"in", " deep", " a", " b", "top"});
    pane.loadChildren(folder / "in/deep");
    waitForRows({"in", " deep", "  z", " a", " b", "top"});
    EXPECT_EQ(pane.children(folder / "in")->size(), 3u);
    EXPECT_EQ(pane.treeChildren().size(), 2u);
    pane.sortBy(SortField::name);
    waitForRows({"in", " deep", "  z", " b", " a", "top"});
    pane.setShowsHidden(true);
    waitForRows({"in", " deep", "  z", " b", " a", " .hidden", "top"});
    // Folding the outer folder keeps the inner one unfolded for when it is back.
    pane.foldChildren(folder / "in");
    waitForRows({"in", "top"});
    EXPECT_EQ(pane.children(folder / "in"), nullptr);
    pane.loadChildren(folder / "in");
    waitForRows({"in", " deep", "  z", " b", " a", " .hidden", "top"});
    // A grid has no place for what is in folders.
    pane.setViewMode(ViewMode::grid);
    waitForRows({"in", "top"});
    pane.setViewMode(ViewMode::list);
    waitForRows({"in", " deep", "  z", " b", " a", " .hidden", "top"});
}

TEST_F(PaneArrangementTest, unfoldedFoldersFollowTheDiskAndAReload) {
    folder.file("in/a");
    folder.file("in/deep/z");
    open(folder.url());
    pane.setViewMode(ViewMode::list);
    pane.loadChildren(folder / "in");
    pane.loadChildren(folder / "in/deep");
    waitForRows({"in", " deep", "  z", " a"});
    pane.select({folder / "in/a"});
    folder.file("in/deep/y");
    waitForRows({"in", " deep", "  y", "  z", " a"});
    EXPECT_EQ(pane.selectedItems().front().name, "a");
    pane.reload();
    waitForRows({"in", " deep", "  y", "  z", " a"});
    std::filesystem::remove_all((folder / "in/deep").path());
    waitForRows({"in", " a"});
    EXPECT_FALSE(pane.isUnfolded(folder / "in/deep"));
    // Another place begins with everything folded.
    open(folder / "in");
    open(folder.url());
    waitForRows({"in"});
}

TEST_F(PaneArrangementTest, changesInAnUnfoldedFolderWaitForTheNameThatIsEdited) {
    folder.file("in/a");
    open(folder.url());
    pane.setViewMode(ViewMode::list);
    pane.loadChildren(folder / "in");
    waitForRows({"in", " a"});
    pane.beginRename(folder / "in/a");
    folder.file("in/0");
    QTest::qWait(600);  // The watch has told by now; nothing may come of it.
    EXPECT_EQ(shown(), (std::vector<std::string>{"in", " a"}));
    pane.endRename();
    waitForRows({"in", " 0", " a"});
}

TEST_F(PaneArrangementTest, aFolderThatLiesInItselfEndsSomewhere) {
    folder.link("loop", ".");
    open(folder.url());
    pane.setViewMode(ViewMode::list);
    URL inner = folder / "loop";
    for (int depth = 1; depth < 4; ++depth, inner = inner.appending("loop")) {
        pane.loadChildren(inner);
        waitFor([&] { return pane.items().count() == depth + 1; });
    }
}

TEST_F(PaneArrangementTest, theGroupsOfALargeFolderGrowAtTheirEnds) {
    for (int i = 0; i < 3300; ++i)
        folder.file("file " + std::to_string(i) + (i % 3 == 0 ? ".jpg" : ".txt"));
    app.setViewPrefs(folder.url(), {ViewMode::list, SortOrder{}, 96, GroupField::kind});
    std::vector<SharedRows> seen;
    QObject::connect(&pane, &PaneModel::rowsChanged, [&] {
        if (!pane.items().isEmpty()) seen.push_back(pane.items().rows());
    });
    open(folder.url());
    ASSERT_GE(seen.size(), 2u);
    EXPECT_LT(seen.front()->size(), 1000u);
    const PaneRows& all = *seen.back();
    ASSERT_EQ(all.groups().size(), 2u);
    EXPECT_EQ(all.groups()[0].itemCount, 1100u);
    EXPECT_EQ(all.groups()[1].first, 1100u);
    for (const SharedRows& part : seen) {
        ASSERT_EQ(part->groups().size(), 2u);
        for (std::size_t i = 0; i < 2; ++i) {
            EXPECT_EQ(part->groups()[i].title, all.groups()[i].title);
            for (std::uint32_t row = 0; row < part->groups()[i].itemCount; ++row)
                ASSERT_EQ(part->item(part->groups()[i].first + row).name,
                          all.item(all.groups()[i].first + row).name);
        }
    }
}

TEST_F(PaneArrangementTest, theCloudFilterAndThePlaceItBelongsTo) {
    folder.file("a");
    folder.folder("in");
    open(folder.url());
    pane.setCloudFilter(CloudFilter::cloudOnly);
    waitForRows({});
    pane.setCloudFilter(CloudFilter::onThisMac);
    waitForRows({"in", "a"});
    pane.setCloudFilter(CloudFilter::cloudOnly);
    waitForRows({});
    open(folder / "in");
    EXPECT_EQ(pane.cloudFilter(), CloudFilter::all);
}

}  // namespace
}  // namespace tarn
