#include <filesystem>
#include <thread>

#include <QtGui/QAccessible>
#include <QtTest/QTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolButton>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/sheets/ConflictSheet.h"
#include "Tarn/ui/sheets/ConflictSide.h"
#include "Tarn/ui/sheets/HistoryRow.h"
#include "Tarn/ui/sheets/HistorySheet.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/text/TabularLabel.h"
#include "Tarn/ui/transfers/ToastView.h"
#include "Tarn/ui/transfers/TransferRow.h"
#include "Tarn/ui/transfers/TransfersButton.h"
#include "Tarn/ui/transfers/TransfersPanel.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

/// No entries of the tests before.
struct EmptyHistory {
    EmptyHistory() { std::filesystem::remove(OperationHistory::defaultFile().path()); }
};

class ChangesTest : public testing::Test {
protected:
    void SetUp() override {
        folder.file("a.txt", "new and longer", Date::fromUnix(1'700'000'000));
        folder.file("b.txt", "b");
        folder.file("sub/a.txt", "old", Date::fromUnix(1'600'000'000));
        window =
            new BrowserWindow(std::make_unique<WindowModel>(app, Location::folder(folder.url())));
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->resize(900, 640);
        show(*window);
        ASSERT_TRUE(waitFor([this] { return !model().active().isLoading(); }));
    }
    void TearDown() override { delete window; }

    WindowModel& model() { return window->model(); }
    WindowOperations& operations() { return model().operations(); }
    ToastView* toast() { return window->findChild<ToastView*>(); }
    TransfersPanel* panel() { return window->findChild<TransfersPanel*>(); }
    template <class SheetType>
    SheetType* sheet() {
        for (SheetType* one : window->findChildren<SheetType*>())
            if (one->isVisible()) return one;
        return nullptr;
    }
    ConflictSheet* askedFor(const char* name, const URL& destination) {
        operations().copyTo({folder / name}, destination);
        EXPECT_TRUE(waitFor([this] { return sheet<ConflictSheet>() != nullptr; }));
        return sheet<ConflictSheet>();
    }
    static void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    }

    TestFolder folder;
    EmptyHistory empty;
    AppModel app;
    BrowserWindow* window = nullptr;
};

TEST_F(ChangesTest, aToastOffersUndoAndGoesByItself) {
    EXPECT_FALSE(toast()->isVisible());
    operations().rename(folder / "b.txt", "c.txt");
    ASSERT_TRUE(waitFor([this] { return toast()->isVisible(); }));
    EXPECT_GT(toast()->timeLeft(), ToastView::shortTime);
    QAccessibleInterface* said = QAccessible::queryAccessibleInterface(toast());
    EXPECT_EQ(said->text(QAccessible::Name), QStringLiteral("Renamed “b.txt” to “c.txt”"));
    auto* undo = toast()->findChild<QPushButton*>();
    ASSERT_TRUE(undo->isVisible());
    QTest::mouseClick(undo, Qt::LeftButton);
    ASSERT_TRUE(waitFor([this] { return folder.exists("b.txt"); }));
    ASSERT_TRUE(waitFor([this] {
        return toast()->isVisible() &&
               toast()->accessibleName().startsWith(QStringLiteral("Undone: "));
    }));
    EXPECT_FALSE(undo->isVisible());
    EXPECT_LE(toast()->timeLeft(), ToastView::shortTime);
    QTest::mouseClick(toast()->findChild<QToolButton*>(), Qt::LeftButton);
    EXPECT_FALSE(toast()->isVisible());
}

TEST_F(ChangesTest, aToastStaysWhileItIsLookedAt) {
    Toast message;
    message.message = QStringLiteral("A message");
    message.undoable = true;
    message.undoID = UUID::random();
    model().showToast(message);
    QEnterEvent enter({}, {}, {});
    toast()->setAttribute(Qt::WA_UnderMouse);
    QApplication::sendEvent(toast(), &enter);
    EXPECT_TRUE(toast()->isHeld());
    toast()->setAttribute(Qt::WA_UnderMouse, false);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(toast(), &leave);
    EXPECT_FALSE(toast()->isHeld());
    toast()->findChild<QPushButton*>()->setFocus();
    EXPECT_TRUE(toast()->isHeld());
}

TEST_F(ChangesTest, aConflictShowsWhatSetsTheTwoApart) {
    ConflictSheet* asked = askedFor("a.txt", folder / "sub");
    ASSERT_TRUE(asked);
    EXPECT_EQ(asked->incoming().marks(), QStringLiteral("Newer · Larger"));
    EXPECT_EQ(asked->existing().marks(), QString());
    EXPECT_FALSE(asked->button(ConflictAction::merge));
    EXPECT_EQ(QApplication::focusWidget(), asked->button(ConflictAction::keepBoth));
    // The window below hears no keys and no clicks.
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_FALSE(model().active().hasSelection());
    for (int i = 0; i < 12; ++i) {
        press(Qt::Key_Tab);
        EXPECT_TRUE(asked->isAncestorOf(QApplication::focusWidget()));
    }
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitFor([this] { return app.transfers().isEmpty(); }));
    EXPECT_EQ(folder.read("sub/a.txt"), "old");
}

TEST_F(ChangesTest, aLetterAnswersAConflict) {
    const struct {
        Qt::Key key;
        const char* content;
        bool isBeside;
    } cases[] = {
        {Qt::Key_S, "old", false},
        {Qt::Key_K, "old", true},
        {Qt::Key_R, "new and longer", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.key);
        ASSERT_TRUE(askedFor("a.txt", folder / "sub"));
        press(c.key);
        EXPECT_FALSE(sheet<ConflictSheet>());
        ASSERT_TRUE(waitFor([this] { return app.transfers().activeCount() == 0; }));
        app.transfers().removeEnded();
        EXPECT_EQ(folder.read("sub/a.txt"), c.content);
        EXPECT_EQ(folder.exists("sub/a 2.txt"), c.isBeside);
    }
}

TEST_F(ChangesTest, oneAnswerCanBeForAll) {
    folder.file("sub/b.txt", "old");
    operations().copyTo({folder / "a.txt", folder / "b.txt"}, folder / "sub");
    ASSERT_TRUE(waitFor([this] { return sheet<ConflictSheet>() != nullptr; }));
    sheet<ConflictSheet>()->applyToAll()->setChecked(true);
    QTest::mouseClick(sheet<ConflictSheet>()->button(ConflictAction::keepBoth), Qt::LeftButton);
    ASSERT_TRUE(waitFor([this] { return app.transfers().isEmpty(); }));
    EXPECT_EQ(folder.read("sub/b 2.txt"), "b");
    EXPECT_EQ(folder.read("sub/a 2.txt"), "new and longer");
}

TEST_F(ChangesTest, twoFoldersCanBeMerged) {
    folder.file("inner/sub/c.txt", "c");
    operations().copyTo({folder / "inner/sub"}, folder.url());
    ASSERT_TRUE(waitFor([this] { return sheet<ConflictSheet>() != nullptr; }));
    ASSERT_TRUE(sheet<ConflictSheet>()->button(ConflictAction::merge));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitFor([this] { return app.transfers().isEmpty(); }));
    EXPECT_EQ(folder.read("sub/c.txt"), "c");
    EXPECT_EQ(folder.read("sub/a.txt"), "old");
}

TEST_F(ChangesTest, noLabelOfASheetIsCutOff) {
    ConflictSheet* asked = askedFor("a.txt", folder / "sub");
    for (const int width : {1200, 700, 400, 360}) {
        SCOPED_TRACE(width);
        window->resize(width, 640);
        QCoreApplication::processEvents();
        for (QPushButton* button : asked->findChildren<QPushButton*>()) {
            EXPECT_GE(button->width(), button->sizeHint().width()) << qPrintable(button->text());
            EXPECT_TRUE(
                asked->rect().contains(QRect(button->mapTo(asked, QPoint()), button->size())));
        }
        for (QLabel* label : asked->findChildren<QLabel*>())
            EXPECT_GE(label->height(), label->heightForWidth(label->width()))
                << qPrintable(label->text());
    }
}

TEST_F(ChangesTest, transfersAreListedUntilTheirFailuresWereSeen) {
    auto* button = window->findChild<TransfersButton*>();
    EXPECT_FALSE(button->isVisible());
    operations().copyTo({folder / "gone.txt", folder / "b.txt"}, folder / "sub");
    ASSERT_TRUE(waitFor([button] { return button->isVisible(); }));
    ASSERT_TRUE(waitFor([this] { return app.transfers().activeCount() == 0; }));
    QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_TRUE(panel()->isVisible());
    ASSERT_EQ(panel()->rows().size(), 1u);
    bool isTold = false;
    for (QLabel* label : panel()->findChildren<QLabel*>())
        isTold |= label->text() == QStringLiteral("“gone.txt” no longer exists.");
    EXPECT_TRUE(isTold);
    press(Qt::Key_Escape);
    EXPECT_FALSE(panel()->isVisible());
    EXPECT_TRUE(app.transfers().isEmpty());
    EXPECT_TRUE(waitFor([button] { return !button->isVisible(); }));
}

TEST_F(ChangesTest, aClickElsewhereClosesTheTransfers) {
    model().setShowsTransfers(true);
    ASSERT_TRUE(panel()->isVisible());
    QTest::mouseClick(panel(), Qt::LeftButton, {}, panel()->rect().center());
    EXPECT_TRUE(panel()->isVisible());
    auto* view = window->findChild<PaneView*>(QStringLiteral("paneGrid"));
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->viewport()->rect().bottomLeft());
    EXPECT_FALSE(panel()->isVisible());
    EXPECT_FALSE(model().showsTransfers());
}

