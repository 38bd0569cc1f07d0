#include <cstdlib>
#include <set>

#include <sys/stat.h>

#include <unistd.h>

#include "TarnCore/platform/linux/DirectorySizes.h"
#include "TarnCore/platform/linux/LinuxFileSystem.h"
#include "TarnCore/platform/linux/LinuxTrash.h"
#include "TarnCore/platform/linux/TrashInfo.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

const Date now = *Date::fromISO8601("2026-03-15T12:00:00Z");

/// A home Trash in a folder of its own, and a second disk where the machine has one.
class LinuxTrashTest : public testing::Test {
protected:
    LinuxTrashTest() : trash(files, volumes, std::make_shared<FixedClock>(now)) {
        setenv("XDG_DATA_HOME", (root / "data").c_str(), 1);
    }
    ~LinuxTrashTest() override {
        unsetenv("XDG_DATA_HOME");
        if (disk) files->removeTree(*disk);
    }

    /// A folder on a disk other than that of the home folder.
    URL otherDisk() {
        std::string name = "/dev/shm/tarn-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) return {};
        disk = URL::fromPath(name);
        const auto here = files->requireAttributes(root.url(), Links::follow);
        const auto there = files->requireAttributes(*disk, Links::follow);
        if (here.device == there.device) return {};
        Mount mount;
        mount.mountPoint = *disk;
        mount.device = there.device;
        auto mounts = volumes->mounts();
        mounts.push_back(mount);
        volumes->setMounts(mounts);
        return *disk;
    }
    std::string info(const URL& trashed) const {
        return files->readFile(trashed.parent().parent().appending("info").appending(
                                   std::string(trashed.name()) + ".trashinfo"),
                               10'000);
    }

    TestFolder root;
    std::shared_ptr<LinuxFileSystem> files = std::make_shared<LinuxFileSystem>();
    std::shared_ptr<MemoryVolumes> volumes = std::make_shared<MemoryVolumes>();
    std::optional<URL> disk;
    LinuxTrash trash;
};

TEST_F(LinuxTrashTest, keepsTheItemAndWhereItWas) {
    const struct {
        std::string name;
        std::string encoded;
    } cases[] = {
        {"report.pdf", "report.pdf"},
        {"line\nfeed %.txt", "line%0Afeed%20%25.txt"},
        {"broken\xff", "broken%FF"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.encoded);
        const URL item = root.file("docs/" + c.name, c.name);
        const URL place = trash.trash(item);
        EXPECT_EQ(place, root / ("data/Trash/files/" + c.name));
        EXPECT_EQ(files->readFile(place, 100), c.name);
        EXPECT_FALSE(root.exists("docs/" + c.name));
        EXPECT_EQ(info(place), "[Trash Info]\nPath=" + (root / "docs/").path() + "/" + c.encoded +
                                   "\nDeletionDate=2026-03-15T12:00:00\n");
        const auto origin = trash.origin(place);
        ASSERT_TRUE(origin);
        EXPECT_EQ(origin->url, item);
        EXPECT_EQ(origin->deleted, now);
    }
}

TEST_F(LinuxTrashTest, keepsItemsOfOneNameApart) {
    std::set<URL> places;
    for (int i = 0; i < 60; ++i) places.insert(trash.trash(root.file("a.txt", std::to_string(i))));
    EXPECT_EQ(places.size(), 60U);
    EXPECT_TRUE(places.contains(root / "data/Trash/files/a.2.txt"));
    // An item whose note was lost keeps its name.
    root.file("data/Trash/files/b.txt", "lost");
    EXPECT_EQ(trash.trash(root.file("b.txt")), root / "data/Trash/files/b.2.txt");
    EXPECT_EQ(root.read("data/Trash/files/b.txt"), "lost");
    EXPECT_FALSE(root.exists("data/Trash/info/b.txt.trashinfo"));
}

TEST_F(LinuxTrashTest, makesRoomForTheNoteOfALongName) {
    std::string name;
    while (name.size() < 250) name += "é";
    name += ".pdf";
    const URL item = root.file(name, "text");
    const URL place = trash.trash(item);
    EXPECT_LE(place.name().size(), 245U);
    EXPECT_TRUE(place.name().ends_with("é.pdf"));
    EXPECT_EQ(trash.origin(place)->url, item);
}

TEST_F(LinuxTrashTest, trashesFoldersAndLinksThemselves) {
    root.file("target/file", "x");
    const URL link = root.link("link", "target");
    EXPECT_EQ(files->linkTarget(trash.trash(link)), "target");
    const URL folder = trash.trash(root / "target");
    EXPECT_EQ(files->readFile(folder.appending("file"), 1), "x");
    EXPECT_THROW(trash.trash(root / "gone"), std::system_error);
    EXPECT_FALSE(root.exists("data/Trash/info/gone.trashinfo"));
}

TEST_F(LinuxTrashTest, forgetsOnlyWhatHasLeft) {
    const URL place = trash.trash(root.file("a"));
    trash.forget(place);
    EXPECT_TRUE(root.exists("data/Trash/info/a.trashinfo")) << "it is still there";
    files->move(place, root / "a");
    trash.forget(place);
    EXPECT_FALSE(root.exists("data/Trash/info/a.trashinfo"));
    // Elsewhere nothing is touched.
    root.file("files/b");
    root.file("info/b.trashinfo");
    trash.forget(root / "files/b");
    EXPECT_TRUE(root.exists("info/b.trashinfo"));
}

TEST_F(LinuxTrashTest, namesTheFolderOfTheHomeBeforeAnythingIsInIt) {
    EXPECT_FALSE(root.exists("data/Trash"));
    EXPECT_EQ(trash.folders(), std::vector{root / "data/Trash/files"}) << "it is waited for";
}

TEST_F(LinuxTrashTest, usesATrashOfTheItemsOwnDisk) {
    const URL top = otherDisk();
    if (top.isRoot()) GTEST_SKIP() << "This machine has one disk.";
    const URL item = top.appending("folder/a b.txt");
    files->createFolders(item.parent());
    files->createFile(item, "text");
    const URL own = top.appending(".Trash-" + std::to_string(getuid()));
    const URL place = trash.trash(item);
    EXPECT_EQ(place, own.appending("files/a b.txt"));
    EXPECT_EQ(info(place),
              "[Trash Info]\nPath=folder/a%20b.txt\nDeletionDate=2026-03-15T12:00:00\n");
    EXPECT_EQ(trash.origin(place)->url, item);
    EXPECT_EQ(files->requireAttributes(own, Links::keep).mode, 0700U);
    EXPECT_EQ(trash.folders(), (std::vector{root / "data/Trash/files", own.appending("files")}));
    files->move(place, item);
    trash.forget(place);
    EXPECT_EQ(trash.origin(place), std::nullopt);
}

TEST_F(LinuxTrashTest, trustsASharedTrashOnlyWithItsStickyBit) {
    const URL top = otherDisk();
    if (top.isRoot()) GTEST_SKIP() << "This machine has one disk.";
    const URL shared = top.appending(".Trash");
    const std::string user = std::to_string(getuid());
    const auto trashOne = [&] {
        const URL item = top.appending("a");
        files->createFile(item, "");
        return trash.trash(item);
    };
    files->createFolder(shared);
    chmod(shared.c_str(), 0777);
    EXPECT_EQ(trashOne(), top.appending(".Trash-" + user + "/files/a"));
    chmod(shared.c_str(), 01777);
    EXPECT_EQ(trashOne(), shared.appending(user).appending("files/a"));
    // A link in its place could lead anywhere.
    files->removeTree(shared);
    files->createFolder(top.appending("elsewhere"));
    chmod(top.appending("elsewhere").c_str(), 01777);
    files->createLink(shared, "elsewhere");
    EXPECT_EQ(trashOne(), top.appending(".Trash-" + user + "/files/a.2"));
}

TEST_F(LinuxTrashTest, leavesTheItemWhereItsDiskHasNoTrash) {
    const URL top = otherDisk();
    if (top.isRoot()) GTEST_SKIP() << "This machine has one disk.";
    files->createFile(top.appending("a"), "text");
    files->createFolder(top.appending("elsewhere"));
    files->createLink(top.appending(".Trash-" + std::to_string(getuid())), "elsewhere");
    try {
        trash.trash(top.appending("a"));
        FAIL();
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().value(), EXDEV);
    }
    EXPECT_EQ(files->readFile(top.appending("a"), 10), "text");
    EXPECT_FALSE(root.exists("data/Trash/files/a"));
    EXPECT_FALSE(root.exists("data/Trash/info/a.trashinfo"));
}

