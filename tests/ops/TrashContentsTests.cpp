#include <algorithm>
#include <cstdlib>
#include <future>
#include <mutex>

#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/files/FolderWatcher.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/TrashContents.h"
#include "TarnCore/platform/linux/LinuxTrash.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

/// A folder in memory, which is another disk than that of temporary files on most machines.
class OtherDisk {
public:
    OtherDisk() {
        std::string name = "/dev/shm/tarn-XXXXXX";
        if (mkdtemp(name.data())) url = URL::fromPath(name);
        isOther = !url.isRoot() && !FileOps::sameVolume(url, home.url());
        if (isOther) mount({});
    }
    ~OtherDisk() {
        if (!url.isRoot()) Platform::current().files->removeTree(url);
    }
    void mount(Mount how) {
        how.mountPoint = url;
        volumes->setMounts({MemoryVolumes().mounts().front(), how});
    }

    TestFolder home;
    URL url;
    bool isOther = false;
    std::shared_ptr<MemoryVolumes> volumes = std::make_shared<MemoryVolumes>();
    ScopedEnvironment data{{"XDG_DATA_HOME", (home / "data").path()}};
    ScopedPlatform platform{[this] {
        Platform all = Platform::current();
        all.volumes = volumes;
        all.trash = std::make_shared<LinuxTrash>(all.files, volumes, all.clock);
        return all;
    }()};
};

bool has(const std::vector<URL>& all, const URL& one) {
    return std::ranges::find(all, one) != all.end();
}

TEST(TrashContents, aTrashThatComesOnAnotherDiskIsNoticed) {
    OtherDisk disk;
    if (!disk.isOther) GTEST_SKIP() << "/dev/shm is no disk of its own here.";
    const URL files = disk.url.appending(".Trash-" + std::to_string(getuid()) + "/files");
    EXPECT_TRUE(has(TrashContents::watched(), files));
    EXPECT_FALSE(has(TrashContents::holders(), files));

    std::promise<void> noticed;
    std::once_flag once;
    FolderWatcher watcher([&](const std::vector<std::string>& paths) {
        if (std::ranges::any_of(
                paths, [&](const std::string& path) { return path.starts_with(files.path()); }))
            std::call_once(once, [&] { noticed.set_value(); });
    });
    watcher.watch(TrashContents::watched(), 0.01, WatchDepth::children);
    const URL item = disk.url.appending("a.txt");
    FileDescriptor(open(item.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    EXPECT_EQ(FileOps::trash(item), files.appending("a.txt"));
    EXPECT_EQ(noticed.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
    EXPECT_TRUE(has(TrashContents::holders(), files));
    EXPECT_EQ(TrashContents::measure({}).items, 1);
}

TEST(TrashContents, onlyDisksThatCanGetATrashAreWatchedForOne) {
    OtherDisk disk;
    if (!disk.isOther) GTEST_SKIP() << "/dev/shm is no disk of its own here.";
    const URL files = disk.url.appending(".Trash-" + std::to_string(getuid()) + "/files");
    for (bool Mount::*kind : {&Mount::isReadOnly, &Mount::isNetwork, &Mount::isPseudo}) {
        Mount mount;
        mount.*kind = true;
        disk.mount(mount);
        EXPECT_FALSE(has(TrashContents::watched(), files));
        EXPECT_EQ(has(TrashContents::possibleFolders(), files), kind != &Mount::isPseudo);
    }
}

TEST(TrashContents, itemsGoBackToWhereTheyWere) {
    OtherDisk disk;
    if (!disk.isOther) GTEST_SKIP() << "/dev/shm is no disk of its own here.";
    const Platform& platform = Platform::current();
    const URL folder = disk.url.appending("Letters");
    const URL letter = folder.appending("a.txt");
    platform.files->createFolder(folder);
    platform.files->createFile(letter, "first");
    const URL first = FileOps::trash(letter);
    platform.files->removeFolder(folder);
    EXPECT_EQ(TrashContents::putBack(first).url, letter) << "in a folder that is made again";
    EXPECT_EQ(platform.files->readFile(letter, 100), "first");
    EXPECT_FALSE(platform.trash->origin(first)) << "is forgotten";

    const URL second = FileOps::trash(letter);
    platform.files->createFile(letter, "another");
    const FileChange beside = TrashContents::putBack(second);
    EXPECT_EQ(beside.url, folder.appending("a 2.txt"));
    EXPECT_EQ(platform.files->readFile(letter, 100), "another");
    FileOps::revert(beside.steps);
    EXPECT_FALSE(FileOps::exists(beside.url));
    EXPECT_TRUE(platform.trash->origin(second.parent().appending("a 2.txt")))
        << "can be put back again";

    const URL stray = second.parent().appending("stray.txt");
    platform.files->createFile(stray, "");
    EXPECT_THROW(TrashContents::putBack(stray), FileOpError);
    EXPECT_TRUE(FileOps::exists(stray));
}

}  // namespace
}  // namespace tarn
