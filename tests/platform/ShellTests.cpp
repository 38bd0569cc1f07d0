#include <csignal>

#include "TarnCore/base/Error.h"
#include "TarnCore/platform/Shell.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

const URL sh = URL::fromPath("/bin/sh");

std::string failure(const URL& tool, const std::vector<std::string>& arguments, double timeout) {
    try {
        Shell::run(tool, arguments, std::nullopt, timeout);
        return {};
    } catch (const Error& error) {
        return error.what();
    }
}

TEST(Shell, returnsWhatAToolSaysAndItsStatus) {
    const TestFolder folder;
    const Shell::Output output = Shell::run(
        sh, {"-c", "pwd; cat; echo \"$1\" >&2; exit 7", "sh", "it's \"one\" word"}, folder.url());
    EXPECT_EQ(output.status, 7);
    EXPECT_EQ(output.standardOutput, folder.url().path() + "\n");
    EXPECT_EQ(output.standardError, "it's \"one\" word\n");
    EXPECT_EQ(Shell::run(sh, {"-c", "kill -KILL $$"}).status, 128 + SIGKILL);
}

TEST(Shell, readsMoreThanAPipeHoldsFromBothSides) {
    const Shell::Output output = Shell::run(
        sh, {"-c", "head -c 1000000 /dev/zero; head -c 1000000 /dev/zero >&2; echo end"});
    EXPECT_EQ(output.standardOutput.size(), 1'000'004U);
    EXPECT_EQ(output.standardError.size(), 1'000'000U);
}

TEST(Shell, endsAToolThatHangsWithItsChildren) {
    const TestFolder folder;
    EXPECT_EQ(failure(sh, {"-c", "sleep 1000 & sleep 1000"}, 0.05), "Timed out");
    // One that has closed its output, and one that does not listen.
    EXPECT_EQ(failure(sh, {"-c", "exec >&- 2>&-; sleep 1000"}, 0.05), "Timed out");
    EXPECT_EQ(failure(sh, {"-c", "trap '' TERM; while :; do sleep 1000; done"}, 0.05), "Timed out");
}

TEST(Shell, saysWhyAToolCannotBeStarted) {
    EXPECT_EQ(failure(URL::fromPath("/nowhere/tool"), {}, 1),
              "Couldn’t start “tool”. It doesn’t exist any more.");
}

}  // namespace
}  // namespace tarn