TEST_F(LinuxTrashTest, measuresAndRemembersTheSizesOfFolders) {
    root.file("folder/a", std::string(10'000, 'x'));
    root.file("folder/b/c", std::string(5'000, 'x'));
    root.link("folder/out", "/usr");
    const URL place = trash.trash(root / "folder");
    trash.trash(root.file("file", std::string(3'000, 'x')));
    const Trash::Measured measured = trash.measure({});
    EXPECT_EQ(measured.items, 2);
    EXPECT_GE(measured.bytes, 18'000);
    EXPECT_LT(measured.bytes, 100'000) << "a link was followed";
    EXPECT_FALSE(measured.isUnreadable);

    // Remembered, and dropped when the folder has left.
    const DirectorySizes sizes = DirectorySizes::parse(root.read("data/Trash/directorysizes"));
    EXPECT_EQ(sizes.text(), root.read("data/Trash/directorysizes"));
    EXPECT_NE(sizes.text().find(" folder\n"), std::string::npos);
    EXPECT_EQ(trash.measure({}).bytes, measured.bytes);
    files->move(place, root / "folder");
    trash.forget(place);
    EXPECT_EQ(trash.measure({}).items, 1);
    EXPECT_EQ(root.read("data/Trash/directorysizes"), "");
}

TEST_F(LinuxTrashTest, emptiesItselfAndNothingElse) {
    root.file("precious/file", "x");
    root.file("folder/sub/a");
    root.file("folder/locked/b");
    root.link("folder/out", "../../../precious");
    chmod((root / "folder/locked").c_str(), 0500);
    const URL place = trash.trash(root / "folder");
    trash.trash(root.link("link", (root / "precious").path()));
    trash.trash(root.file("file"));
    int deleted = 0;
    const Trash::Emptied emptied = trash.empty({}, [&] { ++deleted; });
    EXPECT_EQ(emptied.items, 3);
    EXPECT_EQ(emptied.failed, 0);
    EXPECT_EQ(deleted, 5);
    EXPECT_EQ(root.read("precious/file"), "x");
    EXPECT_EQ(trash.measure({}).items, 0);
    EXPECT_FALSE(root.exists("data/Trash/info/folder.trashinfo"));
    EXPECT_FALSE(root.exists("data/Trash/directorysizes"));
}

TEST_F(LinuxTrashTest, stopsEmptyingWhenCancelled) {
    for (const char* name : {"a", "b", "c"}) trash.trash(root.file(name));
    const CancelToken token;
    const Trash::Emptied emptied = trash.empty(token, [&] { token.cancel(); });
    EXPECT_EQ(emptied.items, 1);
    EXPECT_EQ(trash.measure({}).items, 2);
}

TEST(TrashInfo, readsWhatOtherProgramsWrite) {
    const struct {
        const char* text;
        std::optional<std::string> path;
        const char* deleted;
    } cases[] = {
        {"[Trash Info]\nPath=/a%20b\nDeletionDate=2026-03-15T12:00:00\n", "/a b",
         "2026-03-15T12:00:00Z"},
        {"[Trash Info]\r\nPath=/a\r\nDeletionDate=2026-03-15T12:00:00\r\n", "/a",
         "2026-03-15T12:00:00Z"},
        {"# comment\n[Other]\nPath=/x\n[Trash Info]\nPath=/a\nPath=/b\n", "/a", nullptr},
        {"[Trash Info]\nDeletionDate=yesterday\nPath=/a", "/a", nullptr},
        {"[Trash Info]\nPath=/a\nDeletionDate=2026-13-45T99:00:00", "/a", nullptr},
        {"[Trash Info]\nPath=/%C3%A9%FF\n", "/\xC3\xA9\xFF", nullptr},
        {"[Trash Info]\nPath=/a%0", std::nullopt, nullptr},
        {"[Trash Info]\nPath=/a%00b", std::nullopt, nullptr},
        {"[Trash Info]\nPath=\n", std::nullopt, nullptr},
        {"[Trash Info]\n[Other]\nPath=/a\n", std::nullopt, nullptr},
        {"Path=/a\n", std::nullopt, nullptr},
        {"", std::nullopt, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const auto info = TrashInfo::parse(c.text);
        ASSERT_EQ(info.has_value(), c.path.has_value());
        if (!info) continue;
        EXPECT_EQ(info->path, *c.path);
        EXPECT_EQ(info->deleted.has_value(), c.deleted != nullptr);
        if (c.deleted) {
            EXPECT_EQ(info->deleted, Date::fromISO8601(c.deleted));
        }
    }
}

TEST(TrashInfo, aDiskFromElsewhereCannotNameOtherPlaces) {
    const URL disk = URL::fromPath("/media/stick");
    const struct {
        const char* path;
        std::optional<URL> base;
        std::optional<URL> origin;
    } cases[] = {
        {"a/b", disk, disk.appending("a/b")},
        {"/home/ann/.profile", disk, std::nullopt},
        {"../../home/ann/.profile", disk, std::nullopt},
        {"a/../../x", disk, std::nullopt},
        {".", disk, std::nullopt},
        {"/home/ann/x", std::nullopt, URL::fromPath("/home/ann/x")},
        {"/home/../x", std::nullopt, std::nullopt},
        {"relative", std::nullopt, std::nullopt},
        {"/", std::nullopt, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ((TrashInfo{c.path, std::nullopt}.origin(c.base)), c.origin);
    }
}

TEST(DirectorySizes, skipsLinesThatItDoesNotUnderstand) {
    const DirectorySizes sizes = DirectorySizes::parse(
        "4096 100 plain\n12 200 with%20blank\n-5 1 minus\n99999999999999999999 1 big\n7 8\n"
        "7 8 \n1 2 a/b\n1 2 ..\n1 2 bad%0\nx y z\n");
    EXPECT_EQ(sizes.text(), "4096 100 plain\n12 200 with%20blank\n");
    EXPECT_EQ(sizes.size("plain", 100), 4096);
    EXPECT_EQ(sizes.size("plain", 101), std::nullopt) << "trashed anew since";
}

}  // namespace
}  // namespace tarn
