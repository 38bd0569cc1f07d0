#include <set>

#include <sys/wait.h>

#include <nlohmann/json.hpp>
#include <unistd.h>

#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/OperationHistory.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

const Date now = *Date::fromISO8601("2026-03-15T12:00:00Z");

class OperationHistoryTest : public testing::Test {
protected:
    OperationHistoryTest() : scoped(atNow()) {}

    static Platform atNow() {
        Platform platform = makeLinuxPlatform();
        platform.clock = std::make_shared<FixedClock>(now);
        return platform;
    }
    HistoryEntry renamed(const std::string& from, const std::string& to) const {
        HistoryEntry entry;
        entry.kind = OperationKind::rename;
        entry.title = "Rename “" + from + "” to “" + to + "”";
        entry.steps = {Step::move(folder / from, folder / to)};
        entry.fileCount = 1;
        return entry;
    }

    TestFolder folder;
    URL file = folder / "stores/undo-history.json";
    ScopedPlatform scoped;
    void SetUp() override { folder.folder("stores"); }
};

TEST_F(OperationHistoryTest, isStoredInItsDocumentedForm) {
    HistoryEntry entry = renamed("a", "b\xff\n");
    entry.id = *UUID::parse("7A2D0000-0000-0000-0000-000000000001");
    entry.kind = OperationKind::batchRename;
    entry.steps.push_back(Step::create(folder / "c"));
    entry.steps.push_back(Step::create(folder / "c", folder / "d"));
    entry.steps.push_back(Step::tags(folder / "a", {"Work\n4"}, {}));
    OperationHistory(file).record(entry);
    const std::string base = folder.url().string();
    EXPECT_EQ(JSON::parse(folder.read("stores/undo-history.json")), JSON::parse(R"([{
        "id": "7A2D0000-0000-0000-0000-000000000001",
        "date": 795268800.0, "kind": "batchRename", "fileCount": 1,
        "title": "Rename “a” to “b�\n”",
        "steps": [
            {"move": {"from": ")" + base + R"(/a", "to": ")" + base + R"(/b%FF%0A"}},
            {"create": {"url": ")" + base + R"(/c"}},
            {"create": {"url": ")" + base + R"(/c", "trashedAt": ")" + base + R"(/d"}},
            {"tags": {"url": ")" + base + R"(/a", "old": ["Work\n4"], "new": []}}
        ]}])"));
    const auto stack = OperationHistory(file).undoStack();
    ASSERT_EQ(stack.size(), 1U);
    EXPECT_EQ(stack[0].steps, entry.steps);
    EXPECT_EQ(stack[0].date, now);
}

TEST_F(OperationHistoryTest, undoesRedoesAndForgetsTheRedoneOnANewChange) {
    folder.file("b", "text");
    OperationHistory history(file);
    int changes = 0;
    history.onChange = [&] { ++changes; };
    history.record(HistoryEntry{});
    EXPECT_EQ(changes, 0) << "without steps nothing happens";
    history.record(renamed("a", "b"));
    EXPECT_EQ(history.nextUndoTitle(), "Rename “a” to “b”");
    ASSERT_TRUE(history.undo());
    EXPECT_TRUE(folder.exists("a"));
    EXPECT_EQ(history.nextRedoTitle(), "Rename “a” to “b”");
    EXPECT_FALSE(history.canUndo());
    EXPECT_FALSE(OperationHistory(file).canUndo());
    ASSERT_TRUE(history.redo());
    EXPECT_TRUE(folder.exists("b"));
    EXPECT_TRUE(OperationHistory(file).canUndo());
    history.undo();
    history.record(HistoryEntry{});
    EXPECT_TRUE(history.canRedo());
    history.record(renamed("x", "y"));
    EXPECT_FALSE(history.canRedo());
    EXPECT_EQ(changes, 5);
    history.clear();
    EXPECT_FALSE(OperationHistory(file).canUndo());
    EXPECT_EQ(history.undo(), std::nullopt);
}