TEST_F(ChangesTest, theHistoryTakesBackOneByItself) {
    operations().rename(folder / "a.txt", "one.txt");
    ASSERT_TRUE(waitFor([this] {
        return app.history().nextUndoTitle() == QStringLiteral("Rename “a.txt” to “one.txt”");
    }));
    operations().rename(folder / "b.txt", "two.txt");
    ASSERT_TRUE(waitFor([this] {
        return app.history().nextUndoTitle() == QStringLiteral("Rename “b.txt” to “two.txt”");
    }));
    model().setShowsHistory(true);
    ASSERT_TRUE(waitFor(
        [this] { return sheet<HistorySheet>() && sheet<HistorySheet>()->rows().size() >= 2; }));
    HistorySheet* history = sheet<HistorySheet>();
    // The list is as high as its rows.
    EXPECT_TRUE(waitFor([&] {
        return history->rows()[1]->visibleRegion().boundingRect() == history->rows()[1]->rect();
    }));
    // Newest first, so the second is the first renaming.
    QPushButton* undo = history->rows()[1]->undo();
    ASSERT_TRUE(undo->isEnabled());
    QTest::mouseClick(undo, Qt::LeftButton);
    ASSERT_TRUE(waitFor([this] { return folder.exists("a.txt"); }));
    EXPECT_TRUE(folder.exists("two.txt"));
    ASSERT_TRUE(waitFor([&] { return history->rows().size() == 1; }));
    EXPECT_TRUE(history->rows()[0]->undo()->isEnabled());
    // Moved by something else: it cannot be taken back any more.
    ASSERT_EQ(rename((folder / "two.txt").c_str(), (folder / "three.txt").c_str()), 0);
    model().setShowsHistory(false);
    EXPECT_FALSE(history->isVisible());
    model().setShowsHistory(true);
    ASSERT_TRUE(waitFor(
        [this] { return sheet<HistorySheet>() && sheet<HistorySheet>()->rows().size() == 1; }));
    EXPECT_FALSE(sheet<HistorySheet>()->rows()[0]->undo()->isEnabled());
    press(Qt::Key_Escape);
    EXPECT_FALSE(model().showsHistory());
}

