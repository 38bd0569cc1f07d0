// What one looks at stays where it is while rows come and go.
#include <filesystem>

#include <QtGui/QDropEvent>
#include <QtTest/QTest>
#include <QtWidgets/QScrollBar>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/FileMime.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/pane/PaneListView.h"
#include "Tarn/ui/pane/PaneWidget.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

class RowsInPlaceTest : public testing::Test {
protected:
    void open(ViewMode mode = ViewMode::list) {
        for (int i = 100; i < 300; ++i) folder.file("m" + std::to_string(i) + ".txt");
        model = std::make_unique<WindowModel>(app, Location::folder(folder.url()));
        pane().setViewMode(mode);
        widget = std::make_unique<PaneWidget>(*model, pane());
        widget->resize(900, 600);
        show(*widget);
        ASSERT_TRUE(waitFor([this] { return !pane().isLoading(); }));
    }
    PaneModel& pane() { return model->active(); }
    PaneView& view() { return *widget->view(); }
    int offset() { return view().verticalScrollBar()->value(); }
    void scroll(int to) { view().verticalScrollBar()->setValue(to); }
    /// Of a file in the viewport; absent when the pane does not have it.
    std::optional<int> top(const std::string& name) {
        const auto row = pane().items().row(folder / name);
        if (!row) return std::nullopt;
        return view().visualRect(pane().items().index(*row, 0)).top();
    }
    std::string first() { return pane().items().item(view().visibleRows()->first).name; }
    void waitForRows(int count) {
        ASSERT_TRUE(waitFor([&] { return pane().items().count() == count; }));
    }

    TestFolder folder;
    AppModel app;
    std::unique_ptr<WindowModel> model;
    std::unique_ptr<PaneWidget> widget;  ///< Goes before the model.
};

TEST_F(RowsInPlaceTest, newRowsAboveDoNotPushThoseInSight) {
    open();
    scroll(1003);
    pane().select({folder / "m290.txt"});  // A selection elsewhere pulls nothing there either.
    scroll(1003);
    const std::string before = first();
    const auto y = top(before);
    for (int i = 0; i < 7; ++i) folder.file("a" + std::to_string(i));
    waitForRows(207);
    EXPECT_EQ(first(), before);
    EXPECT_EQ(top(before), y);
    // Nor do rows that go, the first one in sight among them.
    const std::string second = pane().items().item(view().visibleRows()->first + 1).name;
    const auto secondY = top(second);
    for (int i = 0; i < 7; ++i)
        std::filesystem::remove((folder / ("a" + std::to_string(i))).path());
    std::filesystem::remove((folder / before).path());
    waitForRows(199);
    EXPECT_EQ(top(second), secondY);
}

TEST_F(RowsInPlaceTest, atTheTopOneSeesWhatComesUnlessOneAims) {
    open();
    folder.file("a0");
    waitForRows(201);
    EXPECT_EQ(first(), "a0");
    const QPoint point = view().visualRect(pane().items().index(4, 0)).center();
    const std::string aimed = pane().items().item(4).name;
    for (int i = 1; i < 4; ++i) folder.file("a" + std::to_string(i));
    int moves = 0;
    ASSERT_TRUE(waitFor([&] {
        QTest::mouseMove(view().viewport(), point + QPoint(++moves % 2, 0));
        return pane().items().count() == 204;
    }));
    EXPECT_EQ(view().indexAt(point).row(), 7);
    EXPECT_EQ(pane().items().item(7).name, aimed);
}

TEST_F(RowsInPlaceTest, anotherOrderKeepsNoRowInItsPlace) {
    open();
    scroll(1000);
    const std::string before = first();
    pane().sortBy(SortField::name);
    ASSERT_TRUE(waitFor([this] { return pane().items().item(0).name == "m299.txt"; }));
    EXPECT_EQ(offset(), 1000);
    EXPECT_NE(first(), before);
}