TEST_F(OperationHistoryTest, undoesOneInTheMiddleAndKeepsTheListsWhenItCannot) {
    folder.file("b");
    folder.file("d");
    OperationHistory history(file);
    history.record(renamed("a", "b"));
    const UUID middle = history.undoStack().back().id;
    history.record(renamed("c", "d"));
    EXPECT_TRUE(history.canUndo(middle));
    ASSERT_TRUE(history.undo(middle));
    EXPECT_EQ(history.undoStack().size(), 1U);
    EXPECT_FALSE(history.canUndo(middle));
    FileOps::rename(folder / "d", "elsewhere");
    EXPECT_THROW(history.undo(), FileOpError);
    EXPECT_EQ(history.undoStack().size(), 1U);
    EXPECT_EQ(history.redoStack().size(), 1U);
    EXPECT_EQ(history.undo(UUID::random()), std::nullopt);
}

TEST_F(OperationHistoryTest, storesTheNewestFiveHundredOfTheLastSevenDays) {
    {
        OperationHistory history(file);
        for (int i = 0; i < 600; ++i) history.record(renamed(std::to_string(i), "x"));
        EXPECT_EQ(history.undoStack().size(), 600U);
    }
    const auto stored = OperationHistory(file).undoStack();
    ASSERT_EQ(stored.size(), 500U);
    EXPECT_EQ(stored.front().title, "Rename “100” to “x”");

    OperationHistory history(file);
    history.clear();
    for (const double days : {8.0, 7.0, 6.9, 0.0}) {
        HistoryEntry entry = renamed("a", "b");
        entry.date = now - days * 86400;
        history.record(entry);
    }
    EXPECT_EQ(OperationHistory(file).undoStack().size(), 2U);
}

TEST_F(OperationHistoryTest, keepsAFileThatItCannotRead) {
    for (const char* content : {"{\"broken\": ", "{}", R"([{"id": "x"}])",
                                R"([{"id":"7A2D0000-0000-0000-0000-000000000001","date":1,)"
                                R"("kind":"future","steps":[]}])"}) {
        SCOPED_TRACE(content);
        folder.file("stores/undo-history.json", content);
        OperationHistory history(file);
        EXPECT_FALSE(history.canUndo());
        EXPECT_EQ(folder.read("stores/undo-history.json"), content) << "only a change writes";
        history.record(renamed("a", "b"));
        EXPECT_EQ(folder.read("stores/undo-history.json.unreadable"), content);
        history.record(renamed("c", "d"));
        EXPECT_FALSE(folder.exists("stores/undo-history.json.unreadable 2"));
        EXPECT_EQ(OperationHistory(file).undoStack().size(), 2U);
        Platform::current().files->removeFile(folder / "stores/undo-history.json.unreadable");
    }
}

TEST_F(OperationHistoryTest, addsToALineThatItDoesNotUnderstandAndLeavesItWhenItIsListed) {
    OperationHistory(file).record(renamed("a", "b"));
    OperationHistory(file).record(renamed("c", "d"));
    OperationHistory(file).record(renamed("e", "f"));
    // A fault of the disk, in the middle of the steps.
    std::string text = folder.read("stores/undo-history.json");
    const std::size_t at = text.find("\"move\"", text.find("\"move\"") + 1);
    ASSERT_NE(at, text.npos);
    text[at + 1] = '\0';
    folder.file("stores/undo-history.json", text);

    OperationHistory history(file);
    history.record(renamed("g", "h"));
    std::vector<std::string> titles;
    for (const HistoryEntry& entry : history.undoStack()) titles.push_back(entry.title);
    EXPECT_EQ(titles, (std::vector<std::string>{"Rename “a” to “b”", "Rename “e” to “f”",
                                                "Rename “g” to “h”"}));
    EXPECT_FALSE(folder.exists("stores/undo-history.json.unreadable")) << "only a change writes";
    history.record(renamed("i", "j"));
    EXPECT_NE(folder.read("stores/undo-history.json.unreadable").find(text.substr(at, 20)),
              text.npos);
    EXPECT_EQ(OperationHistory(file).undoStack().size(), 4U);
}

