#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QTabBar>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/home/StartTile.h"
#include "Tarn/ui/inspector/Inspector.h"
#include "Tarn/ui/onboarding/OnboardingSheet.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/pane/PaneWidget.h"
#include "Tarn/ui/path/CrumbButton.h"
#include "Tarn/ui/path/PathBar.h"
#include "Tarn/ui/quicklook/QuickLook.h"
#include "Tarn/ui/search/SearchField.h"
#include "Tarn/ui/sheets/HistorySheet.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/sheets/RenameWorkspaceSheet.h"
#include "Tarn/ui/sidebar/Sidebar.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/transfers/ToastView.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "Tarn/ui/window/PaneFrame.h"
#include "Tarn/ui/window/PaneHeader.h"
#include "Tarn/ui/window/SessionWindows.h"
#include "Tarn/ui/window/TabPage.h"
#include "Tarn/ui/window/TabStrip.h"
#include "TarnCore/files/Paths.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

class TabTest : public testing::Test {
protected:
    void SetUp() override {
        folder.file("one/first.txt");
        folder.folder("one/two");
        folder.file("two/second.txt");
        folder.file("two/third.txt");
        window = open("one");
        show(*window);
        settle();
    }
    void TearDown() override { delete window; }

    BrowserWindow* open(const char* name) {
        auto* opened =
            new BrowserWindow(std::make_unique<WindowModel>(app, Location::folder(folder / name)));
        opened->setAttribute(Qt::WA_DeleteOnClose, false);
        opened->resize(1100, 700);
        return opened;
    }
    TabGroup& group() { return window->group(); }
    WindowModel& model() { return window->model(); }
    void go(const char* name) {
        model().active().navigate(Location::folder(folder / name));
        settle();
    }
    void settle() {
        ASSERT_TRUE(waitFor(
            [this] { return !model().active().isLoading() && !model().active().isSearching(); }));
    }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* target = QApplication::focusWidget();
        QTest::keyClick(target ? target : window, static_cast<Qt::Key>(key), modifiers);
    }
    template <class Part>
    Part& part() {
        return *window->findChild<Part*>();
    }
    QTabBar& bar() { return part<QTabBar>(); }
    /// One that came about beside ours.
    BrowserWindow* otherWindow() {
        for (QWidget* one : QApplication::topLevelWidgets())
            if (auto* browser = qobject_cast<BrowserWindow*>(one); browser && browser != window)
                return browser;
        return nullptr;
    }
    URL shownPath() { return part<PathBar>().location(); }
    bool hasKeyboard(PaneFrame& frame) {
        return frame.isAncestorOf(QApplication::focusWidget()) ||
               QApplication::focusWidget() == &frame;
    }

    TestFolder folder;
    AppModel app;
    BrowserWindow* window = nullptr;
};

TEST_F(TabTest, theInspectorFollowsTheActivePane) {
    model().setShowsInspector(true);
    EXPECT_TRUE(part<Inspector>().isVisible());
    model().active().select({folder / "one/first.txt"});
    EXPECT_TRUE(waitFor([this] { return part<Inspector>().title() == "first.txt"; }));
    model().setSplit(true);
    model().setActiveIndex(1);
    go("two");
    model().active().select({folder / "two/third.txt"});
    EXPECT_TRUE(waitFor([this] { return part<Inspector>().title() == "third.txt"; }));
    model().setActiveIndex(0);
    EXPECT_TRUE(waitFor([this] { return part<Inspector>().title() == "first.txt"; }));
    window->resize(Metrics::inspectorFolds - 1, 700);
    EXPECT_TRUE(part<Inspector>().isVisible());
    EXPECT_FALSE(part<Sidebar>().isVisible());
    window->resize(Metrics::contentMinimum + Metrics::inspectorMinimum - 1, 700);
    EXPECT_FALSE(part<Inspector>().isVisible());
}

TEST_F(TabTest, theSpaceBarLooksAtWhatIsSelectedInTheTabInFront) {
    model().active().select({folder / "one/first.txt"});
    window->page().active().rows().enter();
    press(Qt::Key_Space);
    EXPECT_TRUE(waitFor([this] { return part<QuickLook>().isOpen(); }));
    EXPECT_EQ(part<QuickLook>().title(), "first.txt");
    press(Qt::Key_Space);
    EXPECT_FALSE(part<QuickLook>().isOpen());
    press(Qt::Key_Space);
    EXPECT_TRUE(waitFor([this] { return part<QuickLook>().isOpen(); }));
    group().open({{{Location::folder(folder / "two"), std::nullopt}}, 0, true, false});
    EXPECT_FALSE(part<QuickLook>().isOpen());
}

