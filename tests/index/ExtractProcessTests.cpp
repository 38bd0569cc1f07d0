#include <csignal>
#include <future>
#include <memory>
#include <system_error>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <unistd.h>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/index/ExtractProcess.h"
#include "tests/index/HelperProcesses.h"
#include "tests/support/PDFDocument.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using End = ExtractProcess::End;

const ExtractProtocol::Request mail = {false, "a.eml", {}};
const auto never = [] { return false; };

class ExtractProcessTest : public testing::Test {
protected:
    FileDescriptor open(const char* name = "a.eml",
                        std::string_view content = "Subject: hello\n\nbody\n") const {
        return FileDescriptor(::open(folder.file(name, content).c_str(), O_RDONLY | O_CLOEXEC));
    }
    static std::unique_ptr<ExtractProcess> start() {
        const auto program = ExtractProcess::program();
        return program ? std::make_unique<ExtractProcess>(*program, false) : nullptr;
    }
    /// A helper that does what the lines of shell say; its socket is descriptor 3.
    std::unique_ptr<ExtractProcess> startScript(const std::string& lines) const {
        const URL script = folder.file("helper", "#!/bin/sh\n" + lines + "\n");
        chmod(script.c_str(), 0700);
        return std::make_unique<ExtractProcess>(script, false);
    }

    TestFolder folder;
};

TEST_F(ExtractProcessTest, readsOneFileAfterAnother) {
    const auto helper = start();
    ASSERT_TRUE(helper);
    for (int i = 0; i < 3; ++i) {
        const auto answer = helper->read(mail, open().get(), 60, never);
        EXPECT_EQ(answer.end, End::text);
        EXPECT_NE(answer.text.find("body"), std::string::npos);
        EXPECT_TRUE(helper->isUsable());
    }
    EXPECT_EQ(helper->answered(), 3U);
}

TEST_F(ExtractProcessTest, noticesADeathWhileItReads) {
    const auto helper = start();
    ASSERT_TRUE(helper);
    ASSERT_EQ(helper->read(mail, open().get(), 60, never).end, End::text);
    kill(helper->id(), SIGSTOP);
    const auto killIt = [&] { return kill(helper->id(), SIGKILL) != 0; };
    EXPECT_EQ(helper->read(mail, open().get(), 60, killIt).end, End::died);
    EXPECT_FALSE(helper->isUsable());
}

TEST_F(ExtractProcessTest, waitsNoLongerThanItMay) {
    auto helper = start();
    ASSERT_TRUE(helper);
    ASSERT_EQ(helper->read(mail, open().get(), 60, never).end, End::text);
    kill(helper->id(), SIGSTOP);
    EXPECT_EQ(helper->read(mail, open().get(), 0.01, never).end, End::late);
    helper = start();
    kill(helper->id(), SIGSTOP);
    EXPECT_EQ(helper->read(mail, open().get(), 60, [] { return true; }).end, End::stopped);
    helper.reset();
    EXPECT_TRUE(helperProcesses().empty());
}

TEST_F(ExtractProcessTest, believesAHelperNothing) {
    const std::string ready = R"(printf 'TX\002\001\000\000\000\000\000\000\000\000' >&3)";
    const std::string textFrame = R"(TX\002\003\000\000\000\000)";
    const struct {
        const char* name;
        std::string lines;
        End end;
    } cases[] = {
        {"ends at once", "exit 0", End::notReady},
        {"is of another version",
         R"(printf 'TX\001\001\000\000\000\000\000\000\000\000' >&3; sleep 100)", End::stranger},
        {"begins with nonsense", "printf 'hello, here I am' >&3; sleep 100", End::notReady},
        {"ends after the beginning", ready + "; head -c 1 <&3 >/dev/null", End::died},
        {"answers with nonsense", ready + "; printf 'hello, here I am' >&3; sleep 100", End::died},
        {"is ready for ever", ready + "; " + ready + "; sleep 100", End::died},
        {"announces too much",
         ready + "; printf '" + textFrame + R"(\377\377\377\177' >&3; sleep 100)", End::died},
        {"announces more than comes",
         ready + "; printf '" + textFrame + R"(\004\000\000\000ab' >&3)", End::died},
        {"is no UTF-8",
         ready + "; printf '" + textFrame + R"(\002\000\000\000\377\376' >&3; sleep 100)",
         End::died},
        {"sends all but one byte",
         ready + "; printf '" + textFrame + R"(\002\000\000\000a' >&3; sleep 100)", End::late},
        {"behaves", ready + "; printf '" + textFrame + R"(\002\000\000\000ok' >&3; sleep 100)",
         End::text},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto helper = startScript(c.lines);
        const auto answer = helper->read(mail, open().get(), c.end == End::late ? 0.05 : 60, never);
        // A helper that ends may do so before or after it has been sent a file.
        const bool either = c.end == End::died && answer.end == End::notReady;
        EXPECT_TRUE(answer.end == c.end || either) << static_cast<int>(answer.end);
        EXPECT_EQ(answer.text, c.end == End::text ? "ok" : "");
    }
}

