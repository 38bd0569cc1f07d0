#include <filesystem>
#include <fstream>

#include <QtCore/QTimer>
#include <QtGui/QAccessible>
#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QToolButton>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/search/ChipRow.h"
#include "Tarn/ui/search/SearchField.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/sidebar/Sidebar.h"
#include "Tarn/ui/states/StatePage.h"
#include "Tarn/ui/states/StatusPill.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "Tarn/ui/window/TabPage.h"
#include "TarnCore/files/Paths.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

class WindowTest : public testing::Test {
protected:
    void SetUp() override {
        folder.file("alpha.txt", "12345");
        folder.file("Beta.pdf", "1");
        folder.file("beta two.pdf", "123");
        folder.file("gamma.txt", "12");
        folder.file("inner/deep.txt");
        window =
            new BrowserWindow(std::make_unique<WindowModel>(app, Location::folder(folder.url())));
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->resize(1000, 700);
        show(*window);
        settle();
        pane().setViewMode(ViewMode::list);
        view()->setFocus();
    }
    void TearDown() override { delete window; }

    PaneModel& pane() { return window->model().active(); }
    PaneView* view() {
        return window->findChild<PaneView*>(pane().viewMode() == ViewMode::list
                                                ? QStringLiteral("paneList")
                                                : QStringLiteral("paneGrid"));
    }
    SearchField* search() { return window->findChild<SearchField*>(); }
    void settle() {
        ASSERT_TRUE(waitFor([this] { return !pane().isLoading() && !pane().isSearching(); }));
    }
    /// As a person would: to whatever has the keyboard.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* target = QApplication::focusWidget();
        QTest::keyClick(target ? target : window, key, modifiers);
    }
    void type(const char* text) {
        QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(text));
    }
    std::string current() {
        const QModelIndex index = pane().selection().currentIndex();
        return index.isValid() ? pane().items().item(index.row()).name : std::string();
    }
    std::vector<std::string> selected() {
        std::vector<std::string> names;
        for (const FileItem& item : pane().selectedItems()) names.push_back(item.name);
        return names;
    }
    QPoint middleOf(const char* name) {
        const auto row = pane().items().row(folder / name);
        return view()->visualRect(pane().items().index(row.value_or(-1), 0)).center();
    }
    using Names = std::vector<std::string>;

    TestFolder folder;
    AppModel app;
    BrowserWindow* window = nullptr;
};

TEST_F(WindowTest, lettersGoToTheFirstNameThatBeginsWithThem) {
    type("g");
    EXPECT_EQ(current(), "gamma.txt");
    press(Qt::Key_Home);  // Moving begins a new word.
    type("beta t");
    EXPECT_EQ(current(), "beta two.pdf");
    EXPECT_EQ(selected(), Names{"beta two.pdf"});
    press(Qt::Key_Home);
    // The same letter again goes on to the next.
    type("b");
    const std::string first = current();
    type("b");
    EXPECT_NE(current(), first);
    EXPECT_FALSE(pane().query());
}

TEST_F(WindowTest, theKeyboardGoesFromPartToPart) {
    window->model().setSplit(true);
    window->model().setActiveIndex(0);
    window->page().takeFocus();
    const auto part = [this] {
        const QWidget* focus = QApplication::focusWidget();
        if (focus == window->findChild<Sidebar*>()) return std::string("sidebar");
        if (search()->isAncestorOf(focus)) return std::string("search");
        if (!window->page().isAncestorOf(focus)) return std::string();
        return "pane " + std::to_string(window->model().activeIndex());
    };
    Names parts;
    for (int i = 0; i < 4; ++i) {
        press(Qt::Key_F6);
        parts.push_back(part());
    }
    EXPECT_EQ(parts, (Names{"pane 1", "sidebar", "search", "pane 0"}));
    press(Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_EQ(part(), "search");
}

TEST_F(WindowTest, theMenuOfWhatIsSelectedOpensByAKey) {
    pane().select({folder / "alpha.txt"});
    bool hasOpened = false;
    QTimer::singleShot(0, [&hasOpened] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        hasOpened = menu != nullptr;
        if (menu) menu->close();
    });
    press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(hasOpened);
    EXPECT_EQ(selected(), Names{"alpha.txt"});
}

