#include <thread>

#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/pane/PaneMenu.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/pane/RenameEditor.h"
#include "Tarn/ui/rename/RenameSheet.h"
#include "Tarn/ui/states/StatusPill.h"
#include "Tarn/ui/tags/TagDotRow.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/archive/ArchiveReader.h"
#include "TarnCore/tags/TagStore.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

class EditTest : public testing::Test {
protected:
    void SetUp() override {
        folder.file("alpha.tar.gz", "1");
        folder.file("beta.txt", "2");
        folder.file("gamma.txt", "3");
        folder.folder("delta.d");
        window =
            new BrowserWindow(std::make_unique<WindowModel>(app, Location::folder(folder.url())));
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->resize(1000, 700);
        show(*window);
        ASSERT_TRUE(waitFor([this] { return pane().items().count() == 4; }));
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
    RenameEditor* editor() {
        for (RenameEditor* one : window->findChildren<RenameEditor*>())
            if (!one->isHidden()) return one;
        return nullptr;
    }
    RenameSheet* sheet() { return window->findChild<RenameSheet*>(); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* target = QApplication::focusWidget();
        QTest::keyClick(target ? target : window, key, modifiers);
    }
    void type(const char* text) {
        QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(text));
    }
    void select(std::initializer_list<const char*> names) {
        std::vector<URL> urls;
        for (const char* name : names) urls.push_back(folder / name);
        pane().select(urls);
        view()->setFocus();
    }
    std::vector<std::string> titlesOf(const QMenu& menu) {
        std::vector<std::string> titles;
        for (const QAction* action : menu.actions()) {
            if (!action->isSeparator())
                titles.push_back(action->text().section(u'\t', 0, 0).toStdString());
        }
        return titles;
    }
    using Titles = std::vector<std::string>;

    TestFolder folder;
    AppModel app;
    BrowserWindow* window = nullptr;
};

TEST_F(EditTest, f2SelectsWhatPeopleMeanToChange) {
    const struct {
        const char* name;
        const char* selected;
    } cases[] = {
        {"alpha.tar.gz", "alpha"},
        {"beta.txt", "beta"},
        {"delta.d", "delta.d"},  // A folder's name is all name.
    };
    for (const ViewMode mode : {ViewMode::list, ViewMode::grid}) {
        pane().setViewMode(mode);
        for (const auto& c : cases) {
            SCOPED_TRACE(c.name);
            select({c.name});
            press(Qt::Key_F2);
            ASSERT_TRUE(editor());
            EXPECT_EQ(editor()->selectedText(), QString::fromUtf8(c.selected));
            EXPECT_TRUE(view()->viewport()->rect().contains(editor()->geometry()));
            press(Qt::Key_Escape);
            EXPECT_FALSE(editor());
            EXPECT_EQ(QApplication::focusWidget(), view());
        }
    }
}

TEST_F(EditTest, returnRenamesWhereThePersonWantsIt) {
    AppSettings settings = app.settings();
    settings.returnOpens = false;
    app.setSettings(settings);
    select({"delta.d"});
    press(Qt::Key_Return);
    EXPECT_TRUE(editor());
    EXPECT_EQ(pane().location(), Location::folder(folder.url()));
    settings.returnOpens = true;
    app.setSettings(settings);
}

TEST_F(EditTest, aNameIsGivenInItsRow) {
    select({"beta.txt"});
    press(Qt::Key_F2);
    type("omega");
    // Others may write into the folder meanwhile.
    folder.file("zeta.txt");
    QTest::qWait(400);
    ASSERT_TRUE(editor());
    EXPECT_EQ(editor()->text(), QStringLiteral("omega.txt"));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitFor([this] { return pane().items().row(folder / "omega.txt").has_value(); }));
    ASSERT_TRUE(waitFor([this] { return !editor(); }));
    EXPECT_EQ(QApplication::focusWidget(), view());
    ASSERT_EQ(pane().selectedItems().size(), 1u);
    EXPECT_EQ(pane().selectedItems().front().name, "omega.txt");
    EXPECT_TRUE(folder.exists("omega.txt"));
    EXPECT_TRUE(pane().items().row(folder / "zeta.txt"));
}

