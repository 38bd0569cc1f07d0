#include <QtGui/QAction>
#include <QtGui/QContextMenuEvent>
#include <QtTest/QTest>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListView>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>
#include <gtest/gtest.h>

#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/menus/WindowActions.h"
#include "Tarn/ui/palette/CommandPalette.h"
#include "Tarn/ui/palette/GoToFolderSheet.h"
#include "Tarn/ui/settings/ShortcutField.h"
#include "Tarn/ui/settings/ShortcutSection.h"
#include "Tarn/ui/sheets/RenameWorkspaceSheet.h"
#include "Tarn/ui/theme/Icons.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

/// A window that has nothing but a field, a pane that takes the keyboard, and the commands.
class CommandsUITest : public testing::Test {
protected:
    void SetUp() override {
        before_ = app.settings();
        app.setSettings(AppSettings());
        folder.file("a.txt", "one");
        model = &group.open({{{Location::folder(folder.url()), std::nullopt}}, 0, true, false});
        auto* column = new QVBoxLayout(&window);
        column->addWidget(field = new QLineEdit);
        column->addWidget(pane = new QWidget);
        pane->setFocusPolicy(Qt::StrongFocus);
        actions = new WindowActions(app, window);
        actions->addPane(*pane);
        actions->setWindow(model);
        window.resize(900, 700);
        show(window);
        pane->setFocus();
        ASSERT_TRUE(waitFor([this] { return model->active().items().count() == 1; }));
    }
    void TearDown() override { app.setSettings(before_); }