TEST_F(ChangesTest, theLastWindowAsksBeforeItStopsATransfer) {
    ASSERT_TRUE(askedFor("a.txt", folder / "sub"));
    window->close();
    ASSERT_TRUE(window->isVisible());
    QuestionSheet* question = sheet<QuestionSheet>();
    ASSERT_TRUE(question);
    EXPECT_EQ(QApplication::focusWidget(), question->no());
    press(Qt::Key_Escape);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(app.transfers().activeCount(), 1u);
    window->close();
    ASSERT_TRUE(sheet<QuestionSheet>());
    QTest::mouseClick(sheet<QuestionSheet>()->yes(), Qt::LeftButton);
    EXPECT_TRUE(waitFor([this] { return !window->isVisible(); }));
    EXPECT_EQ(folder.read("sub/a.txt"), "old");
    EXPECT_FALSE(folder.exists("sub/a 2.txt"));
}

/// Something to do for an archive until it is stopped.
ActivityTask& workUntilStopped(AppModel& app) {
    return app.activities().add("Compress", [](ActivityTask::Handle& handle) {
        while (!handle.token().isCancelled()) std::this_thread::yield();
    });
}

TEST_F(ChangesTest, theLastWindowAsksBeforeItStopsWorkOnArchives) {
    app.activities().show("Reading", "doc.text");
    window->close();
    EXPECT_FALSE(window->isVisible()) << "a service goes on by itself another time";
    show(*window);
    workUntilStopped(app);
    window->close();
    ASSERT_TRUE(sheet<QuestionSheet>());
    ASSERT_TRUE(window->isVisible());
    QTest::mouseClick(sheet<QuestionSheet>()->yes(), Qt::LeftButton);
    EXPECT_TRUE(waitFor([this] { return !window->isVisible(); }));
    EXPECT_FALSE(app.activities().hasWork());
}