TEST_F(EditTest, tabGoesOnWithTheNextName) {
    select({"beta.txt"});
    press(Qt::Key_F2);
    type("bravo");
    press(Qt::Key_Tab);
    ASSERT_TRUE(waitFor([this] { return editor() && editor()->text() == u"gamma.txt"; }));
    EXPECT_TRUE(folder.exists("bravo.txt"));
    EXPECT_EQ(editor()->selectedText(), QStringLiteral("gamma"));
    ASSERT_EQ(pane().selectedItems().size(), 1u);
    EXPECT_EQ(pane().selectedItems().front().name, "gamma.txt");
    press(Qt::Key_Backtab);
    ASSERT_TRUE(editor()) << "nothing was changed, so nothing is waited for";
    EXPECT_EQ(editor()->text(), QStringLiteral("bravo.txt"));
    type("a/b");
    press(Qt::Key_Tab);
    EXPECT_EQ(editor()->text(), QStringLiteral("a/b.txt")) << "this one has to be mended first";
    press(Qt::Key_Escape);
    EXPECT_FALSE(editor());
    EXPECT_EQ(QApplication::focusWidget(), view());
}

TEST_F(EditTest, aNameThatCannotBeUsedStaysInItsField) {
    select({"beta.txt"});
    press(Qt::Key_F2);
    type("a/b");
    EXPECT_EQ(editor()->problem(), QStringLiteral("Names can’t contain “/” or “:”."));
    press(Qt::Key_Return);
    ASSERT_TRUE(editor());
    press(Qt::Key_A, Qt::ControlModifier);
    type("gamma.txt");
    EXPECT_EQ(editor()->problem(), QString());
    press(Qt::Key_Return);
    ASSERT_TRUE(waitFor([this] { return !editor()->problem().isEmpty(); }));
    EXPECT_EQ(
        editor()->problem(),
        QStringLiteral("The name “gamma.txt” is already taken. Please choose a different name."));
    EXPECT_EQ(QApplication::focusWidget(), editor());
    EXPECT_EQ(folder.read("gamma.txt"), "3");
    press(Qt::Key_Escape);
    EXPECT_FALSE(editor());
    EXPECT_TRUE(folder.exists("beta.txt"));
}

TEST_F(EditTest, theDeleteKeyBelongsToTheFieldThatHasTheKeyboard) {
    select({"beta.txt"});
    press(Qt::Key_F2);
    press(Qt::Key_Delete);
    EXPECT_EQ(editor()->text(), QStringLiteral(".txt"));
    press(Qt::Key_Escape);
    press(Qt::Key_L, Qt::ControlModifier);
    press(Qt::Key_Delete);
    EXPECT_TRUE(folder.exists("beta.txt"));
    EXPECT_TRUE(app.transfers().transfers().empty());
}

TEST_F(EditTest, severalAreRenamedInTheSheet) {
    select({"beta.txt", "gamma.txt"});
    press(Qt::Key_F2);
    ASSERT_TRUE(sheet());
    auto* apply = sheet()->findChild<QPushButton*>(QStringLiteral("applyRename"));
    auto* reason = sheet()->findChild<QLabel*>(QStringLiteral("renameReason"));
    ASSERT_TRUE(waitFor([this] { return !sheet()->model().isWorking(); }));
    EXPECT_FALSE(apply->isEnabled());
    EXPECT_EQ(reason->text(), QStringLiteral("Say in the rules what to change."));
    // The keyboard is where the first rule wants it.
    type("a");
    press(Qt::Key_Tab);
    type("/");
    ASSERT_TRUE(waitFor([this] { return sheet()->model().problemCount() == 2; }));
    EXPECT_FALSE(apply->isEnabled());
    EXPECT_EQ(reason->text(), QStringLiteral("2 names can’t be used."));
    press(Qt::Key_Backspace);
    type("o");
    ASSERT_TRUE(waitFor([&] { return apply->isEnabled(); }));
    EXPECT_EQ(apply->text(), QStringLiteral("Rename 2 Items"));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitFor([this] { return folder.exists("gommo.txt"); }));
    EXPECT_TRUE(folder.exists("beto.txt"));
    ASSERT_TRUE(waitFor([this] { return !window->model().sheet(); }));
}

TEST_F(EditTest, whoCancelsTheSheetChangesNothing) {
    select({"beta.txt", "gamma.txt"});
    press(Qt::Key_F2);
    ASSERT_TRUE(sheet());
    type("a");
    auto* apply = sheet()->findChild<QPushButton*>(QStringLiteral("applyRename"));
    ASSERT_TRUE(waitFor([&] { return apply->isEnabled(); }));
    // With a button, and by Return as with every button.
    for (int i = 0; i < 20 && QApplication::focusWidget() != apply; ++i) press(Qt::Key_Backtab);
    press(Qt::Key_Backtab);
    press(Qt::Key_Return);
    EXPECT_FALSE(window->model().sheet());
    EXPECT_TRUE(folder.exists("beta.txt"));
    ASSERT_TRUE(waitFor([this] { return !sheet(); }));
    press(Qt::Key_F2);
    press(Qt::Key_Escape);
    EXPECT_FALSE(window->model().sheet());
    EXPECT_TRUE(folder.exists("beta.txt"));
    ASSERT_TRUE(waitFor([this] { return !sheet(); }));
    press(Qt::Key_F2);
    EXPECT_TRUE(sheet());
}