TEST_F(WindowTest, whoeverGoesSomewhereHasTheKeyboardThere) {
    // As on the first start: a sheet comes before the window is active.
    BrowserWindow first(std::make_unique<WindowModel>(app, Location::home()));
    first.setAttribute(Qt::WA_DeleteOnClose, false);
    first.show();
    auto* sheet = new QuestionSheet({}, first);
    sheet->open(sheet->no());
    sheet->finish();
    EXPECT_TRUE(qobject_cast<const QLineEdit*>(first.focusWidget())) << "the field of the start";
    first.hide();
    window->activateWindow();
    ASSERT_TRUE(waitFor([this] { return window->isActiveWindow(); }));
    window->findChild<Sidebar*>()->setFocus();
    pane().navigate(Location::folder(folder / "inner"));
    EXPECT_TRUE(waitFor([this] { return view()->hasFocus(); })) << "from the sidebar";
    pane().navigate(Location::home());
    const QWidget* start = QApplication::focusWidget();
    ASSERT_TRUE(qobject_cast<const QLineEdit*>(start));
    std::ofstream(Paths::home().appending("alpha").path());
    type("alpha");
    ASSERT_TRUE(waitFor([this] { return pane().showsResults() && !pane().isSearching(); }));
    press(Qt::Key_Down);
    ASSERT_TRUE(view()->hasFocus());
    press(Qt::Key_Escape);
    EXPECT_FALSE(pane().query());
    EXPECT_EQ(QApplication::focusWidget(), start) << "from the results";
}

TEST_F(WindowTest, whereNothingIsSelectedAKeySelectsTheFirst) {
    const struct {
        Qt::Key key;
        const char* selected;
    } cases[] = {
        {Qt::Key_Down, "inner"}, {Qt::Key_Up, "inner"},       {Qt::Key_Home, "inner"},
        {Qt::Key_I, "inner"},    {Qt::Key_PageDown, "inner"}, {Qt::Key_End, "gamma.txt"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.key);
        pane().selection().clear();
        search()->setFocus();
        // Where it is marked, but not selected.
        view()->setFocus();
        press(c.key);
        EXPECT_EQ(selected(), Names{c.selected});
    }
}

TEST_F(WindowTest, shiftAndControlSelectSeveral) {
    for (const ViewMode mode : {ViewMode::list, ViewMode::grid}) {
        SCOPED_TRACE(mode == ViewMode::list ? "list" : "grid");
        pane().setViewMode(mode);
        view()->setFocus();
        press(Qt::Key_Home);
        press(Qt::Key_End, Qt::ShiftModifier);
        EXPECT_EQ(selected().size(), 5u);
        press(Qt::Key_Home);
        EXPECT_EQ(selected(), Names{"inner"});
        press(Qt::Key_A, Qt::ControlModifier);
        EXPECT_EQ(selected().size(), 5u);
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, {}, middleOf("alpha.txt"));
        EXPECT_EQ(selected(), Names{"alpha.txt"});
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, Qt::ControlModifier,
                          middleOf("gamma.txt"));
        EXPECT_EQ(selected(), (Names{"alpha.txt", "gamma.txt"}));
        // From the row that was clicked last to this one.
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, {}, middleOf("gamma.txt"));
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, Qt::ShiftModifier,
                          middleOf("Beta.pdf"));
        EXPECT_EQ(selected(), (Names{"Beta.pdf", "gamma.txt"}));
    }
}

TEST_F(WindowTest, aNarrowWindowFoldsTheSidebar) {
    auto* sidebar = window->findChild<Sidebar*>();
    EXPECT_TRUE(sidebar->isVisible());
    window->resize(Metrics::sidebarFolds - 1, 600);
    EXPECT_TRUE(waitFor([&] { return !sidebar->isVisible(); }));
    press(Qt::Key_F9);
    EXPECT_TRUE(sidebar->isVisible());
    press(Qt::Key_F9);
    EXPECT_FALSE(sidebar->isVisible());
    window->resize(1000, 600);
    EXPECT_TRUE(waitFor([&] { return sidebar->isVisible(); }));
}

TEST_F(WindowTest, rowsReadTheirNameAndKind) {
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(view());
    ASSERT_TRUE(list);
    EXPECT_EQ(list->role(), QAccessible::List);
    ASSERT_EQ(list->childCount(), 5);
    pane().select({folder / "alpha.txt"});
    QAccessibleInterface* row = list->child(1);
    EXPECT_EQ(row->role(), QAccessible::ListItem);
    EXPECT_TRUE(row->text(QAccessible::Name).startsWith(QStringLiteral("alpha.txt, ")));
    EXPECT_EQ(row->text(QAccessible::Description), QStringLiteral("2 of 5"));
    EXPECT_TRUE(row->state().selected);
    EXPECT_FALSE(list->child(0)->state().selected);
    EXPECT_EQ(list->indexOfChild(row), 1);
    const QRect rect = row->rect();
    EXPECT_EQ(list->childAt(rect.center().x(), rect.center().y()), row);
    for (QToolButton* button : window->findChildren<QToolButton*>()) {
        if (!button->isVisible()) continue;
        QAccessibleInterface* control = QAccessible::queryAccessibleInterface(button);
        EXPECT_FALSE(control->text(QAccessible::Name).isEmpty())
            << qPrintable(button->objectName());
    }
}

