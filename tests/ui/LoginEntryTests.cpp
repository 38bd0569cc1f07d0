
#include <gtest/gtest.h>

#include "Tarn/ui/desktop/LoginEntry.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

class LoginEntryTest : public testing::Test {
protected:
    std::string written() const {
        return root.read(LoginEntry::file().path().substr(root.url().path().size() + 1));
    }
    bool isThere() const {
        return root.exists(LoginEntry::file().path().substr(root.url().path().size() + 1));
    }
    TestFolder root;
    ScopedEnvironment isolation{{"TARN_ISOLATED_ROOT", root.url().path()}};
};

TEST_F(LoginEntryTest, comesAndGoesWithTheSetting) {
    LoginEntry::set(false, "/opt/tarn-window");
    EXPECT_FALSE(isThere());
    LoginEntry::set(true, "/opt/tarn-window");
    const std::string first = written();
    EXPECT_NE(first.find("\nExec=\"/opt/tarn-window\"\n"), std::string::npos);
    // What its user has made of it since stays.
    LoginEntry::set(true, "/usr/bin/tarn-window");
    EXPECT_EQ(written(), first);
    LoginEntry::set(false, "/opt/tarn-window");
    EXPECT_FALSE(isThere());
}

TEST_F(LoginEntryTest, leavesWhatSomebodyElseHasWritten) {
    const std::string theirs = "[Desktop Entry]\nExec=tarn-window --new-window\n";
    root.file(LoginEntry::file().path().substr(root.url().path().size() + 1), theirs);
    LoginEntry::set(true, "/opt/tarn-window");
    LoginEntry::set(false, "/opt/tarn-window");
    EXPECT_EQ(written(), theirs);
}

TEST_F(LoginEntryTest, namesAnyProgram) {
    const struct {
        const char* program;
        const char* exec;
    } cases[] = {
        {"/opt/my apps/tarn-window", R"("/opt/my apps/tarn-window")"},
        {"/opt/100%/tarn-window", R"("/opt/100%%/tarn-window")"},
        {R"(/opt/"a"$b`c/tarn-window)", R"("/opt/\\"a\\"\\$b\\`c/tarn-window")"},
        {R"(/opt/a\b/tarn-window)", R"("/opt/a\\\\b/tarn-window")"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.program);
        EXPECT_NE(LoginEntry::content(c.program).find("\nExec=" + std::string(c.exec) + "\n"),
                  std::string::npos)
            << LoginEntry::content(c.program);
    }
}

}  // namespace
}  // namespace tarn
