#include <cerrno>
#include <map>
#include <system_error>

#include <sys/resource.h>
#include <sys/stat.h>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/PageBuffer.h"
#include "TarnCore/platform/FileBytes.h"
#include "TarnCore/platform/linux/LinuxArchives.h"
#include "TarnCore/platform/linux/LinuxFileSystem.h"
#include "tests/platform/FolderContents.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

TEST(LinuxFileSystem, readsEveryNameWhateverItsBytes) {
    const TestFolder folder;
    const std::string names[] = {"plain",       ".hidden", "line\nfeed",          "broken\xff\xfe",
                                 "back\\slash", "-rf",     std::string(255, 'n'), "...",
                                 "..\n",        "é"};
    for (const auto& name : names) folder.file(name);
    folder.folder("folder");
    folder.link("link", "nowhere");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);

    const auto reader = LinuxFileSystem().openFolder(folder.url());
    auto found = contents(*reader);
    EXPECT_EQ(found.size(), std::size(names) + 3);
    for (const auto& name : names) EXPECT_EQ(found[name], FileType::file) << name;
    EXPECT_EQ(found["folder"], FileType::directory);
    EXPECT_EQ(found["link"], FileType::symlink);
    EXPECT_EQ(found["pipe"], FileType::other);
    EXPECT_TRUE(reader->read().empty()) << "the end stays the end";
}

TEST(LinuxFileSystem, readsFoldersOfManyBatches) {
    const TestFolder folder;
    for (int i = 0; i < 2500; ++i)
        folder.file("a name of some length, number " + std::to_string(i));
    EXPECT_EQ(contents(*LinuxFileSystem().openFolder(folder.url())).size(), 2500U);
}

TEST(LinuxFileSystem, readsALargeFolderInTwoHalves) {
    const TestFolder folder;
    const std::string beginning(100, 'n');
    for (int i = 0; i < 8000; ++i) folder.file(beginning + std::to_string(i));
    const LinuxFileSystem files;
    const auto reader = files.openFolder(folder.url());
    const auto behind = reader->splitOff();
    if (!behind) GTEST_SKIP() << "not on this disk";
    EXPECT_EQ(reader->splitOff(), nullptr);
    EXPECT_EQ(behind->splitOff(), nullptr);
    // Either may be read before the other.
    auto names = contents(*behind);
    const std::size_t half = names.size();
    names.merge(contents(*reader));
    EXPECT_EQ(names.size(), 8000U);
    EXPECT_TRUE(contents(*reader).empty()) << "the end stays the end";
    EXPECT_GT(half, 2000U);
    EXPECT_LT(half, 6000U);

    const auto begun = files.openFolder(folder.url());
    begun->read();
    EXPECT_EQ(begun->splitOff(), nullptr) << "half of it has been told";
    EXPECT_EQ(files.openFolder(folder.folder("small"))->splitOff(), nullptr);
}