    void select() {
        model->active().select({folder / "a.txt"});
        actions->update();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    QAction* action(const char* id) { return actions->action(id); }

    TestFolder folder;
    AppModel app;
    TabGroup group{app};
    WindowModel* model = nullptr;
    QWidget window;
    QLineEdit* field = nullptr;
    QWidget* pane = nullptr;
    WindowActions* actions = nullptr;

private:
    AppSettings before_;
};

TEST(CommandIcons, everyCommandHasOne) {
    for (const TarnCommand& command : CommandRegistry::all())
        EXPECT_TRUE(Icons::hasSymbol(command.symbol)) << command.symbol;
}

TEST_F(CommandsUITest, keysRunCommandsAndFollowTheSettings) {
    press(Qt::Key_Backslash, Qt::ControlModifier);
    EXPECT_TRUE(model->isSplit());
    EXPECT_TRUE(action("split")->isChecked());
    press(Qt::Key_F3);
    EXPECT_FALSE(model->isSplit());
    AppSettings settings;
    settings.shortcutOverrides["split"] = {"j", false, false, true, false};
    settings.shortcutOverrides["hidden"] = {"\\", true, false, false, false};
    app.setSettings(settings);
    press(Qt::Key_J, Qt::AltModifier);
    EXPECT_TRUE(model->isSplit());
    press(Qt::Key_Backslash, Qt::ControlModifier);
    EXPECT_TRUE(model->isSplit());
    EXPECT_TRUE(model->showHidden());
}

TEST_F(CommandsUITest, theWindowsOwnKeysGiveWayToAShortcut) {
    int closed = 0;
    QAction* close = actions->add("window.close", QStringLiteral("Close"),
                                  {QKeySequence(Qt::CTRL | Qt::Key_W)}, [&closed] { ++closed; });
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(closed, 1);
    AppSettings settings;
    settings.shortcutOverrides["hidden"] = {"w", true, false, false, false};
    app.setSettings(settings);
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(closed, 1);
    EXPECT_TRUE(model->showHidden());
    EXPECT_TRUE(close->shortcuts().isEmpty());
    app.setSettings(AppSettings());
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_EQ(closed, 2);
}

TEST_F(CommandsUITest, aFieldKeepsTheKeysOfTextAndNoOthers) {
    AppSettings settings;
    // What would hurt: a key that deletes a word, and one that moves in the text.
    settings.shortcutOverrides["hidden"] = {"delete", true, false, false, false};
    settings.shortcutOverrides["split"] = {"left", true, false, false, false};
    app.setSettings(settings);
    field->setText(QStringLiteral("one two"));
    field->setFocus();
    press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(field->text(), QStringLiteral("one "));
    press(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(field->cursorPosition(), 0);
    EXPECT_FALSE(model->showHidden());
    EXPECT_FALSE(model->isSplit());
    press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_TRUE(model->showsPalette()) << "everything else works as anywhere";
    model->setShowsPalette(false);
    pane->setFocus();
    press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_TRUE(model->showHidden());
    press(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_TRUE(model->isSplit());
}

TEST_F(CommandsUITest, whatNeedsASelectionHasItsKeysInThePaneOnly) {
    select();
    EXPECT_TRUE(action("quicklook")->isEnabled());
    field->setFocus();
    press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_FALSE(model->showsQuickLook());
    pane->setFocus();
    press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_TRUE(model->showsQuickLook());
}

TEST_F(CommandsUITest, actionsSayWhyTheyAreNotEnabled) {
    EXPECT_FALSE(action("rename")->isEnabled());
    EXPECT_TRUE(action("rename")->toolTip().endsWith(QStringLiteral("Nothing is selected.")));
    select();
    EXPECT_TRUE(action("rename")->isEnabled());
    EXPECT_EQ(action("rename")->toolTip(), QStringLiteral("Rename (F2)"));
    EXPECT_FALSE(action("duplicates")->isEnabled());
}

TEST_F(CommandsUITest, menusHaveTheirGroupsInOrderAndTheFormatsOfPaths) {
    QMenu menu;
    actions->fillGroup(menu, "File");
    std::vector<QAction*> shown;
    for (QAction* each : menu.actions()) shown.push_back(each);
    ASSERT_GT(shown.size(), 5u);
    EXPECT_EQ(shown.front(), action("open"));
    EXPECT_EQ(shown.back(), action("saveSearch"));
    QMenu* formats = nullptr;
    for (QAction* each : shown)
        if (each->menu()) formats = each->menu();
    ASSERT_TRUE(formats);
    QStringList titles;
    for (QAction* each : formats->actions()) titles.append(each->text());
    EXPECT_EQ(titles,
              (QStringList{QStringLiteral("Full Path"), QStringLiteral("Path with ~"),
                           QStringLiteral("Quoted for Terminal"), QStringLiteral("File URL")}));
    formats->actions()[3]->trigger();
    ASSERT_TRUE(app.clipboard().data());
    EXPECT_EQ(app.clipboard().data()->text().toStdString(), folder.url().string());
}

TEST_F(CommandsUITest, theWindowMenuOpensWorkspaces) {
    const UUID id = app.lists().saveWorkspace("R&D", {model->snapshot(), model->snapshot()});
    QMenu menu;
    actions->fillGroup(menu, "Window");
    QMenu* all = nullptr;
    for (QAction* each : menu.actions())
        if (each->menu()) all = each->menu();
    ASSERT_TRUE(all);
    emit menu.aboutToShow();
    ASSERT_EQ(all->actions().size(), 1);
    EXPECT_EQ(all->actions()[0]->text(), QStringLiteral("R&&D"));
    all->actions()[0]->trigger();
    EXPECT_EQ(group.count(), 3);
    app.lists().removeWorkspace(id);
    emit menu.aboutToShow();
    EXPECT_FALSE(all->isEnabled());
}

// ---- The palette

class PaletteUITest : public CommandsUITest {
protected:
    CommandPalette* palette() {
        for (auto* one : window.findChildren<CommandPalette*>())
            if (one->isVisible()) return one;
        return nullptr;
    }
    QListView* list() { return palette()->findChild<QListView*>(); }
    QString marked() { return list()->currentIndex().data().toString(); }
    void type(const char* text) { QTest::keyClicks(QApplication::focusWidget(), text); }
};

TEST_F(PaletteUITest, runsWhatWasTypedAndGivesTheKeyboardBack) {
    press(Qt::Key_K, Qt::ControlModifier);
    ASSERT_TRUE(palette());
    EXPECT_EQ(marked(), QStringLiteral("Go to Home")) << "not the heading";
    type("split");
    EXPECT_EQ(marked(), QStringLiteral("Split View"));
    press(Qt::Key_Return);
    EXPECT_TRUE(model->isSplit());
    EXPECT_FALSE(palette());
    EXPECT_FALSE(model->showsPalette());
    EXPECT_EQ(QApplication::focusWidget(), pane);
}

TEST_F(PaletteUITest, isWorkedByTheKeyboardAlone) {
    press(Qt::Key_K, Qt::ControlModifier);
    ASSERT_TRUE(palette());
    press(Qt::Key_Down);
    EXPECT_EQ(marked(), QStringLiteral("Back"));
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(marked(), QStringLiteral("Previous Song")) << "round the end";
    press(Qt::Key_Down);
    press(Qt::Key_PageDown);
    EXPECT_EQ(marked(), QStringLiteral("Cleanup"));
    type("rename");
    press(Qt::Key_Return);
    EXPECT_TRUE(palette()) << "nothing is selected: it stays and says why";
    press(Qt::Key_B, Qt::ControlModifier);
    EXPECT_TRUE(palette()) << "no key goes to the window below";
    press(Qt::Key_Escape);
    EXPECT_FALSE(palette());
    press(Qt::Key_K, Qt::ControlModifier);
    ASSERT_TRUE(palette());
    press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_FALSE(palette()) << "the keys that open it close it";
}

TEST_F(PaletteUITest, aCommandThatAsksGetsTheKeyboard) {
    QLineEdit* asked = field;
    QObject::connect(model, &WindowModel::focusSearchRequested, &window,
                     [asked] { asked->setFocus(); });
    press(Qt::Key_K, Qt::ControlModifier);
    type("search");
    press(Qt::Key_Return);
    EXPECT_FALSE(palette());
    EXPECT_EQ(QApplication::focusWidget(), field);
}

TEST_F(PaletteUITest, aWorkspaceIsRenamedWhereItIsFound) {
    const UUID id = app.lists().saveWorkspace("z-x taxes", {model->snapshot()});
    press(Qt::Key_K, Qt::ControlModifier);
    type("z-x");
    const QPoint place = list()->visualRect(list()->currentIndex()).center();
    QContextMenuEvent asked(QContextMenuEvent::Mouse, place,
                            list()->viewport()->mapToGlobal(place));
    QApplication::sendEvent(list()->viewport(), &asked);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    EXPECT_FALSE(palette());
    auto* sheet = window.findChild<RenameWorkspaceSheet*>();
    ASSERT_TRUE(sheet);
    QTest::keyClicks(QApplication::focusWidget(), "z-x");
    press(Qt::Key_Return);
    EXPECT_EQ(app.lists().workspace(id)->name, "z-x");
    app.lists().removeWorkspace(id);
}

// ---- Going to a path

TEST_F(CommandsUITest, goesToATypedPath) {
    folder.folder("below/deep");
    auto* sheet = new GoToFolderSheet(window, *model);
    sheet->open(sheet->firstField());
    QTest::keyClicks(QApplication::focusWidget(), "below/nothing");
    press(Qt::Key_Return);
    ASSERT_TRUE(waitFor([&] {
        for (const QLabel* label : sheet->findChildren<QLabel*>())
            if (label->text() == QStringLiteral("There is nothing at this path.") &&
                label->isVisible())
                return true;
        return false;
    }));
    qobject_cast<QLineEdit*>(QApplication::focusWidget())->clear();
    QTest::keyClicks(QApplication::focusWidget(), "below/deep");
    press(Qt::Key_Return);
    ASSERT_TRUE(waitFor(
        [&] { return model->active().location() == Location::folder(folder / "below/deep"); }));
}

// ---- Shortcut settings

class ShortcutsUITest : public CommandsUITest {
protected:
    void SetUp() override {
        CommandsUITest::SetUp();
        section = new ShortcutSection(app, &window);
        section->resize(600, 3000);
        section->show();
    }
    ShortcutField* of(const char* id) {
        return section->findChild<ShortcutField*>(QString::fromUtf8(id));
    }
    void record(const char* id, Qt::Key key, Qt::KeyboardModifiers modifiers) {
        of(id)->setFocus();
        press(Qt::Key_Return);
        EXPECT_TRUE(of(id)->isRecording());
        press(key, modifiers);
        EXPECT_FALSE(of(id)->isRecording());
    }
    QWidget* note() { return section->findChild<QWidget*>(QStringLiteral("shortcutNote")); }
    QString noteText() { return note()->findChild<QLabel*>()->text(); }

    ShortcutSection* section = nullptr;
};

TEST_F(ShortcutsUITest, keysThatAreTakenAreNamedAndGivenBack) {
    record("tags", Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(of("tags")->text(), QStringLiteral("Ctrl+D"));
    EXPECT_EQ(of("duplicate")->text(), QStringLiteral("None"));
    ASSERT_TRUE(note()->isVisible());
    EXPECT_EQ(noteText(), QStringLiteral("Ctrl+D was taken from “Duplicate”."));
    QTest::mouseClick(note()->findChild<QPushButton*>(), Qt::LeftButton);
    EXPECT_EQ(of("tags")->text(), QStringLiteral("None"));
    EXPECT_EQ(of("duplicate")->text(), QStringLiteral("Ctrl+D"));
    EXPECT_TRUE(app.settings().shortcutOverrides.empty());
    EXPECT_FALSE(note()->isVisible());
}

TEST_F(ShortcutsUITest, keysOfTheDesktopAreTakenToo) {
    record("compress", Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(noteText(), QStringLiteral("Ctrl+C was taken from “Copy”."));
    EXPECT_TRUE(action("copy")->shortcuts().isEmpty());
}

TEST_F(ShortcutsUITest, escapeLeavesAndBackspaceTakesAway) {
    of("refresh")->setFocus();
    press(Qt::Key_Return);
    press(Qt::Key_Escape);
    EXPECT_FALSE(of("refresh")->isRecording());
    EXPECT_EQ(of("refresh")->text(), QStringLiteral("Ctrl+R"));
    press(Qt::Key_Return);
    press(Qt::Key_Backspace);
    EXPECT_EQ(of("refresh")->text(), QStringLiteral("None"));
    EXPECT_EQ(action("refresh")->shortcuts(), QList<QKeySequence>{QKeySequence(Qt::Key_F5)});
}

TEST_F(ShortcutsUITest, lettersAloneAreRefusedInWords) {
    of("refresh")->setFocus();
    press(Qt::Key_Return);
    press(Qt::Key_J, Qt::ShiftModifier);
    EXPECT_TRUE(of("refresh")->isRecording());
    EXPECT_TRUE(noteText().startsWith(QStringLiteral("Hold Ctrl")));
    press(Qt::Key_F7, Qt::ControlModifier);
    EXPECT_TRUE(of("refresh")->isRecording()) << "no shortcut can have it";
    press(Qt::Key_J, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(of("refresh")->text(), QStringLiteral("Ctrl+Shift+J"));
    EXPECT_EQ(noteText(), QStringLiteral("Ctrl+Shift+J was taken from “Downloaded From”."));
}

TEST_F(ShortcutsUITest, thePresetAndTheResetAreTakenBack) {
    const auto button = [this](const char* text) {
        for (QPushButton* one : section->findChildren<QPushButton*>())
            if (one->text() == QString::fromUtf8(text)) return one;
        return static_cast<QPushButton*>(nullptr);
    };
    EXPECT_FALSE(button("Reset All")->isEnabled());
    button("Use Finder Keys")->click();
    EXPECT_EQ(of("desktop")->text(), QStringLiteral("Ctrl+Shift+D"));
    EXPECT_EQ(of("palette")->text(), QStringLiteral("None"));
    button("Reset All")->click();
    EXPECT_EQ(of("palette")->text(), QStringLiteral("Ctrl+K"));
    note()->findChild<QPushButton*>()->click();
    EXPECT_EQ(of("palette")->text(), QStringLiteral("None"));
}

TEST_F(ShortcutsUITest, filtersByTitleAndByKey) {
    section->filter(QStringLiteral("ctrl+shift+k"));
    EXPECT_TRUE(of("cleanup")->isVisible());
    EXPECT_FALSE(of("home")->isVisible());
    section->filter(QStringLiteral("enclosing"));
    EXPECT_TRUE(of("go.up")->isVisible());
    EXPECT_FALSE(of("cleanup")->isVisible());
}

}  // namespace
}  // namespace tarn
