#include <cerrno>
#include <cstdlib>
#include <set>
#include <system_error>

#include <unistd.h>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/memory/MemoryFileSystem.h"
#include "TarnCore/platform/memory/MemoryPlatform.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

/// The sentence with which something is refused; empty when it is not.
template <class Body>
std::string sentence(const Body& body) {
    try {
        body();
        return {};
    } catch (const FileOpError& error) {
        return error.what();
    }
}

std::set<std::string> namesIn(const URL& folder) {
    std::set<std::string> names;
    const auto reader = Platform::current().files->openFolder(folder);
    for (auto batch = reader->read(); !batch.empty(); batch = reader->read())
        for (const FolderEntry& entry : batch) names.emplace(entry.view());
    return names;
}

TEST(FileOpsFriendly, saysWhyInOneSentence) {
    const struct {
        int errnum;
        const char* sentence;
    } cases[] = {
        {EPERM, "Couldn’t rename “a.txt” because you don’t have permission."},
        {EACCES, "Couldn’t rename “a.txt” because you don’t have permission."},
        {ENOENT, "Couldn’t rename “a.txt” because it no longer exists."},
        {EBUSY, "Couldn’t rename “a.txt” because it’s in use."},
        {EEXIST, "Couldn’t rename “a.txt” because an item with that name already exists."},
        {ENOSPC, "Couldn’t rename “a.txt” because the disk is full."},
        {EROFS, "Couldn’t rename “a.txt” because the disk is read-only."},
        {ENAMETOOLONG, "Couldn’t rename “a.txt”. The name is too long."},
        {EDQUOT, "Couldn’t rename “a.txt”. Your disk quota is used up."},
    };
    for (const auto& c : cases) {
        const std::system_error error(c.errnum, std::generic_category(), "rename");
        EXPECT_EQ(FileOps::friendly(error, "rename “a.txt”"), c.sentence);
    }
    EXPECT_EQ(FileOps::friendly(Error("Something odd."), "rename “a”"),
              "Couldn’t rename “a”. Something odd.");
    EXPECT_EQ(FileOps::friendly(FileOpError::missing("b"), "rename “a”"),
              "“b” can’t be found. It may have been moved or deleted.");
}

TEST(FileOpsCreate, makesAFolderUnderTheFirstFreeName) {
    const TestFolder folder;
    folder.file("New");
    const FileChange change = FileOps::createFolder(folder.url(), "New");
    EXPECT_EQ(change.url, folder / "New 2");
    EXPECT_EQ(change.steps, std::vector{Step::create(folder / "New 2")});
    EXPECT_TRUE(FileOps::isDirectory(folder / "New 2"));
    EXPECT_EQ(sentence([&] { FileOps::createFolder(folder.url(), ".."); }),
              "The name “..” is already taken. Please choose a different name.");
    EXPECT_EQ(sentence([&] { FileOps::createFolder(folder / "missing", "a"); }),
              "Couldn’t create the folder because it no longer exists.");
}

TEST(FileOpsCreate, putsItemsIntoTheNewFolderAndKeepsSameNamesApart) {
    const TestFolder folder;
    const URL a = folder.file("a/note.txt", "one");
    const URL b = folder.file("b/note.txt", "two");
    const FileChange change = FileOps::createFolder({a, b}, folder.url(), "Both");
    EXPECT_EQ(change.steps,
              (std::vector{Step::create(folder / "Both"), Step::move(a, folder / "Both/note.txt"),
                           Step::move(b, folder / "Both/note 2.txt")}));
    EXPECT_EQ(folder.read("Both/note 2.txt"), "two");
    EXPECT_FALSE(folder.exists("a/note.txt"));
}

