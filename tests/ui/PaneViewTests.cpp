// Headings, unfolded folders and columns in the views of a pane, and its pages without rows.

#include <QtTest/QTest>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QScrollBar>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/pane/PaneListView.h"
#include "Tarn/ui/pane/PaneWidget.h"
#include "Tarn/ui/places/OverviewPage.h"
#include "Tarn/ui/states/StatePage.h"
#include "TarnCore/tags/TagStore.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

class PaneViewTest : public testing::Test {
protected:
    PaneViewTest() { root.folder("Home"); }
    /// Shows the place in a pane and waits until it is complete.
    void open(const Location& place, ViewMode view = ViewMode::list) {
        model = std::make_unique<WindowModel>(app, place);
        pane().setViewMode(view);
        widget = std::make_unique<PaneWidget>(*model, pane());
        widget->resize(900, 600);
        show(*widget);
        ASSERT_TRUE(waitFor([this] { return !pane().isLoading() && !pane().isSearching(); }));
    }
    PaneModel& pane() { return model->active(); }
    PaneListView& list() { return *widget->findChild<PaneListView*>(); }
    std::string current() {
        const int row = widget->view()->currentIndex().row();
        return row < 0 ? "" : pane().items().item(row).name;
    }
    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const FileItem& item : pane().items().rows()->items()) names.push_back(item.name);
        return names;
    }
    using Names = std::vector<std::string>;
    bool waitForNames(const Names& wanted) {
        return waitFor([&] { return names() == wanted; });
    }
    URL home() const { return root / "Home"; }

    TestFolder root;
    ScopedEnvironment isolation{{"TARN_ISOLATED_ROOT", root.url().path()}};
    AppModel app;
    std::unique_ptr<WindowModel> model;
    std::unique_ptr<PaneWidget> widget;  ///< Goes before the model.
};

TEST_F(PaneViewTest, rightAndLeftUnfoldAndFoldFolders) {
    root.file("Home/in/deep/z");
    root.file("Home/top");
    open(Location::folder(home()));
    widget->enter();
    EXPECT_EQ(current(), "in");
    QTest::keyClick(widget->view(), Qt::Key_Right);
    ASSERT_TRUE(waitForNames({"in", "deep", "top"}));
    QTest::keyClick(widget->view(), Qt::Key_Right);
    EXPECT_EQ(current(), "deep");
    QTest::keyClick(widget->view(), Qt::Key_Right);
    ASSERT_TRUE(waitForNames({"in", "deep", "z", "top"}));
    QTest::keyClick(widget->view(), Qt::Key_Down);
    EXPECT_EQ(current(), "z");
    QTest::keyClick(widget->view(), Qt::Key_Left);  // To the folder it lies in.
    EXPECT_EQ(current(), "deep");
    QTest::keyClick(widget->view(), Qt::Key_Left);
    ASSERT_TRUE(waitForNames({"in", "deep", "top"}));
    EXPECT_EQ(current(), "deep");
    QTest::keyClick(widget->view(), Qt::Key_Left);
    QTest::keyClick(widget->view(), Qt::Key_Left);
    ASSERT_TRUE(waitForNames({"in", "top"}));
    EXPECT_EQ(current(), "in");
}

TEST_F(PaneViewTest, aClickOnTheArrowUnfoldsAndSelectsNothing) {
    root.file("Home/in/a");
    open(Location::folder(home()));
    const QRect row = list().visualRect(pane().items().index(0, 0));
    const QPoint arrow(row.left() + list().header()->sectionPosition(0) + 14, row.center().y());
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, arrow);
    ASSERT_TRUE(waitForNames({"in", "a"}));
    EXPECT_FALSE(pane().hasSelection());
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, arrow);
    EXPECT_EQ(pane().location(), Location::folder(home()));
}

