#include <sys/stat.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/Permissions.h"
#include "TarnCore/platform/FileMode.h"
#include "TarnCore/platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

class PermissionsTest : public testing::Test {
protected:
    void set(const URL& url, std::uint32_t mode) { ASSERT_EQ(chmod(url.c_str(), mode), 0); }
    std::uint32_t mode(const URL& url) {
        struct stat status {};
        return lstat(url.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }
    /// The sentence of the failure, empty for none.
    std::string change(const std::vector<URL>& items, const PermissionChange& what) {
        steps.clear();
        try {
            Permissions::change(items, what, {}, steps);
            return {};
        } catch (const FileOpError& error) {
            return error.what();
        }
    }

    TestFolder folder;
    std::vector<Step> steps;
};

TEST_F(PermissionsTest, bitsAreGivenAndTakenAndTheRestStays) {
    const struct {
        std::uint32_t before, given, taken, after;
    } cases[] = {
        {0640, 0111, 0, 0751},    {0777, 0, 0022, 0755}, {04755, 0, 0055, 04700},
        {0640, 0400, 0002, 0640}, {0000, 0777, 0, 0777},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Permissions::text(c.before));
        const URL file = folder.file("file");
        set(file, c.before);
        EXPECT_EQ(change({file}, {c.given, c.taken, false}), "");
        EXPECT_EQ(mode(file), c.after);
        EXPECT_EQ(steps.size(), c.before == c.after ? 0U : 1U);
        FileOps::revert(steps);
        EXPECT_EQ(mode(file), c.before);
        ASSERT_EQ(unlink(file.c_str()), 0);
    }
}

TEST_F(PermissionsTest, everythingInsideIsChangedButLinksAndWhatTheyLeadTo) {
    const URL outside = folder.file("outside.txt");
    const URL text = folder.file("top/inner/text.txt");
    const URL script = folder.file("top/inner/script");
    const URL shut = folder.folder("top/shut");
    const URL hidden = folder.file("top/shut/hidden");
    const URL link = folder.link("top/link", outside.path());
    for (const URL& url : {outside, text, hidden}) set(url, 0600);
    set(script, 0700);
    set(shut, 0300);
    for (const char* one : {"top", "top/inner"}) set(folder / one, 0700);
    EXPECT_EQ(change({folder / "top"}, {0455, 0, true}), "");
    EXPECT_EQ(mode(text), 0644U) << "was never run";
    EXPECT_EQ(mode(script), 0755U);
    EXPECT_EQ(mode(shut), 0755U);
    EXPECT_EQ(mode(hidden), 0644U) << "lies in a folder that was opened by this";
    EXPECT_EQ(mode(folder / "top/inner"), 0755U);
    EXPECT_EQ(mode(outside), 0600U);
    EXPECT_EQ(steps.size(), 6U);

    // Closed again from the inside out, and taken back from the outside in.
    EXPECT_EQ(change({folder / "top"}, {0, 0777, true}), "");
    const std::vector<Step> closed = steps;
    FileOps::revert(closed);
    EXPECT_EQ(mode(hidden), 0644U);
    EXPECT_EQ(mode(folder / "top"), 0755U);

    // Named itself, a link stands for what it leads to.
    EXPECT_EQ(change({link}, {0044, 0, false}), "");
    EXPECT_EQ(mode(outside), 0644U);
}

TEST_F(PermissionsTest, whatIsGoneIsToldAndTheRestIsDone) {
    const URL file = folder.file("here.txt");
    set(file, 0600);
    EXPECT_EQ(change({folder / "gone.txt", file}, {0044, 0, false}),
              "“gone.txt” can’t be found. It may have been moved or deleted.");
    EXPECT_EQ(mode(file), 0644U);
    EXPECT_TRUE(FileOps::canRevert(steps));
    ASSERT_EQ(unlink(file.c_str()), 0);
    EXPECT_FALSE(FileOps::canRevert(steps));
    EXPECT_THROW(FileOps::revert(steps), FileOpError);
}

TEST_F(PermissionsTest, anItemThatTookThePlaceOfAnotherIsLeftAlone) {
    const URL file = folder.file("a");
    const URL other = folder.file("b");
    set(other, 0600);
    const auto seen = Platform::current().files->requireAttributes(file, Links::keep);
    ASSERT_EQ(rename(other.c_str(), file.c_str()), 0);
    EXPECT_THROW(FileMode::set(file, seen, 0777), std::system_error);
    EXPECT_EQ(mode(file), 0600U);
    const URL link = folder.link("link", file.path());
    const auto linkSeen = Platform::current().files->requireAttributes(link, Links::keep);
    EXPECT_THROW(FileMode::set(link, linkSeen, 0777), std::system_error);
    EXPECT_EQ(mode(file), 0600U);
}

TEST_F(PermissionsTest, lettersAreThoseOfListings) {
    const std::pair<std::uint32_t, const char*> cases[] = {
        {0754, "rwxr-xr--"},  {0000, "---------"},  {04755, "rwsr-xr-x"}, {04655, "rwSr-xr-x"},
        {02750, "rwxr-s---"}, {01777, "rwxrwxrwt"}, {01776, "rwxrwxrwT"},
    };
    for (const auto& [bits, letters] : cases) EXPECT_EQ(Permissions::text(bits), letters);
}

}  // namespace
}  // namespace tarn