TEST(FileOpsCreate, tellsWhatWasDoneWhenAnItemCannotBeMoved) {
    const TestFolder folder;
    const URL a = folder.file("a");
    std::vector<Step> done;
    EXPECT_EQ(sentence([&] {
                  FileOps::createFolder({a, folder / "gone"}, folder.url(), "New", &done);
              }),
              "Couldn’t move “gone” because it no longer exists.");
    EXPECT_EQ(done.size(), 2U);
    const URL parent = folder.folder("parent");
    EXPECT_EQ(sentence([&] { FileOps::createFolder({parent}, parent, "New"); }),
              "Can’t put “parent” inside itself.");
}

TEST(FileOpsRename, refusesWhatWouldLoseAFile) {
    const TestFolder folder;
    const URL a = folder.file("a", "mine");
    folder.file("b", "yours");
    folder.link("dangling", "nowhere");
    const struct {
        const char* name;
        const char* sentence;
    } cases[] = {
        {"b", "The name “b” is already taken. Please choose a different name."},
        {"dangling", "The name “dangling” is already taken. Please choose a different name."},
        {".", "The name “.” is already taken. Please choose a different name."},
        {"", "A name can’t be empty."},
        {"x:y", "Names can’t contain “/” or “:”."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(sentence([&] { FileOps::rename(a, c.name); }), c.sentence);
        EXPECT_EQ(folder.read("a"), "mine");
        EXPECT_EQ(folder.read("b"), "yours");
    }
    EXPECT_EQ(sentence([&] { FileOps::rename(folder / "gone", "c"); }),
              "“gone” can’t be found. It may have been moved or deleted.");
    EXPECT_EQ(sentence([&] { FileOps::rename(a, std::string(256, 'n')); }),
              "Couldn’t rename “a”. The name is too long.");
}

TEST(FileOpsRename, keepsNamesThatAreOnlyBytes) {
    const TestFolder folder;
    for (const std::string name : {"line\nfeed", "broken\xff", "col:on"}) {
        SCOPED_TRACE(name);
        const URL from = folder.file(name, name);
        const FileChange change = FileOps::rename(from, "renamed\xfe");
        EXPECT_EQ(change.url, folder / "renamed\xfe");
        EXPECT_EQ(folder.read("renamed\xfe"), name);
        FileOps::revert(change.steps);
        EXPECT_EQ(folder.read(name), name);
    }
    const URL a = folder.file("a");
    EXPECT_TRUE(FileOps::rename(a, "a").steps.empty());
}

TEST(FileOpsRename, changesLetterCaseOnADiskThatIgnoresIt) {
    const MemoryPlatform machine;
    machine.files->ignoreCase();
    const ScopedPlatform scoped(machine.services());
    const URL readme = URL::fromPath("/disk/readme");
    machine.files->addFile(readme, "text");
    const FileChange change = FileOps::rename(readme, "README");
    const auto reader = machine.files->openFolder(URL::fromPath("/disk"));
    EXPECT_EQ(reader->read()[0].view(), "README");
    FileOps::revert(change.steps);
    EXPECT_EQ(machine.files->openFolder(URL::fromPath("/disk"))->read()[0].view(), "readme");
    machine.files->addFile(URL::fromPath("/disk/other"));
    EXPECT_EQ(sentence([&] { FileOps::rename(readme, "OTHER"); }),
              "The name “OTHER” is already taken. Please choose a different name.");
}

TEST(FileOpsRename, twoNamesOfOneFileAreTwoItems) {
    const TestFolder folder;
    const URL a = folder.file("readme", "text");
    ASSERT_EQ(link(a.c_str(), (folder / "README").c_str()), 0);
    EXPECT_EQ(sentence([&] { FileOps::rename(a, "README"); }),
              "The name “README” is already taken. Please choose a different name.");
    EXPECT_TRUE(folder.exists("readme"));
    EXPECT_TRUE(folder.exists("README"));
}

TEST(FileOpsDuplicate, leavesNothingWhenItIsCancelledOrFails) {
    const TestFolder folder;
    const URL tree = folder.folder("tree");
    folder.file("tree/a", std::string(3'000'000, 'x'));
    const CancelToken token;
    token.cancel();
    EXPECT_EQ(sentence([&] { FileOps::duplicate(tree, token); }), "The copy was cancelled.");
    EXPECT_EQ(sentence([&] { FileOps::duplicate(folder / "gone"); }),
              "Couldn’t duplicate “gone” because it no longer exists.");
    EXPECT_EQ(sentence([&] { FileOps::duplicate(URL()); }), "Can’t put “/” inside itself.");
    EXPECT_EQ(namesIn(folder.url()), std::set<std::string>{"tree"});
    EXPECT_EQ(FileOps::duplicate(tree).url, folder / "tree copy");
    EXPECT_EQ(folder.read("tree copy/a").size(), 3'000'000U);
}

TEST(FileOpsMove, takesItemsToAnotherDiskAndBack) {
    std::string name = "/dev/shm/tarn-XXXXXX";
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    const URL disk = URL::fromPath(name);
    FileSystem& files = *Platform::current().files;
    const TestFolder folder;
    if (FileOps::sameVolume(disk, folder.url())) {
        files.removeTree(disk);
        GTEST_SKIP() << "This machine has one disk.";
    }
    folder.file("tree/sub/line\nfeed\xff", "text", Date{1000});
    folder.link("tree/link", "nowhere");
    files.createFile(disk.appending("taken"), "");
    EXPECT_THROW(FileOps::move(folder / "tree", disk.appending("taken")), std::system_error);
    EXPECT_EQ(folder.read("tree/sub/line\nfeed\xff"), "text");

    const std::vector<Step> steps = {Step::move(folder / "tree", disk.appending("moved"))};
    FileOps::reapply(steps);
    EXPECT_EQ(namesIn(folder.url()), std::set<std::string>{});
    EXPECT_EQ(namesIn(disk), (std::set<std::string>{"moved", "taken"}));
    FileOps::revert(steps);
    EXPECT_EQ(namesIn(disk), std::set<std::string>{"taken"});
    EXPECT_EQ(folder.read("tree/sub/line\nfeed\xff"), "text");
    EXPECT_EQ(files.requireAttributes(folder / "tree/sub/line\nfeed\xff", Links::keep).modified,
              Date{1000});
    EXPECT_EQ(files.linkTarget(folder / "tree/link"), "nowhere");
    files.removeTree(disk);
}

TEST(FileOpsTrash, saysWhatCannotGoThere) {
    EXPECT_EQ(sentence([] { FileOps::trash(Paths::home()); }),
              "Couldn’t move " + Text::quoted(Paths::home().name()) +
                  " to the Trash because the Trash is inside it.");
    EXPECT_EQ(sentence([] { FileOps::trash(URL()); }),
              "Couldn’t move “/” to the Trash because it’s in use.");
    EXPECT_EQ(
        sentence([] { FileOps::trash(URL::fromPath("/proc/self/status")); }),
        "Couldn’t move “status” to the Trash because its disk has no Trash that can be used.");
}

TEST(FileOpsQuestions, answerForLinksAndMissingItems) {
    const TestFolder folder;
    const URL file = folder.file("file", "12345", Date{1000});
    const URL sub = folder.folder("sub");
    EXPECT_TRUE(FileOps::isDirectory(folder.link("link", "sub")));
    EXPECT_FALSE(FileOps::isDirectory(file));
    EXPECT_TRUE(FileOps::sameFile(file, file));
    EXPECT_FALSE(FileOps::sameFile(file, sub));
    EXPECT_FALSE(FileOps::sameFile(file, folder / "gone"));
    EXPECT_TRUE(FileOps::sameVolume(file, folder / "not/yet/there"));
    EXPECT_FALSE(FileOps::sameVolume(file, URL::fromPath("/proc/self")));
    EXPECT_TRUE(FileOps::isUnchanged(file, 5, Date{1000.9}));
    EXPECT_FALSE(FileOps::isUnchanged(file, 5, Date{1001}));
    EXPECT_FALSE(FileOps::isUnchanged(file, 4, Date{1000}));
}

}  // namespace
}  // namespace tarn
