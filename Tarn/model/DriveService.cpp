#include "Tarn/model/DriveService.h"

#include <algorithm>

#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// Where distributions and container engines mount their own parts.
constexpr std::string_view systemFolders[] = {"/boot", "/efi", "/dev",   "/proc", "/sys",
                                              "/snap", "/usr", "/etc",   "/var",  "/tmp",
                                              "/nix",  "/gnu", "/System"};
/// Read-only images that packages of programs bring along, and memory.
constexpr std::string_view systemFormats[] = {"squashfs", "erofs", "overlay", "tmpfs", "ramfs"};

bool isSystemPart(const Mount& mount) {
    if (mount.isPseudo) return true;
    if (std::find(std::begin(systemFormats), std::end(systemFormats), mount.fileSystem) !=
        std::end(systemFormats)) {
        return !mount.mountPoint.isRoot();
    }
    // A bind-mounted file (as container engines place in /etc) is no volume either; all of those
    // lie in these folders.
    return std::any_of(std::begin(systemFolders), std::end(systemFolders),
                       [&mount](std::string_view folder) {
                           return mount.mountPoint.isInside(URL::fromPath(folder));
                       });
}

/// Below /run only the places where desktops mount what the user plugs in.
bool isInRuntimeFolder(const Mount& mount) {
    const URL& point = mount.mountPoint;
    return point.isInside(URL::fromPath("/run")) && !point.isInside(URL::fromPath("/run/media")) &&
           !mount.isRemovable && !mount.isNetwork;
}

}  // namespace

std::string_view Volume::symbol() const {
    if (isNetwork) return "externaldrive.connected.to.line.below";
    if (isRemovable) return "externaldrive";
    return "internaldrive";
}

std::vector<Volume> DriveService::volumes() {
    const Volumes* service = Platform::current().volumes.get();
    if (!service) return {};
    std::vector<Volume> volumes;
    for (const Mount& mount : service->mounts()) {
        if (!mount.mountPoint.isRoot() && (isSystemPart(mount) || isInRuntimeFolder(mount)))
            continue;
        // A home on a disk of its own is in the list of places already.
        if (mount.mountPoint == Paths::home()) continue;
        Volume volume;
        volume.url = mount.mountPoint;
        volume.name = service->displayName(mount);
        volume.isRemovable = mount.isRemovable && !mount.isNetwork;
        volume.isNetwork = mount.isNetwork;
        volume.isInternal = !mount.isRemovable && !mount.isNetwork;
        volume.isEjectable = !volume.isInternal;
        volume.format = mount.fileSystem;
        volumes.push_back(std::move(volume));
    }
    std::stable_partition(volumes.begin(), volumes.end(),
                          [](const Volume& volume) { return volume.url.isRoot(); });
    return volumes;
}

std::vector<Volume> DriveService::withSpace(std::vector<Volume> volumes) {
    const Volumes* service = Platform::current().volumes.get();
    if (!service) return volumes;
    for (Volume& volume : volumes) {
        if (const auto space = service->space(volume.url)) {
            volume.total = space->total;
            volume.available = space->free;
        }
    }
    return volumes;
}

}  // namespace tarn
