#include <cerrno>
#include <map>
#include <system_error>

#include "TarnCore/base/PageBuffer.h"
#include "TarnCore/platform/linux/LinuxFileSystem.h"
#include "TarnCore/platform/memory/MemoryFileSystem.h"
#include "tests/platform/FolderContents.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

/// What every file system must do, on the real disk and in memory.
class RealDisk {
public:
    URL url(std::string_view relative) const { return folder_ / relative; }
    void file(std::string_view relative, std::string_view content = {}) {
        folder_.file(relative, content, Date{1000});
    }
    void folder(std::string_view relative) { folder_.folder(relative); }
    void link(std::string_view relative, std::string_view target) {
        folder_.link(relative, target);
    }
    FileSystem& files() { return files_; }

private:
    TestFolder folder_;
    LinuxFileSystem files_;
};

class MemoryDisk {
public:
    MemoryDisk() {
        files_.addFolder(root_);
        files_.setBatchSize(2);
    }
    URL url(std::string_view relative) const { return root_.appending(relative); }
    void file(std::string_view relative, std::string_view content = {}) {
        files_.addFile(url(relative), content, Date{1000});
    }
    void folder(std::string_view relative) { files_.addFolder(url(relative)); }
    void link(std::string_view relative, std::string_view target) {
        files_.addLink(url(relative), target);
    }
    FileSystem& files() { return files_; }

private:
    URL root_ = URL::fromPath("/home/ann");
    MemoryFileSystem files_;
};

template <class Disk>
class FileSystemContract : public testing::Test {
protected:
    Disk disk;
};
using Disks = testing::Types<RealDisk, MemoryDisk>;
TYPED_TEST_SUITE(FileSystemContract, Disks);

TYPED_TEST(FileSystemContract, readsNamesAndTypesOfOneLevel) {
    this->disk.file("sub/file");
    this->disk.file("sub/folder/inner");
    this->disk.file("sub/line\nfeed\xff");
    this->disk.link("sub/link", "file");
    this->disk.file("sub.txt");
    this->disk.file("sub file");
    const auto reader = this->disk.files().openFolder(this->disk.url("sub"));
    EXPECT_EQ(contents(*reader), (std::map<std::string, FileType>{
                                     {"file", FileType::file},
                                     {"folder", FileType::directory},
                                     {"line\nfeed\xff", FileType::file},
                                     {"link", FileType::symlink},
                                 }));
    EXPECT_TRUE(reader->read().empty()) << "the end stays the end";
}

TYPED_TEST(FileSystemContract, keepsABatchUntilTheNextReadOfTheSameReader) {
    this->disk.file("a/inner");
    this->disk.file("b/other");
    const auto first = this->disk.files().openFolder(this->disk.url("a"));
    const auto batch = first->read();
    const auto second = this->disk.files().openFolder(this->disk.url("b"));
    second->read();
    ASSERT_EQ(batch.size(), 1U);
    EXPECT_EQ(batch[0].view(), "inner");
}

TYPED_TEST(FileSystemContract, opensChildrenWithoutFollowingLinks) {
    this->disk.file("real/inside");
    this->disk.link("loop", ".");
    this->disk.file("file");
    const auto reader = this->disk.files().openFolder(this->disk.url(""));
    EXPECT_EQ(contents(*reader->open("real")).size(), 1U);
    EXPECT_EQ(errorOf([&] { reader->open("missing"); }), ENOENT);
    EXPECT_EQ(errorOf([&] { reader->open("file"); }), ENOTDIR);
    const int error = errorOf([&] { reader->open("loop"); });
    EXPECT_TRUE(error == ELOOP || error == ENOTDIR) << error;
}

TYPED_TEST(FileSystemContract, describesLinksOrWhatTheyLeadTo) {
    this->disk.file("folder/file", "twelve bytes");
    this->disk.link("link", "folder/../folder/file");
    this->disk.link("dangling", "nowhere");
    FileSystem& files = this->disk.files();
    const URL link = this->disk.url("link");
    EXPECT_EQ(files.requireAttributes(link, Links::follow).size, 12);
    EXPECT_EQ(files.requireAttributes(link, Links::follow).modified, Date{1000});
    EXPECT_EQ(files.requireAttributes(link, Links::keep).type, FileType::symlink);
    EXPECT_EQ(files.linkTarget(link), "folder/../folder/file");
    EXPECT_EQ(files.attributes(this->disk.url("dangling"), Links::follow), std::nullopt);
    EXPECT_EQ(errorOf([&] { files.requireAttributes(this->disk.url("x"), Links::keep); }), ENOENT);
    EXPECT_EQ(errorOf([&] { files.linkTarget(this->disk.url("folder")); }), EINVAL);

    const auto reader = files.openFolder(this->disk.url(""));
    EXPECT_EQ(reader->attributes("link", Links::follow)->size, 12);
    EXPECT_EQ(reader->attributes("link", Links::keep)->type, FileType::symlink);
    EXPECT_EQ(reader->attributes("missing", Links::keep), std::nullopt);
    EXPECT_EQ(reader->attributes().type, FileType::directory);
}