TEST_F(PaneViewTest, aClickOnAHeadingFoldsItsGroup) {
    root.file("Home/a.jpg");
    root.file("Home/b.txt");
    for (const ViewMode view : {ViewMode::list, ViewMode::grid}) {
        SCOPED_TRACE(view == ViewMode::list ? "list" : "grid");
        open(Location::folder(home()), view);
        pane().setGroupBy(GroupField::kind);
        ASSERT_TRUE(waitFor([this] { return pane().groups().size() == 2; }));
        PaneView& shown = *widget->view();
        const QRect first = shown.visualRect(pane().items().index(0, 0));
        const QPoint heading(60, first.top() - 15);
        EXPECT_FALSE(shown.indexAt(heading).isValid());
        QTest::mouseClick(shown.viewport(), Qt::LeftButton, {}, heading);
        ASSERT_TRUE(waitForNames({"b.txt"}));
        QTest::mouseClick(shown.viewport(), Qt::LeftButton, {}, heading);
        ASSERT_TRUE(waitForNames({"a.jpg", "b.txt"}));
        widget.reset();
    }
}

TEST_F(PaneViewTest, theViewStaysWhenAllGroupsAreFolded) {
    root.file("Home/a.jpg");
    open(Location::folder(home()));
    pane().setGroupBy(GroupField::kind);
    pane().setGroupFolded("Images", true);
    ASSERT_TRUE(waitForNames({}));
    EXPECT_TRUE(list().isVisible());
}

TEST_F(PaneViewTest, columnsAreChosenMovedAndKept) {
    root.file("Home/a");
    open(Location::folder(home()));
    QHeaderView& header = *list().header();
    const auto section = [](PaneColumn column) { return static_cast<int>(column); };
    EXPECT_TRUE(header.isSectionHidden(section(PaneColumn::created)));
    EXPECT_TRUE(header.isSectionHidden(section(PaneColumn::folder)));
    app.listColumns().setShown(PaneColumn::kind, false);
    app.listColumns().setShown(PaneColumn::tags, true);
    EXPECT_TRUE(header.isSectionHidden(section(PaneColumn::kind)));
    EXPECT_FALSE(header.isSectionHidden(section(PaneColumn::tags)));
    header.moveSection(header.visualIndex(section(PaneColumn::size)), 1);
    header.resizeSection(section(PaneColumn::size), 133);
    ASSERT_TRUE(
        waitFor([this] { return app.listColumns().column(PaneColumn::size).width == 133; }));
    EXPECT_EQ(app.listColumns().columns().front().which, PaneColumn::size);
    app.flush();
    ListColumns again;
    EXPECT_EQ(again.columns(), app.listColumns().columns());
    app.listColumns().reset();
    EXPECT_EQ(header.visualIndex(section(PaneColumn::name)), 0);
    EXPECT_FALSE(header.isSectionHidden(section(PaneColumn::kind)));
}

TEST_F(PaneViewTest, theListOfTagsCountsAndLeadsToThem) {
    const FinderTag work{"Arbeit", TagColor::blue};
    TagStore::setTags({work}, root.file("Home/a"));
    TagStore::setTags({work}, root.file("Home/b"));
    open(Location::tags());
    auto& page = *widget->findChild<OverviewPage*>();
    ASSERT_TRUE(waitFor([&] { return page.isVisible() && !pane().overview().isLoading(); }));
    const PlaceOverview& all = pane().overview();
    int row = 0;
    while (row < all.rowCount() && all.row(row).location != Location::tag("Arbeit")) ++row;
    ASSERT_LT(row, all.rowCount());
    EXPECT_EQ(row, 7);  // Behind the standard ones.
    EXPECT_EQ(all.row(row).count, 2);
    EXPECT_EQ(all.row(row).color, TagColor::blue);
    EXPECT_EQ(all.index(row).data(Qt::AccessibleTextRole).toString(), "Arbeit, 2 items");
    QTest::mouseClick(page.viewport(), Qt::LeftButton, {},
                      page.visualRect(all.index(row)).center());
    EXPECT_EQ(pane().location(), Location::tag("Arbeit"));
    ASSERT_TRUE(waitForNames({"a", "b"}));
    EXPECT_TRUE(widget->view()->isVisible());
}

}  // namespace
}  // namespace tarn