TEST_F(ExtractProcessTest, saysWhyAHelperIsNotReady) {
    const struct {
        const char* lines;
        const char* why;
    } cases[] = {{"exit 0", "It ended at once."},
                 {"exit 3", "It ended at once with status 3."},
                 {"kill -SEGV $$", "It was ended at once by signal 11."}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.lines);
        const auto helper = startScript(c.lines);
        ASSERT_EQ(helper->read(mail, open().get(), 60, never).end, End::notReady);
        EXPECT_EQ(helper->whyNotReady(), c.why);
    }
    EXPECT_TRUE(helperProcesses().empty());
}

TEST_F(ExtractProcessTest, documentsThatNeverEndAreLate) {
    PDFDocument document;
    document.addRepeated("0 0 m 1 1 l S", 60);
    const auto helper = start();
    ASSERT_TRUE(helper);
    const ExtractProtocol::Request request = {false, "a.pdf", {}};
    EXPECT_EQ(helper->read(request, open("a.pdf", document.bytes()).get(), 0.5, never).end,
              End::late);
}

TEST_F(ExtractProcessTest, endsWhatTheHelperStarted) {
    const URL number = folder / "number";
    auto helper =
        startScript("setsid sh -c 'echo $$ >" + number.path() + "; exec sleep 1000' & wait");
    while (!folder.exists("number") || !folder.read("number").ends_with('\n')) sched_yield();
    const FileDescriptor tool(
        static_cast<int>(syscall(SYS_pidfd_open, std::stoi(folder.read("number")), 0)));
    ASSERT_TRUE(tool);
    helper.reset();
    pollfd end = {tool.get(), POLLIN, 0};
    EXPECT_EQ(poll(&end, 1, 30'000), 1);
}

TEST_F(ExtractProcessTest, worksInTheBackgroundWhenAsked) {
    const auto program = ExtractProcess::program();
    ASSERT_TRUE(program);
    for (const bool inBackground : {false, true}) {
        ExtractProcess helper(*program, inBackground);
        ASSERT_EQ(helper.read(mail, open().get(), 60, never).end, End::text);
        EXPECT_EQ(sched_getscheduler(helper.id()) == SCHED_IDLE, inBackground);
        EXPECT_EQ(getpriority(PRIO_PROCESS, static_cast<id_t>(helper.id())) == 19, inBackground);
    }
}

TEST_F(ExtractProcessTest, aHelperDiesWithItsThread) {
    std::unique_ptr<ExtractProcess> helper;
    {
        TaskPool pool(1);
        std::promise<void> done;
        pool.run([&] {
            helper = start();
            if (helper) helper->read(mail, open().get(), 60, never);
            done.set_value();
        });
        done.get_future().wait();
    }
    ASSERT_TRUE(helper);
    const FileDescriptor process(static_cast<int>(syscall(SYS_pidfd_open, helper->id(), 0)));
    pollfd end = {process.get(), POLLIN, 0};
    EXPECT_EQ(poll(&end, 1, 30'000), 1);
}

TEST_F(ExtractProcessTest, saysWhenItCannotStart) {
    EXPECT_THROW(ExtractProcess(folder / "nowhere", false), std::system_error);
}

}  // namespace
}  // namespace tarn