TYPED_TEST(FileSystemContract, resolvesLinksAndRefusesLoops) {
    this->disk.file("real/file");
    this->disk.link("short", "real");
    this->disk.link("a", "b");
    this->disk.link("b", "a");
    FileSystem& files = this->disk.files();
    EXPECT_TRUE(files.resolved(this->disk.url("real/file")));
    EXPECT_EQ(files.resolved(this->disk.url("short/file")),
              files.resolved(this->disk.url("real/file")));
    EXPECT_EQ(files.resolved(this->disk.url("a")), std::nullopt);
    EXPECT_EQ(files.resolved(this->disk.url("real/missing")), std::nullopt);
    EXPECT_EQ(errorOf([&] { files.openFolder(this->disk.url("a")); }), ELOOP);
    EXPECT_TRUE(files.isReadableFolder(this->disk.url("short")));
    EXPECT_FALSE(files.isReadableFolder(this->disk.url("short/file")));
    EXPECT_EQ(contents(*files.openFolder(this->disk.url("short"))).size(), 1U);
}

TYPED_TEST(FileSystemContract, readsAtMostTheLimit) {
    this->disk.file("file", "0123456789");
    FileSystem& files = this->disk.files();
    EXPECT_EQ(files.readFile(this->disk.url("file"), 100), "0123456789");
    EXPECT_EQ(files.readFile(this->disk.url("file"), 4), "0123");
    EXPECT_EQ(errorOf([&] { files.readFile(this->disk.url(""), 10); }), EISDIR);
    EXPECT_EQ(errorOf([&] { files.readFile(this->disk.url("missing"), 10); }), ENOENT);
    EXPECT_EQ(errorOf([&] { files.readFile(this->disk.url(std::string(256, 'n')), 1); }),
              ENAMETOOLONG);
}

