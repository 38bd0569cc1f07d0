#pragma once

#include <memory>

#include "TarnCore/platform/memory/MemoryDrives.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "tests/support/ScopedPlatform.h"

namespace tarn {

/// A machine with its disk and a stick that can be ejected, both of them fakes.
struct DiskAndStick {
    DiskAndStick() {
        Mount root;
        root.fileSystem = "ext4";
        Mount stick;
        stick.mountPoint = point;
        stick.fileSystem = "vfat";
        stick.isRemovable = true;
        volumes->setMounts({root, stick});
    }

    const URL point = URL::fromPath("/run/media/ada/STICK");
    std::shared_ptr<MemoryVolumes> volumes = std::make_shared<MemoryVolumes>();
    std::shared_ptr<MemoryDrives> drives = std::make_shared<MemoryDrives>(volumes);
    ScopedPlatform platform{services()};

private:
    Platform services() const {
        Platform all = Platform::current();
        all.volumes = volumes;
        all.drives = drives;
        return all;
    }
};

}  // namespace tarn