TEST_F(ChangesTest, quittingAsksBeforeAnyWindowGoes) {
    auto second = std::make_unique<BrowserWindow>(
        std::make_unique<WindowModel>(app, Location::folder(folder.url())));
    second->setAttribute(Qt::WA_DeleteOnClose, false);
    second->show();
    ActivityTask& work = workUntilStopped(app);
    QTest::keyClick(window, Qt::Key_Q, Qt::ControlModifier);
    ASSERT_TRUE(sheet<QuestionSheet>());
    EXPECT_TRUE(window->isVisible() && second->isVisible());
    press(Qt::Key_Escape);
    EXPECT_FALSE(work.isStopped());
    // Windows that are closed together leave nobody to ask but the last.
    QApplication::closeAllWindows();
    EXPECT_NE(window->isVisible(), second->isVisible());
    app.activities().stopWork();
    EXPECT_TRUE(waitFor([this] { return !app.activities().hasWork(); }));
}

TEST_F(ChangesTest, aMessageIsSeenOverASheet) {
    model().setShowsHistory(true);
    HistorySheet* history = sheet<HistorySheet>();
    ASSERT_TRUE(history);
    Toast told;
    told.message = "Undone";
    model().showToast(told);
    ASSERT_TRUE(toast()->isVisible());
    const QPoint middle = toast()->mapTo(window, toast()->rect().center());
    QWidget* top = window->childAt(middle);
    EXPECT_TRUE(top == toast() || toast()->isAncestorOf(top));
}

TEST_F(ChangesTest, theQuestionsOfAClosedWindowGoToAnother) {
    auto second = std::make_unique<BrowserWindow>(
        std::make_unique<WindowModel>(app, Location::folder(folder.url())));
    second->setAttribute(Qt::WA_DeleteOnClose, false);
    second->show();
    second->model().operations().copyTo({folder / "a.txt"}, folder / "sub");
    ASSERT_TRUE(waitFor([&] { return second->findChild<ConflictSheet*>() != nullptr; }));
    EXPECT_FALSE(sheet<ConflictSheet>());
    second.reset();
    ASSERT_TRUE(waitFor([this] { return sheet<ConflictSheet>() != nullptr; }));
    QTest::keyClick(sheet<ConflictSheet>(), Qt::Key_Escape);
    EXPECT_TRUE(waitFor([this] { return app.transfers().isEmpty(); }));
}

}  // namespace
}  // namespace tarn
