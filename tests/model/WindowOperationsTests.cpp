#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/FileMime.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

class WindowOperationsTest : public testing::Test {
protected:
    void SetUp() override {
        folder.file("a.txt", "a");
        folder.file("b.txt", "b");
        folder.folder("sub");
        window.emplace(app, Location::folder(folder.url()));
        app.history().flush();
        settle();
    }
    PaneModel& pane() { return window->active(); }
    WindowOperations& operations() { return window->operations(); }
    static void waitFor(const std::function<bool()>& condition) {
        ASSERT_TRUE(QTest::qWaitFor(condition, 10'000));
    }
    void settle() {
        waitFor([this] { return !pane().isLoading(); });
    }
    /// Waits for the next message and takes it away.
    std::string toast() {
        EXPECT_TRUE(QTest::qWaitFor([this] { return window->toast().has_value(); }, 10'000));
        if (!window->toast()) return {};
        last = window->toast();
        window->dismissToast(last->id);
        return last->message.toStdString();
    }
    void waitForSelection(const std::vector<URL>& wanted) {
        waitFor([&] {
            const auto items = pane().selectedItems();
            if (items.size() != wanted.size()) return false;
            for (std::size_t i = 0; i < items.size(); ++i)
                if (items[i].url != wanted[i]) return false;
            return true;
        });
    }

    TestFolder folder;
    AppModel app;
    std::optional<WindowModel> window;
    std::optional<Toast> last;
};

TEST_F(WindowOperationsTest, whatWasCopiedIsPastedAsOftenAsOneLikes) {
    pane().select({folder / "a.txt"});
    operations().copySelection();
    EXPECT_TRUE(operations().canPaste());
    EXPECT_TRUE(app.cutURLs().empty());
    operations().pasteInto(folder / "sub");
    EXPECT_EQ(toast(), "Copied “a.txt” to “sub”");
    EXPECT_EQ(folder.read("sub/a.txt"), "a");
    // Into its own folder it becomes a copy, which is then selected.
    operations().paste();
    toast();
    EXPECT_EQ(folder.read("a copy.txt"), "a");
    waitForSelection({folder / "a copy.txt"});
    EXPECT_TRUE(folder.exists("a.txt"));
}

TEST_F(WindowOperationsTest, whatWasCutIsDimmedAndPastedOnce) {
    pane().select({folder / "a.txt", folder / "b.txt"});
    operations().cutSelection();
    EXPECT_TRUE(pane().isCut(folder / "a.txt"));
    EXPECT_FALSE(pane().isCut(folder / "sub"));
    operations().pasteInto(folder / "sub");
    EXPECT_FALSE(pane().isCut(folder / "a.txt"));
    EXPECT_EQ(toast(), "Moved 2 items to “sub”");
    EXPECT_FALSE(folder.exists("a.txt"));
    EXPECT_EQ(folder.read("sub/b.txt"), "b");
    EXPECT_FALSE(operations().canPaste());
}

TEST_F(WindowOperationsTest, aCutOfAnotherProgramIsMoved) {
    app.clipboard().set(FileMime::make({{folder / "b.txt"}, true}));
    EXPECT_TRUE(pane().isCut(folder / "b.txt"));
    operations().pasteInto(folder / "sub");
    EXPECT_EQ(toast(), "Moved “b.txt” to “sub”");
    app.clipboard().set(FileMime::make({{folder / "a.txt"}, true}));
    auto text = std::make_unique<QMimeData>();
    text->setText(QStringLiteral("something else"));
    app.clipboard().set(std::move(text));
    EXPECT_TRUE(app.cutURLs().empty());
    EXPECT_FALSE(operations().canPaste());
}

TEST_F(WindowOperationsTest, everyChangeCanBeTakenBackFromItsMessage) {
    const auto takeBack = [this] {
        ASSERT_TRUE(last && last->undoable && last->undoID);
        operations().undo(*last->undoID);
        EXPECT_TRUE(toast().starts_with("Undone: "));
        EXPECT_FALSE(last->isError);
    };
    operations().moveTo({folder / "a.txt"}, folder / "sub");
    EXPECT_EQ(toast(), "Moved “a.txt” to “sub”");
    takeBack();
    EXPECT_EQ(folder.read("a.txt"), "a");

    operations().rename(folder / "a.txt", "c.txt");
    EXPECT_EQ(toast(), "Renamed “a.txt” to “c.txt”");
    waitForSelection({folder / "c.txt"});
    takeBack();
    EXPECT_EQ(folder.read("a.txt"), "a");

    std::optional<URL> made;
    operations().createFolder("sub", [&made](const URL& url) { made = url; });
    EXPECT_EQ(toast(), "Created the folder “sub 2”");
    waitFor([&] { return made.has_value(); });
    EXPECT_EQ(made, folder / "sub 2");
    takeBack();
    EXPECT_FALSE(folder.exists("sub 2"));

    pane().select({folder / "a.txt", folder / "b.txt"});
    operations().createFolderWithSelection("both");
    EXPECT_EQ(toast(), "Moved 2 items to “both”");
    EXPECT_EQ(folder.read("both/b.txt"), "b");
    takeBack();
    EXPECT_EQ(folder.read("b.txt"), "b");

    waitFor([this] { return pane().items().row(folder / "a.txt").has_value(); });
    pane().select({folder / "a.txt"});
    operations().duplicateSelection();
    EXPECT_EQ(toast(), "Duplicated “a.txt”");
    EXPECT_EQ(folder.read("a copy.txt"), "a");
    takeBack();
    EXPECT_FALSE(folder.exists("a copy.txt"));

    operations().trash({folder / "b.txt"});
    EXPECT_EQ(toast(), "Moved “b.txt” to the Trash");
    EXPECT_FALSE(folder.exists("b.txt"));
    takeBack();
    EXPECT_EQ(folder.read("b.txt"), "b");
}

TEST_F(WindowOperationsTest, undoAndRedoGoThroughTheList) {
    operations().rename(folder / "a.txt", "one.txt");
    toast();
    operations().rename(folder / "b.txt", "two.txt");
    toast();
    waitFor([this] {
        return app.history().nextUndoTitle() == QStringLiteral("Rename “b.txt” to “two.txt”");
    });
    operations().undo();
    EXPECT_EQ(toast(), "Undone: Rename “b.txt” to “two.txt”");
    operations().undo();
    toast();
    EXPECT_TRUE(folder.exists("a.txt") && folder.exists("b.txt"));
    operations().redo();
    EXPECT_EQ(toast(), "Done again: Rename “a.txt” to “one.txt”");
    EXPECT_TRUE(folder.exists("one.txt"));
    waitFor([this] { return app.history().canRedo(); });
}

TEST_F(WindowOperationsTest, whatCannotBeDoneIsToldInASentence) {
    operations().rename(folder / "a.txt", "b.txt");
    EXPECT_EQ(toast(), "The name “b.txt” is already taken. Please choose a different name.");
    EXPECT_TRUE(last->isError);
    EXPECT_FALSE(last->undoable);
    // One that goes and one that does not: the one can be taken back, the other stays in the list.
    operations().moveTo({folder / "a.txt", folder / "gone.txt"}, folder / "sub");
    EXPECT_EQ(toast(), "“gone.txt” no longer exists.");
    EXPECT_TRUE(last->isError && last->undoable);
    ASSERT_EQ(app.transfers().transfers().size(), 1u);
    EXPECT_EQ(app.transfers().activeCount(), 0u);
    EXPECT_EQ(app.transfers().transfers().front()->failures().size(), 1u);
    app.transfers().removeEnded();
    EXPECT_TRUE(app.transfers().isEmpty());
    operations().undo(*last->undoID);
    toast();
    EXPECT_TRUE(folder.exists("a.txt"));
    operations().moveTo({folder / "sub"}, folder / "sub/inner");
    EXPECT_TRUE(toast().find("inside itself") != std::string::npos) << last->message.toStdString();
}

TEST_F(WindowOperationsTest, aConflictWaitsForItsAnswer) {
    folder.file("sub/a.txt", "other");
    const struct {
        ConflictAction action;
        const char* message;  ///< Null when the transfer says nothing.
        const char* there;
        const char* beside;
    } cases[] = {
        {ConflictAction::skip, nullptr, "other", nullptr},
        {ConflictAction::keepBoth, "Copied “a.txt” to “sub”", "other", "sub/a 2.txt"},
        {ConflictAction::replace, "Copied “a.txt” to “sub”", "a", nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(name(c.action)));
        operations().copyTo({folder / "a.txt"}, folder / "sub");
        waitFor([this] { return app.transfers().asking() != nullptr; });
        TransferModel& transfer = *app.transfers().asking();
        EXPECT_EQ(transfer.windowID(), window->id());
        EXPECT_EQ(transfer.conflict()->existing, folder / "sub/a.txt");
        EXPECT_EQ(transfer.conflict()->existingSize,
                  static_cast<std::int64_t>(folder.read("sub/a.txt").size()));
        transfer.answer({c.action, false});
        waitFor([this] { return app.transfers().isEmpty(); });
        if (c.message) {
            EXPECT_EQ(toast(), c.message);
        }
        EXPECT_EQ(folder.read("sub/a.txt"), c.there);
        if (c.beside) {
            EXPECT_EQ(folder.read(c.beside), "a");
        }
    }
}

TEST_F(WindowOperationsTest, cancellingWhileAskedLeavesNothingBehind) {
    folder.file("sub/b.txt", "other");
    operations().copyTo({folder / "a.txt", folder / "b.txt"}, folder / "sub");
    waitFor([this] { return app.transfers().asking() != nullptr; });
    app.transfers().cancelAll();
    waitFor([this] { return app.transfers().activeCount() == 0; });
    EXPECT_FALSE(folder.exists("sub/a.txt"));
    EXPECT_EQ(folder.read("sub/b.txt"), "other");
}

TEST_F(WindowOperationsTest, anAppThatEndsDoesNotWaitForAnAnswer) {
    folder.file("sub/a.txt", "other");
    {
        AppModel other;
        WindowModel second(other, Location::folder(folder.url()));
        second.operations().copyTo({folder / "a.txt"}, folder / "sub");
        waitFor([&] { return other.transfers().asking() != nullptr; });
    }
    EXPECT_EQ(folder.read("sub/a.txt"), "other");
}

TEST_F(WindowOperationsTest, copiesBetweenTheSameDisksTakeTurns) {
    folder.file("sub/a.txt", "other");
    operations().copyTo({folder / "a.txt"}, folder / "sub");  // Waits for an answer.
    operations().copyTo({folder / "b.txt"}, folder / "sub");
    operations().moveTo({folder.file("c.txt", "c")}, folder / "sub");
    const auto transfers = app.transfers().transfers();
    ASSERT_EQ(transfers.size(), 3u);
    EXPECT_TRUE(transfers[0]->hasStarted());
    EXPECT_FALSE(transfers[1]->hasStarted());
    EXPECT_TRUE(transfers[2]->hasStarted());  // A move on one disk costs nothing.
    waitFor([&] { return transfers[0]->conflict().has_value(); });
    EXPECT_FALSE(folder.exists("sub/b.txt"));
    transfers[0]->answer({ConflictAction::skip, false});
    waitFor([this] { return app.transfers().isEmpty(); });
    EXPECT_EQ(folder.read("sub/b.txt"), "b");
}

TEST_F(WindowOperationsTest, onlyTheLastMessageCanBeDismissed) {
    Toast first;
    Toast second;
    window->showToast(first);
    window->showToast(second);
    window->dismissToast(first.id);
    ASSERT_TRUE(window->toast());
    EXPECT_EQ(window->toast()->id, second.id);
}

}  // namespace
}  // namespace tarn