TEST_F(OperationHistoryTest, theLinesOfOthersStayAsTheyAre) {
    OperationHistory(file).record(renamed("line\nfeed", "br\xffken"));
    const std::string before = folder.read("stores/undo-history.json");
    OperationHistory(file).record(renamed("c", "d"));
    const std::string after = folder.read("stores/undo-history.json");
    EXPECT_TRUE(after.starts_with(before.substr(0, before.size() - 3))) << after;
    const auto stack = OperationHistory(file).undoStack();
    ASSERT_EQ(stack.size(), 2U);
    EXPECT_EQ(stack[0].steps, renamed("line\nfeed", "br\xffken").steps);
}

TEST_F(OperationHistoryTest, seesWhatOtherProcessesDo) {
    folder.file("b");
    OperationHistory window(file);
    OperationHistory terminal(file);
    terminal.record(renamed("a", "b"));
    EXPECT_FALSE(window.canUndo());
    EXPECT_TRUE(window.refresh());
    EXPECT_FALSE(window.refresh());
    EXPECT_TRUE(window.canUndo());
    ASSERT_TRUE(terminal.undo());
    EXPECT_EQ(window.undo(), std::nullopt) << "taken back already";
    window.record(renamed("c", "d"));
    terminal.record(renamed("e", "f"));
    OperationHistory::append(file, renamed("g", "h"));
    const auto all = OperationHistory(file).undoStack();
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[2].title, renamed("g", "h").title);
}

TEST_F(OperationHistoryTest, keepsInMemoryWhatTheDiskRefuses) {
    const URL missing = folder / "not/there/undo-history.json";
    OperationHistory history(missing);
    history.record(renamed("a", "b"));
    EXPECT_TRUE(history.canUndo());
    folder.folder("not/there");
    OperationHistory(missing).record(renamed("c", "d"));
    history.record(renamed("e", "f"));
    std::set<std::string> titles;
    for (const auto& entry : OperationHistory(missing).undoStack()) titles.insert(entry.title);
    EXPECT_EQ(titles, (std::set<std::string>{"Rename “a” to “b”", "Rename “c” to “d”",
                                             "Rename “e” to “f”"}));
}

TEST_F(OperationHistoryTest, eightProcessesLoseNothing) {
    constexpr int processes = 8;
    constexpr int each = 20;
    std::vector<pid_t> children;
    for (int i = 0; i < processes; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            OperationHistory history(file);
            for (int n = 0; n < each; ++n)
                history.record(renamed(std::to_string(i) + "-" + std::to_string(n), "x"));
            _exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    std::set<std::string> titles;
    for (const auto& entry : OperationHistory(file).undoStack()) titles.insert(entry.title);
    EXPECT_EQ(titles.size(), std::size_t{processes * each});
}

TEST_F(OperationHistoryTest, twoProcessesRacingForNamesMakeAsManyItems) {
    constexpr int each = 60;
    const URL place = folder.folder("place");
    std::vector<pid_t> children;
    for (int i = 0; i < 2; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            for (int n = 0; n < each; ++n) {
                const URL made = FileOps::createFolder(place, "New").url;
                const URL item = FileOps::uniqueURL(made.appending("a"));
                Platform::current().files->createFile(item, "x");
                FileOps::trash(made);
            }
            _exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    const auto folders = Platform::current().trash->folders();
    ASSERT_FALSE(folders.empty());
    std::size_t count = 0;
    const auto reader = Platform::current().files->openFolder(folders.front());
    for (auto batch = reader->read(); !batch.empty(); batch = reader->read())
        for (const FolderEntry& entry : batch) {
            EXPECT_TRUE(FileOps::exists(folders.front().appending(entry.view()).appending("a")));
            ++count;
        }
    EXPECT_EQ(count, std::size_t{2 * each});
}

}  // namespace
}  // namespace tarn
