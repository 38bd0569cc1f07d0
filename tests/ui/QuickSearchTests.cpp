#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListView>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/desktop/AppRequests.h"
#include "Tarn/ui/quicksearch/QuickSearch.h"
#include "Tarn/ui/quicksearch/QuickSearchPanel.h"
#include "Tarn/ui/search/ChipRow.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/files/Paths.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

/// A home folder of its own, and the panel over it.
class QuickSearchTest : public testing::Test {
protected:
    void SetUp() override {
        home.file("Home/Documents/Quarterly report.pdf", "x");
        home.file("Home/Documents/report notes.txt", "x");
        home.folder("Home/Documents/Reports");
        home.file("Home/.hidden report", "x");
    }
    void open() {
        search.open();
        ASSERT_TRUE(search.panel());
        ASSERT_TRUE(QTest::qWaitForWindowActive(search.panel()));
    }
    QuickSearchPanel& panel() { return *search.panel(); }
    QLineEdit& field() { return *panel().findChild<QLineEdit*>(); }
    QListView& list() { return *panel().findChild<QListView*>(); }
    void type(const char* text) { QTest::keyClicks(&field(), QString::fromUtf8(text)); }
    bool waitForResults(int count) {
        return waitFor([&] {
            return panel().pane().items().count() == count && !panel().pane().isSearching() &&
                   panel().pane().showsResults();
        });
    }
    std::string marked() { return panel().pane().items().item(list().currentIndex().row()).name; }
    void press(Qt::Key key, Qt::KeyboardModifiers held = {}) {
        QTest::keyClick(&field(), key, held);
    }

    TestFolder home;
    ScopedEnvironment isolation{{"TARN_ISOLATED_ROOT", home.url().path()}};
    AppModel app;
    QuickSearch search{app, QDBusConnection(QString()), nullptr};
    QSignalSpy places{&search, &QuickSearch::placeRequested};
    QSignalSpy files{&search, &QuickSearch::fileRequested};
};

TEST_F(QuickSearchTest, findsBelowTheHomeFolderWhileOneTypes) {
    open();
    EXPECT_FALSE(list().isVisible());
    type("report");
    ASSERT_TRUE(waitForResults(3));
    EXPECT_TRUE(list().isVisible());
    EXPECT_EQ(list().currentIndex().row(), 0);
    type(" pdfs");
    ASSERT_TRUE(waitForResults(1));
    EXPECT_EQ(marked(), "Quarterly report.pdf");
    const auto chips = panel().findChild<ChipRow*>()->chips();
    EXPECT_GE(chips.size(), 1U);
    // What was understood can be taken back without the pointer.
    press(Qt::Key_Backtab);
    ASSERT_TRUE(panel().findChild<ChipRow*>()->isAncestorOf(QApplication::focusWidget()));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    EXPECT_TRUE(waitForResults(3));
}

TEST_F(QuickSearchTest, opensWhatIsMarkedAndGoes) {
    const struct {
        const char* typed;
        int count;
        Qt::KeyboardModifiers held;
        const char* file;    ///< Below Documents; null for none.
        const char* place;   ///< The same.
        const char* select;  ///< The same.
    } cases[] = {
        {"notes", 1, {}, "report notes.txt", nullptr, nullptr},
        {"notes", 1, Qt::ControlModifier, nullptr, "", "report notes.txt"},
        {"reports folder", 1, {}, nullptr, "Reports", nullptr},
    };
    const std::vector<URL> recent = app.recentFolders();
    const URL documents = Paths::home().appending("Documents");
    const auto below = [&documents](const char* name) {
        return *name ? documents.appending(name) : documents;
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        places.clear();
        files.clear();
        open();
        type(c.typed);
        ASSERT_TRUE(waitForResults(c.count));
        press(Qt::Key_Return, c.held);
        EXPECT_TRUE(waitFor([this] { return !search.panel(); }));
        ASSERT_EQ(files.count(), c.file ? 1 : 0);
        ASSERT_EQ(places.count(), c.place ? 1 : 0);
        if (c.file) {
            EXPECT_EQ(files[0][0].value<URL>(), below(c.file));
        }
        if (!c.place) continue;
        EXPECT_EQ(places[0][0].value<Location>(), Location::folder(below(c.place)));
        const auto select = places[0][1].value<std::vector<URL>>();
        ASSERT_EQ(select.size(), c.select ? 1U : 0U);
        if (c.select) {
            EXPECT_EQ(select[0], below(c.select));
        }
    }
    // Nothing of it stays.
    open();
    EXPECT_TRUE(field().text().isEmpty());
    EXPECT_FALSE(list().isVisible());
    EXPECT_EQ(app.recentFolders(), recent);
}

TEST_F(QuickSearchTest, whatIsChosenIsShownInAWindow) {
    AppRequests requests(app);
    requests.serve(search);
    open();
    type("reports folder");
    ASSERT_TRUE(waitForResults(1));
    press(Qt::Key_Return);
    ASSERT_EQ(app.groups().size(), 1U);
    const URL documents = Paths::home().appending("Documents");
    EXPECT_EQ(app.groups()[0]->tab(0).active().location(),
              Location::folder(documents.appending("Reports")));
    // Here is no desktop that would open a file, and it is said beside the file.
    ASSERT_TRUE(waitFor([this] { return !search.panel(); }));
    open();
    type("notes");
    ASSERT_TRUE(waitForResults(1));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitFor([this] { return app.groups().size() == 2; }));
    WindowModel& shown = app.groups()[1]->tab(0);
    EXPECT_EQ(shown.active().location(), Location::folder(documents));
    ASSERT_TRUE(shown.toast());
    EXPECT_TRUE(shown.toast()->isError);
    EXPECT_TRUE(waitFor([&shown] { return shown.active().hasSelection(); }));
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (qobject_cast<BrowserWindow*>(widget)) widget->deleteLater();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(QuickSearchTest, neverOpensWhatAnOlderTextHasFound) {
    open();
    type("notes");
    ASSERT_TRUE(waitForResults(1));
    type("x");
    press(Qt::Key_Return);
    EXPECT_TRUE(search.panel());
    EXPECT_EQ(files.count(), 0);
    EXPECT_TRUE(waitForResults(0));
    press(Qt::Key_Return);
    EXPECT_TRUE(search.panel());
    EXPECT_EQ(files.count(), 0);
}

TEST_F(QuickSearchTest, theKeyboardStaysInTheField) {
    open();
    type("report");
    ASSERT_TRUE(waitForResults(3));
    const std::string first = marked();
    press(Qt::Key_Down);
    EXPECT_NE(marked(), first);
    press(Qt::Key_Tab);
    EXPECT_EQ(list().currentIndex().row(), 2);
    press(Qt::Key_PageDown);
    EXPECT_EQ(list().currentIndex().row(), 2);
    press(Qt::Key_Backtab);
    press(Qt::Key_Up);
    EXPECT_EQ(marked(), first);
    EXPECT_TRUE(field().hasFocus());
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitFor([this] { return !search.panel(); }));
}

TEST_F(QuickSearchTest, isOneAtATimeAndGoesWhenAnotherWindowComesToTheFront) {
    open();
    const QuickSearchPanel* first = search.panel();
    search.open();
    EXPECT_EQ(search.panel(), first);
    QWidget other;
    show(other);
    EXPECT_TRUE(waitFor([this] { return !search.panel(); }));
}

}  // namespace
}  // namespace tarn
