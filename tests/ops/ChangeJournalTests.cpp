#include <functional>

#include <sys/wait.h>

#include <unistd.h>

#include "TarnCore/ops/ChangeJournal.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/JournalRepair.h"
#include "TarnCore/ops/TwoPhaseMove.h"
#include "TarnCore/platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

/// Does the work in another process, which ends without tidying up, as in a crash.
void crashAfter(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        try {
            work();
        } catch (const std::exception&) {
            _exit(1);
        }
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
}

std::size_t notes() {
    std::size_t count = 0;
    if (!FileOps::exists(JournalRepair::folder())) return 0;
    const auto reader = Platform::current().files->openFolder(JournalRepair::folder());
    for (auto batch = reader->read(); !batch.empty(); batch = reader->read()) count += batch.size();
    return count;
}

/// A swap of "a" and "b", left after so many of its four renames.
class SwapCut : public testing::TestWithParam<int> {};

TEST_P(SwapCut, isTakenBackUnlessItWasDone) {
    const TestFolder folder;
    folder.file("a", "A");
    folder.file("b", "B");
    const std::vector<ChangeJournal::Move> moves = {
        {folder / "a", folder / "b", folder / ".tarn-move-1"},
        {folder / "b", folder / "a", folder / ".tarn-move-2"},
    };
    crashAfter([&] {
        const ChangeJournal journal = ChangeJournal::ofMoves(moves);
        const TwoPhaseMove::Moves steps = {{moves[0].from, moves[0].temporary},
                                           {moves[1].from, moves[1].temporary},
                                           {moves[0].temporary, moves[0].to},
                                           {moves[1].temporary, moves[1].to}};
        for (int i = 0; i < GetParam(); ++i) FileOps::move(steps[i].first, steps[i].second);
        _exit(0);
    });
    EXPECT_EQ(notes(), 1U);
    ChangeJournal::repair();
    const bool isDone = GetParam() == 4;
    EXPECT_EQ(folder.read("a"), isDone ? "B" : "A");
    EXPECT_EQ(folder.read("b"), isDone ? "A" : "B");
    EXPECT_FALSE(folder.exists(".tarn-move-1"));
    EXPECT_FALSE(folder.exists(".tarn-move-2"));
    EXPECT_EQ(notes(), 0U);
    EXPECT_EQ(ChangeJournal::repair(), 0U);
}
INSTANTIATE_TEST_SUITE_P(ChangeJournal, SwapCut, testing::Range(0, 5));

TEST(ChangeJournal, puttingBackReplacesNothing) {
    const TestFolder folder;
    folder.file("a\n\xff", "mine");
    const ChangeJournal::Move move{folder / "a\n\xff", folder / "b", folder / ".tarn-rename-1"};
    crashAfter([&] {
        const ChangeJournal journal = ChangeJournal::ofMoves(std::span(&move, 1));
        FileOps::move(move.from, move.temporary);
        _exit(0);
    });
    folder.file("a\n\xff", "made since");
    EXPECT_EQ(ChangeJournal::repair(), 1U);
    EXPECT_EQ(folder.read("a\n\xff"), "made since");
    EXPECT_EQ(folder.read("a\n\xff 2"), "mine");
}

TEST(ChangeJournal, leavesTheNotesOfRunningProgramsAlone) {
    const TestFolder folder;
    folder.file("a", "A");
    const ChangeJournal::Move move{folder / "a", folder / "b", folder / ".tarn-rename-1"};
    const ChangeJournal journal = ChangeJournal::ofMoves(std::span(&move, 1));
    FileOps::move(move.from, move.temporary);
    int status = 0;
    const pid_t child = fork();
    if (child == 0) _exit(static_cast<int>(ChangeJournal::repair()));
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(folder.exists(".tarn-rename-1"));
}

TEST(ChangeJournal, deletesHalfMadeCopiesAndNothingElse) {
    const TestFolder folder;
    const std::string prefix = ChangeJournal::temporaryName(ChangeJournal::copying);
    folder.folder("one");
    folder.folder("two");
    crashAfter([&] {
        ChangeJournal journal = ChangeJournal::ofLeftovers(prefix);
        journal.addFolder(folder / "one");
        journal.addFolder(folder / "two");
        _exit(0);
    });
    folder.file("one/" + prefix + "/inside/file");
    folder.file("two/" + prefix + "-2");
    folder.file("two/.tarn-copy-of-another-program");
    folder.file("three/" + prefix);
    EXPECT_EQ(ChangeJournal::repair(), 2U);
    EXPECT_FALSE(folder.exists("one/" + prefix));
    EXPECT_FALSE(folder.exists("two/" + prefix + "-2"));
    EXPECT_TRUE(folder.exists("two/.tarn-copy-of-another-program"));
    EXPECT_TRUE(folder.exists("three/" + prefix));
    EXPECT_EQ(notes(), 0U);
}

TEST(ChangeJournal, believesNoteThatWereTamperedWithAsLittleAsPossible) {
    const TestFolder folder;
    folder.file("precious/file", "x");
    const std::string url = folder.url().string();
    for (const std::string& note : std::vector<std::string>{
             "",
             "not JSON\n{\"leftovers\":",
             R"({"leftovers":{"folder":")" + url + R"(","prefix":""}})",
             R"({"leftovers":{"folder":")" + url + R"(","prefix":"precious"}})",
             R"({"leftovers":{"folder":")" + url + R"(","prefix":".tarn-"}})",
             R"({"leftovers":{"folder":1,"prefix":2}})",
             R"({"move":{"from":"file:///a","to":"x"}})",
             R"([{"move":1}])",
         }) {
        SCOPED_TRACE(note);
        EXPECT_EQ(JournalRepair::repair(note).items, 0U);
        EXPECT_EQ(folder.read("precious/file"), "x");
    }
}

TEST(ChangeJournal, waitsForADiskThatIsAway) {
    const TestFolder folder;
    const std::string gone = (folder / "unplugged/a").string();
    EXPECT_FALSE(JournalRepair::repair(R"({"move":{"from":")" + gone + R"(","to":")" + gone +
                                       R"(2","temporary":")" + gone + R"(3","inode":1}})")
                     .isFinished);
}

TEST(TwoPhaseMove, putsEverythingBackWhenOneMoveFails) {
    const TestFolder folder;
    for (const char* name : {"a", "b", "c"}) folder.file(name, name);
    folder.file("taken", "taken");
    for (const bool direct : {false, true}) {
        const TwoPhaseMove::Moves moves = {{folder / "a", folder / "new/a"},
                                           {folder / "b", folder / "taken"},
                                           {folder / "c", folder / "x"}};
        const auto failure = direct ? TwoPhaseMove::runDirectly(moves)
                                    : TwoPhaseMove::run(moves, ChangeJournal::moving);
        EXPECT_TRUE(failure.error);
        EXPECT_EQ(failure.at, 1U);
        EXPECT_FALSE(failure.notPutBack);
        for (const char* name : {"a", "b", "c", "taken"}) EXPECT_EQ(folder.read(name), name);
        EXPECT_EQ(notes(), 0U);
    }
}

}  // namespace
}  // namespace tarn