TEST_F(RowsInPlaceTest, theOtherViewBeginsWithTheSameRow) {
    open();
    scroll(1000);
    const std::string before = first();
    const auto isInSight = [&](const std::string& name) {
        const int row = *pane().items().row(folder / name);
        const auto rows = view().visibleRows();
        return rows->first <= row && row <= rows->last;
    };
    pane().setViewMode(ViewMode::grid);
    EXPECT_GT(offset(), 0);
    EXPECT_TRUE(isInSight(before));
    // The item that the keyboard is at goes before.
    const int last = view().visibleRows()->last;
    pane().select({pane().items().item(last).url});
    pane().setViewMode(ViewMode::list);
    EXPECT_TRUE(isInSight(pane().items().item(last).name));
}

TEST_F(RowsInPlaceTest, aHeadingStaysUnderThePointerThatFoldsItsGroup) {
    folder.file("a.jpg");
    open();
    for (int i = 0; i < 60; ++i) folder.file("z" + std::to_string(i) + ".zip");
    pane().setGroupBy(GroupField::kind);
    ASSERT_TRUE(waitFor([this] { return pane().groups().size() == 3; }));
    waitForRows(261);
    // The heading of the documents is the first thing in sight.
    scroll(*top("m100.txt") + offset() - 20);
    const QPoint heading(60, 10);
    ASSERT_FALSE(view().indexAt(heading).isValid());
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, heading);
    waitForRows(61);
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, heading);
    waitForRows(261);
    EXPECT_EQ(*top("m100.txt"), 20);
}

TEST_F(RowsInPlaceTest, resultsBeginAtTheirTopAndThePlaceComesBackAsItWas) {
    open();
    pane().setScope(SearchScopeSetting::currentFolder);
    scroll(1500);
    const std::string before = first();
    pane().setSearchText("m1");
    ASSERT_TRUE(waitFor([this] { return pane().showsResults() && !pane().isSearching(); }));
    EXPECT_EQ(offset(), 0);
    scroll(800);
    // Another question, another beginning; the same one again, none.
    pane().setSearchText("m2");
    ASSERT_TRUE(waitFor([this] { return first() == "m200.txt"; }));
    EXPECT_EQ(offset(), 0);
    scroll(700);
    const auto y = top("m240.txt");
    folder.file("m2.txt");
    pane().reload();
    waitForRows(101);
    EXPECT_EQ(top("m240.txt"), y);
    pane().clearSearch(false);
    // What has come meanwhile stands above.
    EXPECT_GT(offset(), 1500);
    EXPECT_EQ(first(), before);
}

TEST_F(RowsInPlaceTest, groupedResultsInSightStayWhileMoreCome) {
    open();
    pane().setGroupBy(GroupField::kind);
    pane().setScope(SearchScopeSetting::currentFolder);
    pane().setSearchText("m");
    ASSERT_TRUE(waitFor([this] { return pane().showsResults() && !pane().isLoading(); }));
    ASSERT_TRUE(waitFor([this] { return !pane().isSearching() && !pane().isLoading(); }));
    scroll(900);
    const std::string before = first();
    const auto y = top(before);
    folder.file("m.jpg");  // A group of its own, above.
    folder.file("m0.txt");
    ASSERT_TRUE(waitFor([this] { return pane().items().count() == 202; }));
    EXPECT_EQ(top(before), y);
}

TEST_F(RowsInPlaceTest, aDropGoesWhereItsLabelSaysWhateverComesMeanwhile) {
    TestFolder elsewhere;
    const URL file = elsewhere.file("from afar");
    folder.folder("first");
    folder.folder("second");
    open();
    const auto data = FileMime::makeDrag({file});
    const QPoint point = view().visualRect(pane().items().index(1, 0)).center();
    QDragEnterEvent enter(point, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view().viewport(), &enter);
    QDragMoveEvent move(point, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view().viewport(), &move);
    folder.folder("0 new");
    waitForRows(203);
    QDropEvent drop(point, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view().viewport(), &drop);
    EXPECT_TRUE(waitFor([this] { return folder.exists("second/from afar"); }));
}

}  // namespace
}  // namespace tarn
