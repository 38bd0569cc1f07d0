#include "Tarn/model/DriveService.h"

#include <algorithm>

#include "Tarn/model/ServerAddress.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/base/Text.h"
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

Volume volumeOf(const Mount& mount, const Volumes& service) {
    Volume volume;
    volume.url = mount.mountPoint;
    volume.name = service.displayName(mount);
    volume.isRemovable = mount.isRemovable && !mount.isNetwork;
    volume.isNetwork = mount.isNetwork;
    volume.isInternal = !mount.isRemovable && !mount.isNetwork;
    volume.isEjectable = !volume.isInternal;
    volume.format = mount.fileSystem;
    return volume;
}

std::optional<Mount> mountAt(const URL& url, const Volumes& volumes, Drives& drives) {
    std::optional<Mount> found;
    // The last of several is the one that is seen.
    for (Mount& mount : volumes.mounts())
        if (mount.mountPoint == url && !mount.isPseudo) found = std::move(mount);
    if (found) return found;
    for (Mount& mount : drives.connectedServers())
        if (mount.mountPoint == url) return std::move(mount);
    return std::nullopt;
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
        if (mount.fileSystem == "fuse.gvfsd-fuse") continue;
        volumes.push_back(volumeOf(mount, *service));
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

std::vector<Volume> DriveService::servers(const Volumes& volumes, Drives& drives) {
    std::vector<Volume> servers;
    for (const Mount& mount : drives.connectedServers())
        servers.push_back(volumeOf(mount, volumes));
    return servers;
}

EjectResult DriveService::eject(const URL& url, bool force) {
    const auto volumes = Platform::current().volumes;
    const auto drives = Platform::current().drives;
    const auto mount = volumes && drives ? mountAt(url, *volumes, *drives) : std::nullopt;
    if (!mount || url.isRoot() || isSystemPart(*mount))
        return {EjectResult::Outcome::failed,
                Text::quoted(Paths::displayName(url)) + " is not a volume that can be ejected."};
    return drives->eject(*mount, volumes->displayName(*mount), force);
}

std::vector<BlockingProcess> DriveService::blockingProcesses(const URL& on) {
    const auto drives = Platform::current().drives;
    if (!drives) throw Error("Which programs use it can’t be found out here.");
    return drives->blockingProcesses(on);
}

std::optional<std::string> DriveService::serverURL(std::string_view text) {
    return ServerAddress::parse(text);
}

}  // namespace tarn