TEST(LinuxFileSystem, leavesNoTraceOfReadingInTheAccessTime) {
    const TestFolder folder;
    const URL file = folder.file("file", "text");
    // Older than the last change, so that any other reading would be noted.
    const timespec times[] = {{1'000'000'000, 0}, {1'100'000'000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    const LinuxFileSystem files;
    const auto accessed = [&] { return files.requireAttributes(file, Links::keep).accessed; };
    const Date before = accessed();
    EXPECT_EQ(files.readFile(file, 100), "text");
    char first[2];
    EXPECT_EQ(LinuxArchives().open(file, Links::keep)->read(0, first), 2U);
    PageBuffer buffer;
    EXPECT_EQ(files.openFolder(folder.url())->readFile("file", 100, buffer), "text");
    EXPECT_EQ(accessed(), before);
}

TEST(LinuxFileSystem, tellsAttributesOfFilesAndLinks) {
    const TestFolder folder;
    const Date modified = Date::fromUnix(1'700'000'000, 123'456'789);
    const URL file = folder.file("file", "twelve bytes", modified);
    const URL link = folder.link("link", "file");
    folder.link("dangling", "nowhere");
    ASSERT_EQ(chmod(file.c_str(), 0640), 0);
    const LinuxFileSystem files;

    const auto attributes = files.requireAttributes(link, Links::follow);
    EXPECT_EQ(attributes.type, FileType::file);
    EXPECT_EQ(attributes.size, 12);
    EXPECT_EQ(attributes.mode, 0640U);
    EXPECT_NEAR(attributes.modified.seconds, modified.seconds, 1e-6);
    EXPECT_EQ(attributes.owner, getuid());
    struct stat expected {};
    ASSERT_EQ(stat(file.c_str(), &expected), 0);
    EXPECT_EQ(attributes.device, expected.st_dev);
    EXPECT_EQ(attributes.inode, expected.st_ino);

    EXPECT_EQ(files.requireAttributes(link, Links::keep).type, FileType::symlink);
    EXPECT_EQ(files.linkTarget(link), "file");
    EXPECT_EQ(files.attributes(folder / "dangling", Links::follow), std::nullopt);
    EXPECT_EQ(errorOf([&] { files.requireAttributes(folder / "missing", Links::keep); }), ENOENT);

    const auto reader = files.openFolder(folder.url());
    EXPECT_EQ(reader->attributes("link", Links::follow)->size, 12);
    EXPECT_EQ(reader->attributes("link", Links::keep)->type, FileType::symlink);
    EXPECT_EQ(reader->attributes("missing", Links::keep), std::nullopt);
    EXPECT_EQ(reader->attributes().type, FileType::directory);
}

TEST(LinuxFileSystem, anOpenFolderOutlivesItsRemoval) {
    const TestFolder folder;
    folder.file("gone/file");
    const auto reader = LinuxFileSystem().openFolder(folder / "gone");
    ASSERT_EQ(unlink((folder / "gone/file").c_str()), 0);
    ASSERT_EQ(rmdir((folder / "gone").c_str()), 0);
    EXPECT_TRUE(contents(*reader).empty());
    EXPECT_EQ(reader->attributes("file", Links::keep), std::nullopt);
}

TEST(LinuxFileSystem, readsAtMostTheLimitAndNeverWaitsForAPipe) {
    const TestFolder folder;
    const std::string content(100'000, 'x');
    const URL file = folder.file("file", content);
    const LinuxFileSystem files;
    EXPECT_EQ(files.readFile(file, 1'000'000), content);
    EXPECT_EQ(files.readFile(file, 5), "xxxxx");
    EXPECT_EQ(files.readFile(folder.file("empty"), 5), "");
    EXPECT_FALSE(files.readFile(URL::fromPath("/proc/self/mountinfo"), 1'000'000).empty())
        << "its size is said to be 0";
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(errorOf([&] { files.readFile(folder / "pipe", 10); }), EINVAL);
    EXPECT_EQ(errorOf([&] { files.readFile(folder.url(), 10); }), EISDIR);
    EXPECT_EQ(errorOf([&] { files.readFile(folder / "missing", 10); }), ENOENT);
}

TEST(LinuxFileSystem, reachesPathsLongerThanTheKernelTakes) {
    const TestFolder folder;
    const std::string name(250, 'd');
    // Made piece by piece, as no single call could.
    int fd = ::open(folder.url().c_str(), O_RDONLY | O_DIRECTORY);
    URL deep = folder.url();
    for (int i = 0; i < 40; ++i) {
        ASSERT_EQ(mkdirat(fd, name.c_str(), 0700), 0);
        const int next = openat(fd, name.c_str(), O_RDONLY | O_DIRECTORY);
        ::close(fd);
        fd = next;
        deep = deep.appending(name);
    }
    const int file = openat(fd, "bottom", O_CREAT | O_WRONLY, 0600);
    ASSERT_EQ(::write(file, "deep", 4), 4);
    ::close(file);
    ::close(fd);

    const LinuxFileSystem files;
    ASSERT_GT(deep.path().size(), 10'000U);
    EXPECT_EQ(files.readFile(deep.appending("bottom"), 10), "deep");
    EXPECT_EQ(files.requireAttributes(deep.appending("bottom"), Links::keep).size, 4);
    EXPECT_EQ(contents(*files.openFolder(deep)).count("bottom"), 1U);
    EXPECT_EQ(files.attributes(deep.appending("missing"), Links::keep), std::nullopt);
    EXPECT_EQ(errorOf([&] { files.openFolder(folder / std::string(256, 'n')); }), ENAMETOOLONG);
}

TEST(LinuxFileSystem, saysSoWhenNoDescriptorIsLeft) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "The check of virtual tables opens a pipe of its own to look at an exception.";
#endif
    const TestFolder folder;
    const LinuxFileSystem files;
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit none = before;
    none.rlim_cur = 0;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const int error = errorOf([&] { files.openFolder(folder.url()); });
    const bool isReadable = files.isReadableFolder(folder.url());
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(error, EMFILE);
    EXPECT_FALSE(isReadable);
}

}  // namespace
}  // namespace tarn