TEST_F(TabTest, keysOpenCloseAndReopenTabs) {
    EXPECT_FALSE(part<TabStrip>().isVisible());
    press(Qt::Key_T, Qt::ControlModifier);
    ASSERT_EQ(group().count(), 2);
    EXPECT_TRUE(part<TabStrip>().isVisible());
    EXPECT_EQ(group().currentIndex(), 1);
    EXPECT_TRUE(hasKeyboard(window->page().active()));
    go("two");
    EXPECT_EQ(bar().tabText(1), QStringLiteral("two"));
    EXPECT_EQ(shownPath(), folder / "two");
    press(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(group().currentIndex(), 0);
    EXPECT_EQ(bar().currentIndex(), 0);
    EXPECT_EQ(shownPath(), folder / "one");
    EXPECT_EQ(window->windowTitle(), QStringLiteral("one"));
    press(Qt::Key_2, Qt::AltModifier);
    EXPECT_EQ(shownPath(), folder / "two");
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(group().count(), 1);
    EXPECT_FALSE(part<TabStrip>().isVisible());
    EXPECT_EQ(shownPath(), folder / "one");
    EXPECT_TRUE(hasKeyboard(window->page().active()));
    press(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_EQ(group().count(), 2);
    EXPECT_EQ(shownPath(), folder / "two");
    press(Qt::Key_W, Qt::ControlModifier);
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(TabTest, placesOpenInTabsBehindThisOne) {
    PaneView& rows = *window->page().active().rows().view();
    const auto middleClick = [](QWidget& on, const QRect& at) {
        QTest::mouseClick(&on, Qt::MiddleButton, Qt::NoModifier, at.center());
    };
    const auto rowOf = [&](const char* name) {
        const auto row = model().active().items().row(folder / name);
        return rows.visualRect(model().active().items().index(row.value_or(0), 0));
    };
    const auto newest = [this] {
        return group().tab(group().currentIndex() + 1).active().location();
    };
    middleClick(*rows.viewport(), rowOf("one/first.txt"));
    EXPECT_EQ(group().count(), 1) << "a file is no place";
    middleClick(*rows.viewport(), rowOf("one/two"));
    ASSERT_EQ(group().count(), 2);
    EXPECT_EQ(newest(), Location::folder(folder / "one/two"));
    EXPECT_EQ(model().active().location(), Location::folder(folder / "one"));

    model().active().select({folder / "one/first.txt", folder / "one/two"});
    rows.enter();
    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_EQ(group().count(), 3);
    EXPECT_EQ(newest(), Location::folder(folder / "one/two"));

    const auto crumbs = part<PathBar>().findChildren<CrumbButton*>();
    middleClick(*crumbs.front(), crumbs.front()->rect());
    ASSERT_EQ(group().count(), 4);
    EXPECT_NE(newest(), model().active().location());
    EXPECT_TRUE((folder / "one").isInside(newest().url));

    auto& sidebar = part<Sidebar>();
    const SidebarModel& places = sidebar.model();
    for (int i = 0; i < places.rowCount(); ++i) {
        if (places.row(i).location != Location::folder(Paths::home())) continue;
        middleClick(*sidebar.viewport(), sidebar.visualRect(places.index(i)));
    }
    ASSERT_EQ(group().count(), 5);
    EXPECT_EQ(newest(), Location::folder(Paths::home()));
    EXPECT_EQ(group().currentIndex(), 0);
}

TEST_F(TabTest, theBarStandsForTheGroup) {
    group().open(model().snapshot());
    go("two");
    group().open(model().snapshot());
    ASSERT_EQ(bar().count(), 3);
    EXPECT_EQ(bar().tabText(1), QStringLiteral("two"));
    // Of one name at two places, they say where those are.
    go("one/two");
    EXPECT_EQ(bar().tabText(2), QStringLiteral("two — one"));
    EXPECT_NE(bar().tabText(1), QStringLiteral("two"));
    go("two");
    QTest::mouseClick(&bar(), Qt::LeftButton, {}, bar().tabRect(0).center());
    EXPECT_EQ(group().currentIndex(), 0);
    WindowModel* const first = &model();
    bar().moveTab(0, 2);
    EXPECT_EQ(group().indexOf(*first), 2);
    EXPECT_EQ(group().current(), first);
    group().move(2, 1);
    EXPECT_EQ(bar().currentIndex(), 1);
    QTest::mouseClick(&bar(), Qt::MiddleButton, {}, bar().tabRect(1).center());
    EXPECT_EQ(group().indexOf(*group().current()), group().currentIndex());
    ASSERT_EQ(group().count(), 2);
    auto* close = qobject_cast<QAbstractButton*>(bar().tabButton(0, QTabBar::RightSide));
    ASSERT_TRUE(close);
    close->click();
    EXPECT_EQ(group().count(), 1);
    EXPECT_EQ(shownPath(), folder / "two");
}

TEST_F(TabTest, eachTabKeepsItsSearch) {
    auto& field = part<SearchField>();
    press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("first"));
    press(Qt::Key_T, Qt::ControlModifier);
    EXPECT_EQ(field.text(), QString());
    press(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(field.text(), QStringLiteral("first"));
    settle();
    ASSERT_TRUE(waitFor([this] { return model().active().showsResults(); }));
    group().showNext();
    EXPECT_FALSE(model().active().query());
    // Esc is for the tab that is in front.
    press(Qt::Key_Escape);
    EXPECT_TRUE(group().tab(0).active().query());
}

TEST_F(TabTest, twoPanesStandBesideEachOther) {
    press(Qt::Key_F3);
    ASSERT_TRUE(model().isSplit());
    settle();
    auto frame = [this](std::size_t i) -> PaneFrame& { return *window->page().frames()[i]; };
    ASSERT_EQ(window->page().frames().size(), 2u);
    EXPECT_EQ(frame(1).pane().location(), Location::folder(folder / "one"));
    EXPECT_TRUE(hasKeyboard(frame(0)));
    EXPECT_TRUE(frame(0).findChild<PaneHeader*>()->isActive());
    press(Qt::Key_Tab);
    EXPECT_EQ(model().activeIndex(), 1);
    EXPECT_TRUE(hasKeyboard(frame(1)));
    EXPECT_FALSE(frame(0).findChild<PaneHeader*>()->isActive());
    go("two");
    EXPECT_EQ(shownPath(), folder / "two");
    EXPECT_EQ(frame(0).pane().location(), Location::folder(folder / "one"));
    QTest::mouseClick(frame(0).rows().view()->viewport(), Qt::LeftButton);
    EXPECT_EQ(model().activeIndex(), 0);
    EXPECT_EQ(shownPath(), folder / "one");
    // A pane without rows can be reached all the same.
    frame(1).pane().navigate(Location::folder(folder.folder("empty")));
    ASSERT_TRUE(waitFor([&] { return !frame(1).pane().isLoading(); }));
    press(Qt::Key_Tab);
    EXPECT_EQ(model().activeIndex(), 1);
    EXPECT_TRUE(hasKeyboard(frame(1)));
    press(Qt::Key_Tab);
    EXPECT_EQ(model().activeIndex(), 0);
    // Below each other where there is no room.
    window->resize(480, 700);
    EXPECT_TRUE(waitFor(
        [&] { return window->page().findChild<QSplitter*>()->orientation() == Qt::Vertical; }));
    press(Qt::Key_Tab);
    press(Qt::Key_F3);
    ASSERT_EQ(window->page().frames().size(), 1u);
    EXPECT_EQ(shownPath(), folder / "empty");
    EXPECT_FALSE(frame(0).findChild<PaneHeader*>()->isVisible());
}

TEST_F(TabTest, theButtonOfAPaneClosesThatOne) {
    model().setSplit(true);
    window->page().frames()[1]->pane().navigate(Location::folder(folder / "two"));
    auto* close =
        window->page().frames()[0]->findChild<PaneHeader*>()->findChild<QAbstractButton*>();
    QTest::mouseClick(close, Qt::LeftButton);
    ASSERT_TRUE(waitFor([this] { return !model().isSplit(); }));
    EXPECT_EQ(shownPath(), folder / "two");
}

TEST_F(TabTest, aSheetWaitsInItsTab) {
    group().open(model().snapshot(), false);
    model().setShowsHistory(true);
    auto& sheet = part<HistorySheet>();
    EXPECT_TRUE(sheet.isVisible());
    // The tabs stay in sight and can be clicked.
    QWidget* under = window->childAt(bar().mapTo(window, bar().tabRect(1).center()));
    EXPECT_TRUE(under == &bar());
    press(Qt::Key_PageDown, Qt::ControlModifier);
    ASSERT_EQ(group().currentIndex(), 1);
    EXPECT_FALSE(sheet.isVisible());
    EXPECT_TRUE(hasKeyboard(window->page().active()));
    press(Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_TRUE(sheet.isVisible());
    EXPECT_TRUE(sheet.isAncestorOf(QApplication::focusWidget()) ||
                QApplication::focusWidget() == &sheet);
    press(Qt::Key_Escape);
    EXPECT_FALSE(model().showsHistory());
    // It goes with its tab.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    model().setShowsHistory(true);
    EXPECT_TRUE(part<HistorySheet>().isVisible());
    group().close(0);
    EXPECT_FALSE(window->findChild<HistorySheet*>());
}

TEST_F(TabTest, aMessageWaitsInItsTab) {
    group().open(model().snapshot(), false);
    Toast told;
    told.message = "Copied";
    group().tab(1).showToast(told);
    for (const ToastView* toast : window->findChildren<ToastView*>())
        EXPECT_FALSE(toast->isVisible());
    group().setCurrent(1);
    int seen = 0;
    for (const ToastView* toast : window->findChildren<ToastView*>()) {
        if (!toast->isVisible()) continue;
        ++seen;
        EXPECT_GT(toast->timeLeft(), 0);
    }
    EXPECT_EQ(seen, 1);
}

TEST_F(TabTest, aTabBecomesAWindowAndBack) {
    group().open(model().snapshot());
    go("two");
    emit part<TabStrip>().detachPressed(1);
    ASSERT_EQ(app.groups().size(), 2u);
    EXPECT_EQ(group().count(), 1);
    EXPECT_EQ(shownPath(), folder / "one");
    BrowserWindow* other = otherWindow();
    ASSERT_TRUE(other);
    EXPECT_EQ(other->model().active().location(), Location::folder(folder / "two"));
    delete other;
    EXPECT_EQ(app.groups().size(), 1u);
}

TEST_F(TabTest, aTabThatIsDraggedAwayBecomesAWindow) {
    group().open(model().snapshot());
    go("two");
    const QPoint from = bar().tabRect(1).center();
    const auto dragTo = [&](const QPoint& to) {
        QTest::mousePress(&bar(), Qt::LeftButton, {}, from);
        QTest::mouseMove(&bar(), to);
        QTest::mouseRelease(&bar(), Qt::LeftButton, {}, to);
        QCoreApplication::processEvents();
    };
    dragTo(from + QPoint(0, 40));
    EXPECT_EQ(group().count(), 2) << "a hand is not that steady";
    dragTo(from + QPoint(0, 200));
    ASSERT_EQ(app.groups().size(), 2u);
    EXPECT_EQ(group().count(), 1);
    EXPECT_EQ(shownPath(), folder / "one");
    delete otherWindow();
}

TEST_F(TabTest, theNextStartFindsTheWindowsAsTheyWere) {
    group().open(model().snapshot());
    go("two");
    model().setSplit(true);
    model().setActiveIndex(1);
    model().active().navigate(Location::home());
    group().setCurrent(0);
    // No larger than the screen.
    window->resize(780, 640);
    BrowserWindow* second = open("two");
    show(*second);
    second->resize(700, 500);
    // Sizes are remembered when they have come to rest.
    ASSERT_TRUE(waitFor([this] {
        const auto layouts = app.storedLayouts();
        return layouts.size() == 2 && layouts[0].width == 780 && layouts[1].width == 700;
    }));
    app.setKeepSessionWhileClosing(true);
    delete second;
    delete window;
    window = nullptr;
    app.flush();

    AppModel again;
    window = SessionWindows::restore(again);
    ASSERT_TRUE(window);
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    ASSERT_EQ(again.groups().size(), 2u);
    EXPECT_EQ(window->size(), QSize(780, 640));
    ASSERT_EQ(group().count(), 2);
    EXPECT_EQ(group().currentIndex(), 0);
    EXPECT_EQ(group().tab(0).active().location(), Location::folder(folder / "one"));
    ASSERT_TRUE(group().tab(1).isSplit());
    EXPECT_EQ(group().tab(1).activeIndex(), 1);
    EXPECT_EQ(group().tab(1).active().location(), Location::home());
    EXPECT_EQ(again.storedSession(), app.storedSession());
    std::vector<BrowserWindow*> restored;
    for (QWidget* one : QApplication::topLevelWidgets())
        if (auto* browser = qobject_cast<BrowserWindow*>(one)) restored.push_back(browser);
    EXPECT_EQ(restored.size(), 2u);
    for (BrowserWindow* one : restored) delete one;
    window = nullptr;
}

TEST_F(TabTest, theStartScreenSearches) {
    model().active().navigate(Location::home());
    auto* field = window->page().active().findChild<QLineEdit*>();
    ASSERT_TRUE(field);
    ASSERT_TRUE(waitFor([&] { return field->hasFocus(); }));
    QTest::keyClicks(field, QStringLiteral("sec"));
    ASSERT_TRUE(waitFor([this] { return model().active().query().has_value(); }));
    // What is typed on goes into the field of the window, behind what is there.
    press(Qt::Key_O);
    press(Qt::Key_N);
    EXPECT_EQ(part<SearchField>().text(), QStringLiteral("secon"));
    press(Qt::Key_Escape);
    EXPECT_EQ(field->text(), QString());
    EXPECT_TRUE(field->isVisible());
}

TEST_F(TabTest, workspacesAreOpenedRenamedAndDeletedOnTheStartScreen) {
    UserLists& lists = app.lists();
    const UUID id = lists.saveWorkspace("Taxes", {model().snapshot(), model().snapshot()});
    const UUID other = lists.saveWorkspace("Garden", {model().snapshot()});
    model().active().navigate(Location::home());
    const auto tile = [this](const char* name) -> StartTile* {
        for (auto* one : window->page().active().findChildren<StartTile*>())
            if (one->isVisible() && one->text() == QString::fromUtf8(name)) return one;
        return nullptr;
    };
    ASSERT_TRUE(waitFor([&] { return tile("Taxes") != nullptr; }));
    tile("Taxes")->setFocus();
    press(Qt::Key_F2);
    auto* sheet = window->findChild<RenameWorkspaceSheet*>();
    ASSERT_TRUE(sheet);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("garden"));
    press(Qt::Key_Return);
    EXPECT_TRUE(sheet->isVisible()) << "the other one is called so";
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral(" shed"));
    press(Qt::Key_Return);
    EXPECT_EQ(lists.workspace(id)->name, "garden shed");
    ASSERT_TRUE(tile("garden shed"));
    const int before = group().count();
    tile("garden shed")->click();
    EXPECT_EQ(group().count(), before + 2);

    group().setCurrent(0);
    tile("Garden")->setFocus();
    press(Qt::Key_Delete);
    press(Qt::Key_Return);
    EXPECT_TRUE(lists.workspace(other)) << "the harmless answer";
    tile("Garden")->setFocus();
    press(Qt::Key_Delete);
    part<QuestionSheet>().yes()->click();
    EXPECT_FALSE(lists.workspace(other));
    EXPECT_FALSE(tile("Garden"));
    lists.removeWorkspace(id);
}

TEST_F(TabTest, onboardingGoesOnWhereItWasLeft) {
    auto* sheet = new OnboardingSheet(app, *window);
    sheet->open();
    EXPECT_EQ(sheet->page(), 0);
    sheet->next()->click();
    EXPECT_EQ(app.settings().onboardingPage, 1);
    delete sheet;
    EXPECT_FALSE(app.settings().hasOnboarded);
    sheet = new OnboardingSheet(app, *window);
    sheet->open();
    EXPECT_EQ(sheet->page(), 1);
    while (sheet->page() + 1 < sheet->pageCount()) sheet->next()->click();
    sheet->next()->click();
    EXPECT_TRUE(app.settings().hasOnboarded);
    EXPECT_EQ(app.settings().onboardingPage, 0);
    EXPECT_FALSE(sheet->isVisible());
}

}  // namespace
}  // namespace tarn
