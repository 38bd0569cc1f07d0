#include <filesystem>
#include <fstream>
#include <iterator>

#include <QtCore/QElapsedTimer>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTabBar>
#include <gtest/gtest.h>

#include "Tarn/model/TabGroup.h"
#include "Tarn/ui/palette/CommandPalette.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/pane/PaneWidget.h"
#include "Tarn/ui/pane/RenameEditor.h"
#include "Tarn/ui/path/CrumbButton.h"
#include "Tarn/ui/path/PathBar.h"
#include "Tarn/ui/search/Chip.h"
#include "Tarn/ui/search/ChipRow.h"
#include "Tarn/ui/search/SearchField.h"
#include "Tarn/ui/settings/SettingsSheet.h"
#include "Tarn/ui/sidebar/Sidebar.h"
#include "Tarn/ui/states/StatusPill.h"
#include "Tarn/ui/window/PaneFrame.h"
#include "Tarn/ui/window/SessionWindows.h"
#include "Tarn/ui/window/TabPage.h"
#include "TarnCore/files/Paths.h"
#include "tests/ui/Shown.h"
#include "tests/ui/screens/Screens.h"

namespace tarn {
namespace {

constexpr qint64 calm = 300;  // milliseconds without new rows

/// A person at the window: keys go to whatever has the keyboard, clicks to what lies under the
/// pointer.
class Session : public testing::Test {
protected:
    void SetUp() override {
        ScreenHome::reset();
        app = std::make_unique<AppModel>();
        window = new BrowserWindow(
            std::make_unique<WindowModel>(*app, Location::folder(Paths::documents())));
        begin();
    }
    void TearDown() override {
        delete window;
        app->flush();
    }
    void begin() {
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->resize(1000, 700);
        show(*window);
        settle();
    }

    // --- What the person does

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* target = QApplication::focusWidget();
        QTest::keyClick(target ? target : window, static_cast<Qt::Key>(key), modifiers);
        QCoreApplication::processEvents();
    }
    void type(const char* text) {
        QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(text));
    }
    void click(QWidget& widget, QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(&widget, Qt::LeftButton, modifiers, at);
        QCoreApplication::processEvents();
    }
    void clickRow(const char* name, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        click(*view().viewport(), placeOf(name), modifiers);
    }
    void doubleClickRow(const char* name) {
        // Rows that were shown from memory are replaced once the folder has been read again.
        QElapsedTimer since;
        since.start();
        const auto watch = QObject::connect(&pane(), &PaneModel::rowsChanged, window,
                                            [&since] { since.restart(); });
        const bool isCalm = waitFor([&since] { return since.elapsed() >= calm; });
        QObject::disconnect(watch);
        ASSERT_TRUE(isCalm);
        clickRow(name);
        QTest::mouseDClick(view().viewport(), Qt::LeftButton, {}, placeOf(name));
    }
    /// Types a path into the path bar.
    void goTo(const char* path) {
        press(Qt::Key_L, Qt::ControlModifier);
        type(path);
        press(Qt::Key_Return);
    }

    // --- What is there