TYPED_TEST(FileSystemContract, readsFilesOfAnOpenFolderIntoOneBuffer) {
    const std::string large(700'000, 'x');
    this->disk.file("sub/large", large + "end");
    this->disk.file("sub/small", "0123456789");
    this->disk.file("sub/empty", "");
    this->disk.folder("sub/folder");
    this->disk.link("sub/link", "small");
    const auto reader = this->disk.files().openFolder(this->disk.url("sub"));
    PageBuffer buffer;
    constexpr std::size_t all = 1'000'000;
    EXPECT_EQ(reader->readFile("large", all, buffer), large + "end");
    const char* const place = buffer.data();
    EXPECT_EQ(reader->readFile("large", large.size(), buffer), large);
    EXPECT_EQ(reader->readFile("small", all, buffer), "0123456789");
    EXPECT_EQ(reader->readFile("small", 4, buffer), "0123");
    EXPECT_EQ(reader->readFile("empty", all, buffer), "");
    EXPECT_EQ(buffer.data(), place);
    EXPECT_EQ(errorOf([&] { reader->readFile("link", all, buffer); }), ELOOP);
    EXPECT_EQ(errorOf([&] { reader->readFile("folder", all, buffer); }), EISDIR);
    EXPECT_EQ(errorOf([&] { reader->readFile("missing", all, buffer); }), ENOENT);
}

TYPED_TEST(FileSystemContract, neverReplacesAnItem) {
    this->disk.file("file", "old");
    this->disk.folder("folder");
    this->disk.link("dangling", "nowhere");
    this->disk.file("other", "other");
    this->disk.folder("second");
    FileSystem& files = this->disk.files();
    for (const char* name : {"file", "folder", "dangling"}) {
        SCOPED_TRACE(name);
        const URL taken = this->disk.url(name);
        EXPECT_EQ(errorOf([&] { files.createFolder(taken); }), EEXIST);
        EXPECT_EQ(errorOf([&] { files.createFile(taken, ""); }), EEXIST);
        EXPECT_EQ(errorOf([&] { files.createFile(taken, "new"); }), EEXIST);
        EXPECT_EQ(errorOf([&] { files.createLink(taken, "x"); }), EEXIST);
        EXPECT_EQ(errorOf([&] { files.move(this->disk.url("other"), taken); }), EEXIST);
        EXPECT_EQ(errorOf([&] { files.move(this->disk.url("second"), taken); }), EEXIST);
    }
    EXPECT_EQ(files.readFile(this->disk.url("file"), 10), "old");
    EXPECT_EQ(files.readFile(this->disk.url("other"), 10), "other");
    EXPECT_EQ(contents(*files.openFolder(this->disk.url(""))).size(), 5U) << "no leftovers";
}

TYPED_TEST(FileSystemContract, makesAndMovesItems) {
    FileSystem& files = this->disk.files();
    this->disk.folder("start");
    const URL deep = this->disk.url("start/a/b");
    EXPECT_EQ(errorOf([&] { files.createFolder(deep); }), ENOENT);
    files.createFolders(deep);
    files.createFolders(deep);
    files.createFile(deep.appending("line\nfeed\xff"), "content");
    files.createFile(deep.appending("empty"), "");
    files.createLink(deep.appending("link"), "nowhere");
    EXPECT_EQ(errorOf([&] { files.createFolders(deep.appending("empty")); }), ENOTDIR);
    files.move(this->disk.url("start/a"), this->disk.url("moved"));
    EXPECT_EQ(files.readFile(this->disk.url("moved/b/line\nfeed\xff"), 100), "content");
    files.move(this->disk.url("moved/b/link"), this->disk.url("link"));
    EXPECT_EQ(files.linkTarget(this->disk.url("link")), "nowhere");
    EXPECT_TRUE(contents(*files.openFolder(this->disk.url("start"))).empty());
    EXPECT_EQ(errorOf([&] { files.move(this->disk.url("gone"), this->disk.url("x")); }), ENOENT);
    EXPECT_EQ(errorOf([&] { files.move(this->disk.url("moved"), this->disk.url("moved/b/in")); }),
              EINVAL);
    EXPECT_EQ(files.readFile(this->disk.url("moved/b/empty"), 1), "");
}

TYPED_TEST(FileSystemContract, deletesTreesWithoutFollowingLinks) {
    FileSystem& files = this->disk.files();
    this->disk.file("keep/precious", "x");
    this->disk.file("tree/a/b/c/file");
    this->disk.file("tree/a/file");
    this->disk.folder("tree/empty");
    this->disk.link("tree/a/out", "../../keep");
    this->disk.link("way", "tree");
    EXPECT_EQ(errorOf([&] { files.removeFolder(this->disk.url("tree")); }), ENOTEMPTY);
    EXPECT_EQ(errorOf([&] { files.removeFile(this->disk.url("tree")); }), EISDIR);
    const TreeRemoved link = files.removeTree(this->disk.url("way"));
    EXPECT_EQ(link.removed, 1);
    const TreeRemoved removed = files.removeTree(this->disk.url("tree"));
    EXPECT_EQ(removed.removed, 8);
    EXPECT_EQ(removed.kept, 0);
    EXPECT_EQ(files.attributes(this->disk.url("tree"), Links::keep), std::nullopt);
    EXPECT_EQ(files.readFile(this->disk.url("keep/precious"), 1), "x");
    EXPECT_EQ(errorOf([&] { files.removeTree(this->disk.url("tree")); }), ENOENT);
}

TYPED_TEST(FileSystemContract, stopsDeletingWhenCancelled) {
    FileSystem& files = this->disk.files();
    for (const char* name : {"tree/a/1", "tree/a/2", "tree/b/3"}) this->disk.file(name);
    TreeRemoval how;
    how.removed = [&] { how.token.cancel(); };
    const TreeRemoved removed = files.removeTree(this->disk.url("tree"), how);
    EXPECT_EQ(removed.removed, 1);
    EXPECT_GT(removed.kept, 0);
    EXPECT_NE(files.attributes(this->disk.url("tree"), Links::keep), std::nullopt);
}

TEST(MemoryFileSystem, failsWhereItIsTold) {
    MemoryFileSystem files;
    const URL folder = URL::fromPath("/a/locked");
    files.addFile(folder.appending("file"));
    files.failWith(folder, EACCES);
    EXPECT_EQ(errorOf([&] { files.openFolder(folder); }), EACCES);
    EXPECT_EQ(errorOf([&] { files.readFile(folder.appending("file"), 1); }), EACCES);
    EXPECT_EQ(contents(*files.openFolder(URL::fromPath("/a"))).count("locked"), 1U);
    files.failWith(folder, 0);
    EXPECT_EQ(contents(*files.openFolder(folder)).size(), 1U);
}

}  // namespace
}  // namespace tarn
