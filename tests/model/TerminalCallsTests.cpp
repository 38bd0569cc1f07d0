#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/HistoryModel.h"
#include "Tarn/model/TerminalCalls.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/ops/FileOps.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

class TerminalCallsTest : public testing::Test {
protected:
    /// What the terminal would be answered.
    std::string ask(const std::string& request) {
        std::optional<std::string> answer;
        bool isDone = false;
        SerialQueue terminal("tarn.terminal");
        terminal.run([&] { answer = WindowSocket::ask(request, 10); });
        terminal.run([&] { MainThreadDone(isDone); });
        EXPECT_TRUE(QTest::qWaitFor([&] { return isDone; }, 10'000));
        return answer.value_or("no window");
    }
    static void MainThreadDone(bool& isDone) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [&isDone] { isDone = true; }, Qt::QueuedConnection);
    }

    TestFolder folder;
    TestFolder sockets;
    // A socket of this test's own, whatever windows are open on the machine.
    ScopedEnvironment isolation{{"TARN_ISOLATED_ROOT", folder.url().path()},
                                {"XDG_RUNTIME_DIR", sockets.url().path()}};
    HistoryModel history{std::nullopt};
};

TEST_F(TerminalCallsTest, redoesForTheTerminal) {
    EXPECT_EQ(ask("redo"), "no window");
    const TerminalCalls calls(history);
    ASSERT_TRUE(calls.isListening());
    EXPECT_EQ(ask("redo"), "nothing");
    EXPECT_EQ(ask("format the disk"), "unknown");

    HistoryEntry entry;
    entry.title = "Rename “a” to “b\n\xC3\xA9”";
    entry.steps = FileOps::rename(folder.file("a"), "b").steps;
    history.record(entry);
    bool isUndone = false;
    history.undo([&](const HistoryModel::Outcome&) { isUndone = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return isUndone; }, 10'000));
    ASSERT_TRUE(folder.exists("a"));
    EXPECT_EQ(ask("redo"), "done\n" + entry.title);
    EXPECT_TRUE(folder.exists("b"));

    isUndone = false;
    history.undo([&](const HistoryModel::Outcome&) { isUndone = true; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return isUndone; }, 10'000));
    FileOps::rename(folder / "a", "c");
    EXPECT_EQ(ask("redo"), "failed\n“a” can’t be found. It may have been moved or deleted.");
}

TEST_F(TerminalCallsTest, oneWindowAnswers) {
    auto first = std::make_unique<TerminalCalls>(history);
    EXPECT_FALSE(TerminalCalls(history).isListening());
    EXPECT_EQ(ask("redo"), "nothing");
    first.reset();
    EXPECT_EQ(ask("redo"), "no window");
    EXPECT_TRUE(TerminalCalls(history).isListening());
}

}  // namespace
}  // namespace tarn
