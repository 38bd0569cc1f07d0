#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/ItemPermissions.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "TarnCore/tags/TagStore.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

class WindowEditsTest : public testing::Test {
protected:
    void SetUp() override {
        folder.file("a.txt", "a");
        folder.file("b.txt", "b");
        folder.file("c.txt", "c");
        window = std::make_unique<WindowModel>(app, Location::folder(folder.url()));
        waitFor([this] { return pane().items().count() == 3; });
    }
    PaneModel& pane() { return window->active(); }
    void waitFor(const std::function<bool()>& condition) {
        ASSERT_TRUE(QTest::qWaitFor(condition, 10'000));
    }
    /// Runs what gives an answer, and waits for that.
    template <class Run>
    QString answerOf(const Run& run) {
        std::optional<QString> answer;
        run([&answer](const QString& refusal) { answer = refusal; });
        waitFor([&answer] { return answer.has_value(); });
        return answer.value_or(QString());
    }
    std::vector<FinderTag> tags(const char* name) { return TagStore::tags(folder / name); }
    using Tags = std::vector<FinderTag>;

    TestFolder folder;
    AppModel app;
    std::unique_ptr<WindowModel> window;
};

TEST_F(WindowEditsTest, aNewFolderIsNamedAtOnce) {
    window->edits().newFolder();
    waitFor([this] { return pane().renaming().has_value(); });
    EXPECT_EQ(*pane().renaming(), folder / "New Folder");
    EXPECT_EQ(pane().selectedItems().front().name, "New Folder");
    pane().endRename();
    pane().select({folder / "a.txt", folder / "b.txt"});
    window->edits().newFolderWithSelection();
    waitFor([this] { return pane().renaming() == folder / "New Folder with Items"; });
    EXPECT_TRUE(folder.exists("New Folder with Items/a.txt"));
    EXPECT_TRUE(folder.exists("New Folder with Items/b.txt"));
}

TEST_F(WindowEditsTest, changesWaitWhileANameIsEdited) {
    pane().beginRename(folder / "b.txt");
    folder.file("d.txt");
    folder.file("0.txt");
    QTest::qWait(600);  // More than the watch takes to tell.
    EXPECT_EQ(pane().items().count(), 3);
    EXPECT_EQ(pane().renaming(), folder / "b.txt");
    pane().endRename();
    waitFor([this] { return pane().items().count() == 5; });
}

TEST_F(WindowEditsTest, aRefusedNameIsAnsweredAndChangesNothing) {
    const struct {
        const char* name;
        const char* sentence;
    } cases[] = {
        {"b.txt", "The name “b.txt” is already taken. Please choose a different name."},
        {"", "A name can’t be empty."},
        {"x/y", "Names can’t contain “/” or “:”."},
        {"d.txt", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const QString refusal = answerOf(
            [&](auto done) { window->edits().rename(folder / "a.txt", c.name, std::move(done)); });
        EXPECT_EQ(refusal, QString::fromUtf8(c.sentence));
        EXPECT_EQ(folder.exists("a.txt"), *c.sentence != '\0');
    }
    EXPECT_EQ(folder.read("b.txt"), "b");
    waitFor([this] {
        return app.history().nextUndoTitle() == QStringLiteral("Rename “a.txt” to “d.txt”");
    });
}

TEST_F(WindowEditsTest, severalNamesAreOneChange) {
    const std::vector<URL> urls = {folder / "a.txt", folder / "b.txt"};
    // The two change places.
    std::vector<RenamePreview> previews = {{urls[0], "a.txt", "b.txt", {}},
                                           {urls[1], "b.txt", "a.txt", {}}};
    EXPECT_EQ(answerOf([&](auto done) { window->edits().renameAll(previews, std::move(done)); }),
              QString());
    EXPECT_EQ(folder.read("a.txt"), "b");
    waitFor([this] { return app.history().nextUndoTitle() == QStringLiteral("Rename 2 items"); });
    window->operations().undo();
    waitFor([this] { return folder.read("a.txt") == "a"; });
    EXPECT_EQ(folder.read("b.txt"), "b");
}

TEST_F(WindowEditsTest, aTagGoesToThoseThatLackItAndThenFromAll) {
    const FinderTag work{"Work", TagColor::blue};
    const FinderTag red{"Red", TagColor::red};
    ASSERT_TRUE(TagStore::setTags({red, work}, folder / "a.txt"));
    pane().reload();
    waitFor([this] { return !pane().items().item(0).tags.empty(); });
    pane().select({folder / "a.txt", folder / "b.txt"});
    window->edits().toggleTag(work);
    waitFor([&] { return tags("b.txt") == Tags{work}; });
    EXPECT_EQ(tags("a.txt"), (Tags{red, work}));
    EXPECT_TRUE(tags("c.txt").empty());
    waitFor([this] { return pane().items().item(1).tags.size() == 1; });
    EXPECT_EQ(pane().tagColors(pane().items().item(0)),
              (std::vector<TagColor>{TagColor::red, TagColor::blue}));
    window->edits().toggleTag(work);
    waitFor([&] { return tags("b.txt").empty(); });
    waitFor([&] { return tags("a.txt") == Tags{red}; });
    window->operations().undo();
    waitFor([&] { return tags("b.txt") == Tags{work}; });
    waitFor([&] { return tags("a.txt") == Tags{red, work}; });
}

TEST_F(WindowEditsTest, permissionsAreAskedForChangedAndTakenBack) {
    const auto canBeRun = [this](const char* name) {
        return (ItemPermissions::read({folder / name}).any & Permissions::runBits) != 0;
    };
    pane().select({folder / "a.txt", folder / "b.txt"});
    window->edits().askPermissions();
    ASSERT_TRUE(window->sheet() && window->sheet()->which == WindowSheet::Which::permissions);
    const std::vector<URL> asked = window->sheet()->urls;
    EXPECT_EQ(asked, (std::vector<URL>{folder / "a.txt", folder / "b.txt"}));
    for (const bool isDeep : {false, true}) {
        SCOPED_TRACE(isDeep);
        window->edits().changePermissions(asked, {0100, 0, isDeep});
        waitFor([&] { return canBeRun("a.txt") && canBeRun("b.txt"); });
        const QString title = QStringLiteral("Change permissions of 2 items");
        waitFor([&] { return app.history().nextUndoTitle() == title; });
        EXPECT_FALSE(canBeRun("c.txt"));
        window->operations().undo();
        waitFor([&] { return !canBeRun("a.txt") && !canBeRun("b.txt"); });
        waitFor([&] { return app.history().nextRedoTitle() == title; });
    }
}

TEST_F(WindowEditsTest, newFilesTakeFreeNames) {
    window->edits().newFile(Templates::builtIn().front());
    waitFor([this] { return pane().renaming() == folder / "untitled.txt"; });
    pane().endRename();
    window->edits().newFile(Templates::builtIn().front());
    waitFor([this] { return pane().renaming() == folder / "untitled 2.txt"; });
}

}  // namespace
}  // namespace tarn
