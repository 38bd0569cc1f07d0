#include <cerrno>
#include <string>
#include <system_error>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/TreeWriter.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

class TreeWriting : public testing::Test {
protected:
    TreeWriting() {
        folder_.folder("in");
        folder_.file("out/kept", "kept");
        writer_ = Platform::current().archives->writer(folder_ / "in");
    }
    /// The errno of what the call throws; 0 when it throws nothing.
    template <class Call>
    int failure(Call&& call) {
        try {
            call(*writer_);
            return 0;
        } catch (const std::system_error& error) {
            return error.code().value();
        }
    }

    TestFolder folder_;
    std::unique_ptr<TreeWriter> writer_;
};

TEST_F(TreeWriting, makesFoldersOnTheWayAndReplacesNothing) {
    writer_->writeFile("a/b/c.txt", "one", {});
    EXPECT_EQ(failure([](auto& w) { w.writeFile("a/b/c.txt", "two", {}); }), EEXIST);
    EXPECT_EQ(failure([](auto& w) { w.createFolder("a/b/c.txt"); }), EEXIST);
    EXPECT_EQ(failure([](auto& w) { w.createLink("a/b/c.txt", "x", {}); }), EEXIST);
    EXPECT_EQ(failure([](auto& w) { w.writeFile("a/b/c.txt/d", "two", {}); }), ENOTDIR);
    EXPECT_EQ(failure([](auto& w) { w.createFolder("a/b"); }), 0);
    EXPECT_EQ(folder_.read("in/a/b/c.txt"), "one");
}

TEST_F(TreeWriting, neverLeavesItsFolder) {
    folder_.link("in/link", "../out");
    folder_.link("in/file", "../out/kept");
    const auto throughLink = [&](const std::string& path) {
        return failure([&](auto& w) { w.writeFile(path, "x", {}); });
    };
    EXPECT_EQ(throughLink("link/new"), ENOTDIR);
    EXPECT_EQ(throughLink("file"), EEXIST);
    for (const char* path : {"..", "../out/new", "a/../../out/new", "a/..", "/tmp/..", "."}) {
        SCOPED_TRACE(path);
        EXPECT_NE(throughLink(path), 0);
    }
    EXPECT_NE(failure([](auto& w) { w.createHardLink("copy", "../out/kept"); }), 0);
    EXPECT_NE(failure([](auto& w) { w.createHardLink("copy", "link/kept"); }), 0);
    EXPECT_NE(failure([](auto& w) { w.removeFile("link/kept"); }), 0);
    EXPECT_NE(failure([](auto& w) { w.finishFolder("link", {.mode = 0700, .modified = {}}); }), 0);
    EXPECT_EQ(folder_.read("out/kept"), "kept");
    EXPECT_FALSE(folder_.exists("out/new"));
}

TEST_F(TreeWriting, followsPathsThatAreTooLongForOneCall) {
    std::string path;
    for (int i = 0; i < 25; ++i) path += std::string(200, 'd') + "/";
    writer_->writeFile(path + "a", "x", {});
    writer_->writeFile(path + "b", "y", {});
    EXPECT_EQ(failure([&](auto& w) { w.writeFile(path + "a", "z", {}); }), EEXIST);
    EXPECT_EQ(failure([&](auto& w) { w.writeFile(std::string(256, 'n'), "z", {}); }), ENAMETOOLONG);
}

TEST_F(TreeWriting, writesHolesAndOverWhatItWrote) {
    const auto file = writer_->createFile("f", {.mode = 04777, .modified = UnixTime{1500000000}});
    file->append("abc");
    file->skip(100000);
    file->append("end");
    file->writeAt(1, "X");
    EXPECT_EQ(file->size(), 100006);
    file->finish();
    EXPECT_EQ(folder_.read("in/f"), "aXc" + std::string(100000, '\0') + "end");
    struct stat facts {};
    ASSERT_EQ(stat((folder_ / "in/f").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07000, 0u);
    EXPECT_EQ(facts.st_mtime, 1500000000);
}

}  // namespace
}  // namespace tarn
