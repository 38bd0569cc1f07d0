#include <sys/sysmacros.h>

#include "TarnCore/platform/linux/LinuxVolumes.h"
#include "TarnCore/platform/linux/MountTable.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

constexpr const char* table =
    "22 1 254:1 / / rw,relatime shared:1 - ext4 /dev/vda1 rw\n"
    "23 22 0:5 / /proc rw,nosuid - proc proc rw\n"
    "24 22 0:6 / /run rw,nosuid - tmpfs tmpfs rw,size=1000k\n"
    "25 24 8:17 / /run/media/ann/USB\\040STICK rw,noatime shared:9 master:3 - vfat /dev/sdb1 rw\n"
    "26 22 0:40 / /home/ann/nas\\134x rw - nfs4 server:/exports/photos rw\n"
    "27 22 0:41 / /mnt/share ro - cifs //server/music ro\n"
    "28 22 0:42 / /tmp rw - tmpfs tmpfs rw\n"
    "29 24 0:43 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw\n"
    "nonsense\n"
    "30 22 8:33 / /gone//deleted rw - ext4 /dev/sdc1 rw\n"
    "31 22 8:49 / /data rw - ext4 /dev/sdd1 rw\n"
    "32 31 8:50 / /data/inner rw - ext4 /dev/sdd2 rw\n"
    "33 31 8:51 / /data rw - btrfs /dev/sdd3 rw\n"
    "34 33 8:52 / /data/inner rw - xfs /dev/sdd4 rw\n"
    "35 34 8:53 / /data/inner/line\\012feed rw - xfs /dev/sdd5 rw";

const Mount& at(const std::vector<Mount>& mounts, const char* path) {
    const Mount* found = nullptr;
    for (const Mount& mount : mounts)
        if (mount.mountPoint.path() == path) found = &mount;
    static const Mount none;
    EXPECT_TRUE(found) << path;
    return found ? *found : none;
}

TEST(MountTable, classifiesWhatItReads) {
    const auto mounts = parseMountInfo(table);
    const struct {
        const char* path;
        const char* fileSystem;
        bool isPseudo, isNetwork, isRemovable, isReadOnly, recordsAccessTimes;
    } cases[] = {
        {"/", "ext4", false, false, false, false, true},
        {"/proc", "proc", true, false, false, false, true},
        {"/run", "tmpfs", true, false, false, false, true},
        {"/tmp", "tmpfs", false, false, false, false, true},  // in memory, but the user's
        {"/run/media/ann/USB STICK", "vfat", false, false, true, false, false},
        {"/home/ann/nas\\x", "nfs4", false, true, false, false, true},
        {"/mnt/share", "cifs", false, true, true, true, true},
        {"/run/user/1000/gvfs", "fuse.gvfsd-fuse", false, true, true, false, true},
        {"/data/inner/line\nfeed", "xfs", false, false, false, false, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        const Mount& mount = at(mounts, c.path);
        EXPECT_EQ(mount.fileSystem, c.fileSystem);
        EXPECT_EQ(mount.isPseudo, c.isPseudo);
        EXPECT_EQ(mount.isNetwork, c.isNetwork);
        EXPECT_EQ(mount.isRemovable, c.isRemovable);
        EXPECT_EQ(mount.isReadOnly, c.isReadOnly);
        EXPECT_EQ(mount.recordsAccessTimes, c.recordsAccessTimes);
    }
    EXPECT_EQ(at(mounts, "/").device, makedev(254, 1));
}

TEST(MountTable, leavesOutWhatALaterMountCovers) {
    const auto mounts = parseMountInfo(table);
    EXPECT_EQ(mounts.size(), 11U);
    EXPECT_EQ(at(mounts, "/data").fileSystem, "btrfs");
    EXPECT_EQ(at(mounts, "/data/inner").source, "/dev/sdd4");
    // The whole root may be covered, as it is after start-up from memory.
    const auto covered = parseMountInfo(
        "1 1 0:1 / / rw - rootfs rootfs rw\n"
        "2 1 0:2 / / rw - ext4 /dev/sda rw\n"
        "3 2 0:3 / /home rw - ext4 /dev/sdb rw\n");
    ASSERT_EQ(covered.size(), 2U);
    EXPECT_EQ(covered[0].source, "/dev/sda");
}

TEST(MountTable, findsTheMountThatHoldsAPath) {
    const auto mounts = parseMountInfo(table);
    const struct {
        const char* path;
        const char* source;
    } cases[] = {
        {"/home/ann/file", "/dev/vda1"},
        {"/home/ann/nas\\x/file", "server:/exports/photos"},
        {"/mnt/share", "//server/music"},
        {"/mnt/shared", "/dev/vda1"},
        {"/data/inner/line\nfeed/a/b", "/dev/sdd5"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(mountHolding(mounts, URL::fromPath(c.path))->source, c.source);
    }
}

TEST(LinuxVolumes, namesVolumesAsPeopleDo) {
    const auto mounts = parseMountInfo(table);
    const LinuxVolumes volumes;
    EXPECT_EQ(volumes.displayName(at(mounts, "/")), "Computer");
    EXPECT_EQ(volumes.displayName(at(mounts, "/run/media/ann/USB STICK")), "USB STICK");
    EXPECT_EQ(volumes.displayName(at(mounts, "/mnt/share")), "music on server");
    EXPECT_EQ(volumes.displayName(at(mounts, "/home/ann/nas\\x")), "photos on server");
    EXPECT_EQ(volumes.displayName(at(mounts, "/run/user/1000/gvfs")), "Network");
}

TEST(LinuxVolumes, knowsThisMachine) {
    const LinuxVolumes volumes;
    ASSERT_FALSE(volumes.mounts().empty());
    EXPECT_TRUE(volumes.mountHolding(URL::fromPath("/proc/self"))->isPseudo);
    const TestFolder folder;
    const auto space = volumes.space(folder.url());
    ASSERT_TRUE(space);
    EXPECT_GT(space->total, 0);
    EXPECT_LE(space->free, space->total);
    EXPECT_EQ(volumes.space(folder / "missing"), std::nullopt);
    // An observer that never hears anything still ends at once.
    {
        LinuxVolumes observed;
        observed.observe([] {});
    }
}

}  // namespace
}  // namespace tarn