TEST_F(EditTest, theMenuOffersWhatCanBeDone) {
    const auto menuFor = [this](std::initializer_list<const char*> names) {
        select(names);
        if (names.size() == 0) pane().selection().clear();
        return PaneMenu::make(window->model(), window);
    };
    EXPECT_EQ(titlesOf(*menuFor({"beta.txt"})),
              (Titles{"Open", "Open With", "Cut", "Copy", "Copy Path", "Rename", "Duplicate",
                      "Compress", "", "Tags", "Permissions…", "Move to Trash"}));
    EXPECT_EQ(titlesOf(*menuFor({"beta.txt", "gamma.txt"})),
              (Titles{"Open", "Open With", "Cut", "Copy", "Copy Path", "Rename 2 Items…",
                      "Duplicate", "New Folder with Selection", "Compress", "", "Tags",
                      "Permissions…", "Move to Trash"}));
    EXPECT_EQ(
        titlesOf(*menuFor({"alpha.tar.gz"})),
        (Titles{"Open", "Open in New Tab", "Open With", "Cut", "Copy", "Copy Path", "Rename",
                "Duplicate", "Extract Archive", "", "Tags", "Permissions…", "Move to Trash"}));
    EXPECT_EQ(titlesOf(*menuFor({})),
              (Titles{"New Folder", "New File", "Paste", "Add to Favourites", "Sort By", "Columns",
                      "Group By", "Select All", "Refresh", "Copy Path"}));
    const URL zip = ArchiveReader::compress({folder / "beta.txt"});
    pane().navigate(Location::archive(zip, ""));
    ASSERT_TRUE(waitFor([this] { return pane().items().count() == 1; }));
    view()->selectAll();
    EXPECT_EQ(titlesOf(*PaneMenu::make(window->model(), window)),
              (Titles{"Open", "Copy", "Extract Here", "Extract Everything"}));
}

TEST_F(EditTest, escapeStopsAMemberThatIsBeingUnpacked) {
    const URL zip = ArchiveReader::compress({folder / "beta.txt"});
    pane().navigate(Location::archive(zip, ""));
    ASSERT_TRUE(waitFor([this] { return pane().items().count() == 1; }));
    view()->setFocus();
    // Something else that takes its time comes first.
    ActivityTask& other = app.activities().add("Compress", [](ActivityTask::Handle& handle) {
        while (!handle.token().isCancelled()) std::this_thread::yield();
    });
    pane().select({zip.appending("beta.txt")});
    window->model().openSelection();
    EXPECT_EQ(window->model().edits().taking(), QStringLiteral("Unpacking “beta.txt”…"));
    auto* pill = window->findChild<StatusPill*>();
    EXPECT_TRUE(waitFor([&] { return pill->text().startsWith(QStringLiteral("Unpacking")); }));
    press(Qt::Key_Escape);
    EXPECT_EQ(pane().location(), Location::archive(zip, ""));
    bool isOpened = false;
    QObject::connect(&window->model(), &WindowModel::openFilesRequested, [&] { isOpened = true; });
    other.stop();
    ASSERT_TRUE(waitFor([this] { return app.activities().isEmpty(); }));
    EXPECT_FALSE(isOpened);
    EXPECT_TRUE(window->model().edits().taking().isEmpty());
}

TEST_F(EditTest, aClickOnADotTagsTheSelection) {
    select({"beta.txt", "gamma.txt"});
    ASSERT_TRUE(TagStore::setTags({{"Red", TagColor::red}}, folder / "beta.txt"));
    const auto menu = PaneMenu::make(window->model(), window);
    menu->popup(window->mapToGlobal(QPoint(200, 200)));
    auto* dots = menu->findChild<TagDotRow*>();
    ASSERT_TRUE(dots);
    QTest::mouseClick(dots, Qt::LeftButton, {}, dots->middle(2));
    ASSERT_TRUE(waitFor([this] { return TagStore::tags(folder / "gamma.txt").size() == 1; }));
    EXPECT_EQ(TagStore::tags(folder / "gamma.txt").front(), FinderTag::standard()[2]);
    ASSERT_TRUE(waitFor([this] { return TagStore::tags(folder / "beta.txt").size() == 2; }));
}

}  // namespace
}  // namespace tarn