TEST_F(WindowTest, everyStateShowsItsPage) {
    auto* page = window->findChild<StatePage*>();
    ASSERT_TRUE(page);
    EXPECT_FALSE(page->isVisible());
    pane().setSearchText("zebra");
    ASSERT_TRUE(waitFor([&] { return page->isVisible(); }));
    EXPECT_EQ(page->content().title, QStringLiteral("No Results"));
    EXPECT_FALSE(page->content().action.isEmpty());
    pane().navigate(Location::folder(folder.folder("nothing")));
    ASSERT_TRUE(
        waitFor([&] { return page->content().title == QStringLiteral("Folder Is Empty"); }));
    pane().navigate(Location::folder(folder / "gone"));
    ASSERT_TRUE(
        waitFor([&] { return page->content().title == QStringLiteral("Folder Not Found"); }));
    EXPECT_EQ(page->content().sentence, QStringLiteral("“gone” doesn’t exist any more."));
    pane().navigate(Location::folder(folder.url()));
    ASSERT_TRUE(waitFor([&] { return !page->isVisible(); }));
}

TEST_F(WindowTest, whereNothingWasFoundAWiderPlaceIsOffered) {
    auto* page = window->findChild<StatePage*>();
    ASSERT_TRUE(page);
    const Location here = Location::folder(folder.url());
    const struct {
        const char* name;
        Location place;
        SearchScopeSetting scope;
        const char* action;
    } cases[] = {
        {"folder", here, SearchScopeSetting::currentFolder, "Search Home"},
        {"home folder", Location::folder(Paths::home()), SearchScopeSetting::currentFolder,
         "Search This Computer"},
        {"home, from a folder", here, SearchScopeSetting::home, "Search This Computer"},
        {"start", Location::home(), SearchScopeSetting::currentFolder, "Search This Computer"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        pane().navigate(c.place);
        settle();
        pane().setScope(c.scope);
        pane().setSearchText("zebra");
        ASSERT_TRUE(waitFor([&] { return page->isVisible() && !pane().isSearching(); }));
        EXPECT_EQ(page->content().title, QStringLiteral("No Results"));
        EXPECT_EQ(page->content().action, QLatin1String(c.action));
        pane().clearSearch(false);
        ASSERT_TRUE(waitFor([&] { return !pane().query(); }));
    }
}

TEST_F(WindowTest, theStatusCountsWhatIsShownAndSelected) {
    auto* pill = window->findChild<StatusPill*>();
    EXPECT_EQ(pill->text(), QStringLiteral("5 items"));
    pane().select({folder / "alpha.txt", folder / "gamma.txt"});
    EXPECT_EQ(pill->text(), QStringLiteral("2 of 5 items selected · 7 bytes"));
    pane().setSearchText("beta");
    ASSERT_TRUE(waitFor([this] { return pane().showsResults() && !pane().isSearching(); }));
    EXPECT_TRUE(pill->text().startsWith(QStringLiteral("2 results · searched ")))
        << qPrintable(pill->text());
}

TEST_F(WindowTest, manyRowsAreShownWithoutLosingThePlace) {
    for (int i = 0; i < 400; ++i) folder.file("row " + std::to_string(1000 + i));
    ASSERT_TRUE(waitFor([this] { return pane().items().count() == 405; }));
    for (const ViewMode mode : {ViewMode::list, ViewMode::grid}) {
        pane().setViewMode(mode);
        view()->setFocus();
        press(Qt::Key_Home);
        press(Qt::Key_PageDown);
        press(Qt::Key_End);
        const std::string last = pane().items().item(pane().items().count() - 1).name;
        EXPECT_EQ(current(), last);
        EXPECT_TRUE(
            view()->viewport()->rect().contains(view()->visualRect(view()->currentIndex())));
        EXPECT_GT(view()->verticalScrollBar()->value(), 0);
        const int before = view()->verticalScrollBar()->value();
        folder.file(mode == ViewMode::list ? "zz 1" : "zz 2");
        const int count = pane().items().count();
        ASSERT_TRUE(waitFor([&] { return pane().items().count() > count; }));
        EXPECT_EQ(view()->verticalScrollBar()->value(), before);
        EXPECT_EQ(current(), last);
    }
}

}  // namespace
}  // namespace tarn
