#include <gtest/gtest.h>

#include "Tarn/model/DriveService.h"
#include "TarnCore/platform/memory/MemoryPlatform.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "tests/support/ScopedPlatform.h"

namespace tarn {
namespace {

Mount mount(const char* point, const char* fileSystem) {
    Mount mount;
    mount.mountPoint = URL::fromPath(point);
    mount.fileSystem = fileSystem;
    return mount;
}

TEST(DriveService, showsTheDisksOfAPersonAndNoPartsOfTheSystem) {
    Mount stick = mount("/run/media/ann/STICK", "vfat");
    stick.isRemovable = true;
    Mount share = mount("/mnt/share", "nfs4");
    share.isRemovable = share.isNetwork = true;
    Mount proc = mount("/proc", "proc");
    proc.isPseudo = true;
    const MemoryPlatform machine;
    machine.volumes->setMounts({proc, stick, mount("/", "ext4"), share, mount("/data", "btrfs"),
                                mount("/boot/efi", "vfat"), mount("/snap/core/1", "squashfs"),
                                mount("/run/user/1000", "tmpfs"), mount("/mnt/scratch", "tmpfs"),
                                mount("/System/Volumes/VM", "ext4")});
    machine.volumes->setSpace(URL(), VolumeSpace{1000, 250});
    machine.volumes->setSpace(share.mountPoint, std::nullopt);
    const ScopedPlatform scoped(machine.services());

    const std::vector<Volume> volumes = DriveService::withSpace(DriveService::volumes());
    std::vector<std::string> points;
    for (const Volume& volume : volumes) points.push_back(volume.url.path());
    ASSERT_EQ(points,
              (std::vector<std::string>{"/", "/run/media/ann/STICK", "/mnt/share", "/data"}));
    EXPECT_TRUE(volumes[0].isInternal);
    EXPECT_EQ(volumes[0].total, 1000);
    EXPECT_EQ(volumes[0].available, 250);
    EXPECT_TRUE(volumes[1].isRemovable && volumes[1].isEjectable);
    EXPECT_TRUE(volumes[2].isNetwork && !volumes[2].isRemovable);
    EXPECT_EQ(volumes[2].total, 0);
}

}  // namespace
}  // namespace tarn