    WindowModel& model() { return window->model(); }
    PaneModel& pane() { return model().active(); }
    PaneView& view() { return *window->page().active().rows().view(); }
    template <class Part>
    Part* part() {
        for (Part* one : window->findChildren<Part*>())
            if (one->isVisible()) return one;
        return nullptr;
    }
    void settle() {
        ASSERT_TRUE(waitFor([this] { return !pane().isLoading() && !pane().isSearching(); }));
    }
    QPoint placeOf(const char* name) {
        for (int row = 0; row < pane().items().count(); ++row)
            if (pane().items().item(row).name == name)
                return view().visualRect(pane().items().index(row, 0)).center();
        ADD_FAILURE() << name << " is not shown";
        return {};
    }
    using Names = std::vector<std::string>;
    Names shown() {
        Names names;
        for (int row = 0; row < pane().items().count(); ++row)
            names.push_back(pane().items().item(row).name);
        return names;
    }
    Names selected() {
        Names names;
        for (const FileItem& item : pane().selectedItems()) names.push_back(item.name);
        return names;
    }
    bool showsWithin(const Names& names) {
        return waitFor([&] { return !pane().isLoading() && shown() == names; });
    }
    bool isAt(const URL& folder) {
        return waitFor([&] {
            return !pane().isLoading() && pane().location() == Location::folder(folder) &&
                   part<PathBar>()->location() == folder &&
                   window->windowTitle() == QString::fromStdString(Paths::displayName(folder));
        });
    }
    static URL work(const char* name) {
        return Paths::home().appending("Work/Holiday").appending(name);
    }
    static bool isOnDisk(const URL& url) {
        return std::filesystem::exists(std::filesystem::symlink_status(url.path()));
    }
    /// A home folder that is kept apart has a Trash of its own, with a folder for each deletion.
    static bool isInTrash(const char* name) {
        const std::filesystem::path trash = Paths::home().appending(".Trash").path();
        for (const auto& entry : std::filesystem::recursive_directory_iterator(trash))
            if (entry.path().filename() == name) return true;
        return false;
    }
    static std::string read(const URL& url) {
        std::ifstream file(url.path(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void browse();
    void search();
    void workInTabs();
    void changeFiles();
    void useThePalette();
    void changeSettings();
    void endAndReturn();

    std::unique_ptr<AppModel> app;
    BrowserWindow* window = nullptr;
};

void Session::browse() {
    SCOPED_TRACE("browse");
    view().setFocus();
    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(view().objectName(), QStringLiteral("paneList"));
    type("let");
    EXPECT_EQ(selected(), Names{"Letters"});
    press(Qt::Key_Return);
    ASSERT_TRUE(isAt(Paths::documents().appending("Letters")));
    EXPECT_EQ(shown(), (Names{"Old", "Bank.odt", "Landlord.odt"}));
    press(Qt::Key_Backspace);
    ASSERT_TRUE(isAt(Paths::documents()));
    press(Qt::Key_2, Qt::ControlModifier);
    doubleClickRow("Projects");
    ASSERT_TRUE(isAt(Paths::documents().appending("Projects")));
    // The crumb of the folder above.
    CrumbButton* above = nullptr;
    for (CrumbButton* crumb : part<PathBar>()->findChildren<CrumbButton*>())
        if (crumb->isVisible() && crumb->text() == QStringLiteral("Documents")) above = crumb;
    ASSERT_TRUE(above);
    click(*above, above->rect().center());
    ASSERT_TRUE(isAt(Paths::documents()));
    press(Qt::Key_Left, Qt::AltModifier);
    ASSERT_TRUE(isAt(Paths::documents().appending("Projects")));
    press(Qt::Key_Up, Qt::AltModifier);
    ASSERT_TRUE(isAt(Paths::documents()));
    EXPECT_EQ(selected(), Names{"Projects"});
    press(Qt::Key_Left, Qt::AltModifier);
    ASSERT_TRUE(isAt(Paths::documents().appending("Projects")));
    press(Qt::Key_Right, Qt::AltModifier);
    ASSERT_TRUE(isAt(Paths::documents()));
    const int count = pane().items().count();
    press(Qt::Key_H, Qt::ControlModifier);
    ASSERT_TRUE(waitFor([&] { return pane().items().count() == count + 1; }));
    press(Qt::Key_H, Qt::ControlModifier);
    ASSERT_TRUE(waitFor([&] { return pane().items().count() == count; }));
    press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(view().objectName(), QStringLiteral("paneGrid"));
    press(Qt::Key_2, Qt::ControlModifier);
}

void Session::search() {
    SCOPED_TRACE("search");
    press(Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(part<SearchField>()->isAncestorOf(QApplication::focusWidget()));
    type("roof pdfs from 2026");
    ASSERT_TRUE(waitFor([this] { return pane().showsResults() && !pane().isSearching(); }));
    EXPECT_EQ(shown(), Names{"Roof.pdf"});
    EXPECT_TRUE(part<StatusPill>()->text().startsWith(QStringLiteral("1 result")));
    auto* row = part<ChipRow>();
    ASSERT_TRUE(row);
    ASSERT_EQ(row->chips().size(), 2u);
    // Without the day, the minutes about the roof are still no PDF.
    Chip* chip = row->findChildren<Chip*>().first();
    chip->setFocus();
    press(Qt::Key_Delete);
    ASSERT_TRUE(waitFor([&] { return row->chips().size() == 1 && !pane().isSearching(); }));
    EXPECT_GE(pane().items().count(), 1);
    press(Qt::Key_F, Qt::ControlModifier);
    press(Qt::Key_Down);
    EXPECT_EQ(QApplication::focusWidget(), &view());
    EXPECT_EQ(selected().size(), 1u);
    press(Qt::Key_Up);
    EXPECT_TRUE(part<SearchField>()->isAncestorOf(QApplication::focusWidget()));
    press(Qt::Key_Down);
    press(Qt::Key_Escape);
    ASSERT_TRUE(isAt(Paths::documents()));
    EXPECT_FALSE(part<ChipRow>());
    EXPECT_EQ(part<SearchField>()->text(), QString());
}

void Session::workInTabs() {
    SCOPED_TRACE("tabs and panes");
    press(Qt::Key_T, Qt::ControlModifier);
    ASSERT_EQ(window->group().count(), 2);
    goTo("~/Work/Holiday");
    ASSERT_TRUE(isAt(Paths::home().appending("Work/Holiday")));
    press(Qt::Key_2, Qt::ControlModifier);
    auto* bar = part<QTabBar>();
    ASSERT_TRUE(bar);
    EXPECT_EQ(bar->tabText(1), QStringLiteral("Holiday"));
    click(*bar, bar->tabRect(0).center());
    ASSERT_TRUE(isAt(Paths::documents()));
    press(Qt::Key_2, Qt::AltModifier);
    ASSERT_TRUE(isAt(Paths::home().appending("Work/Holiday")));
    press(Qt::Key_F3);
    ASSERT_TRUE(model().isSplit());
    settle();
    press(Qt::Key_Tab);
    EXPECT_EQ(model().activeIndex(), 1);
    goTo("~/Work/Phone");
    ASSERT_TRUE(isAt(Paths::home().appending("Work/Phone")));
    press(Qt::Key_2, Qt::ControlModifier);
    // A click makes the other one active.
    QWidget* left = window->page().frames()[0]->rows().view()->viewport();
    click(*left, left->rect().bottomLeft() + QPoint(20, -20));
    EXPECT_EQ(model().activeIndex(), 0);
    ASSERT_TRUE(isAt(Paths::home().appending("Work/Holiday")));
}

void Session::changeFiles() {
    SCOPED_TRACE("change files");
    clickRow("plan.odt");
    press(Qt::Key_F2);
    ASSERT_TRUE(part<RenameEditor>());
    type("Plan for the lake");
    press(Qt::Key_Return);
    ASSERT_TRUE(showsWithin({"IMG_2041.jpg", "Plan for the lake.odt"}));
    EXPECT_TRUE(isOnDisk(work("Plan for the lake.odt")));
    EXPECT_FALSE(isOnDisk(work("plan.odt")));
    ASSERT_TRUE(waitFor([this] { return QApplication::focusWidget() == &view(); }));

    // Copied in one pane, pasted in the other.
    press(Qt::Key_C, Qt::ControlModifier);
    press(Qt::Key_Tab);
    ASSERT_TRUE(isAt(Paths::home().appending("Work/Phone")));
    press(Qt::Key_V, Qt::ControlModifier);
    const URL copy = Paths::home().appending("Work/Phone/Plan for the lake.odt");
    ASSERT_TRUE(showsWithin(
        {"IMG_2041.jpg", "IMG_2042.jpg", "Plan for the lake.odt", "Summer in the Mountains.mov"}));
    EXPECT_EQ(read(copy), read(work("Plan for the lake.odt")));
    EXPECT_EQ(read(copy).size(), 48'000u);
    ASSERT_TRUE(waitFor([this] { return app->history().nextUndoTitle().has_value(); }));
    ASSERT_TRUE(waitFor([this] { return app->transfers().activeCount() == 0; }));
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(showsWithin({"IMG_2041.jpg", "IMG_2042.jpg", "Summer in the Mountains.mov"}));
    EXPECT_FALSE(isOnDisk(copy));
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitFor([] { return isOnDisk(work("plan.odt")); }));
    EXPECT_FALSE(isOnDisk(work("Plan for the lake.odt")));

    // Into the Trash and back.
    clickRow("IMG_2042.jpg");
    press(Qt::Key_Delete);
    ASSERT_TRUE(showsWithin({"IMG_2041.jpg", "Summer in the Mountains.mov"}));
    ASSERT_TRUE(waitFor([this] { return app->transfers().activeCount() == 0; }));
    EXPECT_TRUE(isInTrash("IMG_2042.jpg"));
    ASSERT_TRUE(waitFor([this] { return app->history().nextUndoTitle().has_value(); }));
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(showsWithin({"IMG_2041.jpg", "IMG_2042.jpg", "Summer in the Mountains.mov"}));
    EXPECT_FALSE(isInTrash("IMG_2042.jpg"));
}

void Session::useThePalette() {
    SCOPED_TRACE("palette");
    press(Qt::Key_K, Qt::ControlModifier);
    ASSERT_TRUE(part<CommandPalette>());
    type("new fold");
    press(Qt::Key_Return);
    EXPECT_FALSE(part<CommandPalette>());
    ASSERT_TRUE(waitFor([this] { return part<RenameEditor>() != nullptr; }));
    type("Receipts");
    press(Qt::Key_Return);
    const URL made = Paths::home().appending("Work/Phone/Receipts");
    ASSERT_TRUE(waitFor([&] { return isOnDisk(made); }));
    ASSERT_TRUE(
        showsWithin({"Receipts", "IMG_2041.jpg", "IMG_2042.jpg", "Summer in the Mountains.mov"}));
    EXPECT_EQ(app->usageCount("newFolder"), 1);
}

void Session::changeSettings() {
    SCOPED_TRACE("settings");
    ASSERT_TRUE(app->settings().foldersFirst);
    press(Qt::Key_Comma, Qt::ControlModifier);
    auto* sheet = part<SettingsSheet>();
    ASSERT_TRUE(sheet);
    sheet->showPage(1);
    QCheckBox* folders = nullptr;
    for (QCheckBox* box : sheet->findChildren<QCheckBox*>())
        if (box->isVisible() && box->text() == QStringLiteral("Folders first")) folders = box;
    ASSERT_TRUE(folders);
    click(*folders, QPoint(folders->height() / 2, folders->height() / 2));
    EXPECT_FALSE(app->settings().foldersFirst);
    press(Qt::Key_Escape);
    EXPECT_FALSE(part<SettingsSheet>());
    // A folder whose view was chosen keeps it; any other is as the settings say.
    ASSERT_TRUE(
        showsWithin({"Receipts", "IMG_2041.jpg", "IMG_2042.jpg", "Summer in the Mountains.mov"}));
    goTo("~/Documents/Letters");
    ASSERT_TRUE(isAt(Paths::documents().appending("Letters")));
    ASSERT_TRUE(showsWithin({"Bank.odt", "Landlord.odt", "Old"}));
    press(Qt::Key_Left, Qt::AltModifier);
    ASSERT_TRUE(isAt(Paths::home().appending("Work/Phone")));
}

void Session::endAndReturn() {
    SCOPED_TRACE("end and return");
    app->saveSession();
    app->setKeepSessionWhileClosing(true);
    delete window;
    window = nullptr;
    app->flush();
    app = std::make_unique<AppModel>();
    window = SessionWindows::restore(*app);
    ASSERT_TRUE(window);
    begin();
    EXPECT_FALSE(app->settings().foldersFirst);
    ASSERT_EQ(window->group().count(), 2);
    EXPECT_EQ(window->group().currentIndex(), 1);
    EXPECT_EQ(window->group().tab(0).active().location(), Location::folder(Paths::documents()));
    ASSERT_TRUE(model().isSplit());
    EXPECT_EQ(model().activeIndex(), 1);
    ASSERT_TRUE(isAt(Paths::home().appending("Work/Phone")));
    EXPECT_EQ(view().objectName(), QStringLiteral("paneList"));
    ASSERT_TRUE(
        showsWithin({"Receipts", "IMG_2041.jpg", "IMG_2042.jpg", "Summer in the Mountains.mov"}));
    // What was done before can still be undone.
    view().setFocus();
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitFor([] { return !isOnDisk(Paths::home().appending("Work/Phone/Receipts")); }));
}

TEST_F(Session, ofADayIsWorkedByKeysAndMouse) {
    browse();
    search();
    workInTabs();
    changeFiles();
    useThePalette();
    changeSettings();
    endAndReturn();
}

}  // namespace
}  // namespace tarn
