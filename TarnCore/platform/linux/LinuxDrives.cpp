#include "TarnCore/platform/linux/LinuxDrives.h"

#include <memory>
#include <optional>
#include <utility>

#include <dirent.h>

#include "TarnCore/base/Error.h"
#include "TarnCore/platform/linux/DiskService.h"
#include "TarnCore/platform/linux/EjectSentence.h"
#include "TarnCore/platform/linux/GioMount.h"
#include "TarnCore/platform/linux/MountTable.h"
#include "TarnCore/platform/linux/OpenFileList.h"
#include "TarnCore/platform/linux/PlainTool.h"
#include "TarnCore/platform/linux/ServerFolder.h"

namespace tarn {
namespace {

constexpr double openFilesWait = 30;  // seconds

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

EjectResult byDiskService(const DiskService::Answer& answer, const std::string& name) {
    if (answer.error.empty()) return {};
    if (answer.error.ends_with(".DeviceBusy") || EjectSentence::isBusy(answer.message))
        return EjectSentence::busy(name);
    if (answer.error.ends_with(".NotAuthorizedDismissed"))
        return EjectSentence::failed(name, "The password wasn’t given.");
    if (answer.error.find(".NotAuthorized") != answer.error.npos)
        return EjectSentence::failed(name, "You aren’t allowed to.");
    return EjectSentence::failed(name, EjectSentence::reason(answer.message));
}

EjectResult byUnmounting(const Mount& volume, const std::string& name, bool force) {
    std::vector<std::string> arguments;
    // Away from the tree at once, and from a server that does not answer.
    if (force) arguments = {"-f", "-l"};
    arguments.insert(arguments.end(), {"--", volume.mountPoint.path()});
    try {
        const auto output = PlainTool::run("umount", std::move(arguments), Shell::longJob);
        if (!output) return EjectSentence::failed(name, "“umount” isn’t installed.");
        if (output->status == 0) return {};
        return EjectSentence::of(name, output->standardError + output->standardOutput);
    } catch (const Error& error) {
        return EjectSentence::failed(name, error.what());
    }
}

}  // namespace

EjectResult LinuxDrives::eject(const Mount& volume, const std::string& name, bool force) {
    if (volume.fileSystem == serverFileSystem)
        return GioMount::unmount(volume.mountPoint, name, force);
    if (volume.fileSystem.starts_with("fuse.") && volume.isNetwork && GioMount::isThere()) {
        EjectResult result = GioMount::unmount(volume.mountPoint, name, force);
        // Many of them are not known to the desktop.
        if (result.outcome != EjectResult::Outcome::failed) return result;
    } else if (const DiskService* disks = volume.isNetwork ? nullptr : loadDiskService()) {
        const auto answer = disks->eject(volume.mountPoint.path(), force);
        if (answer.isKnown) return byDiskService(answer, name);
    }
    return byUnmounting(volume, name, force);
}

std::vector<BlockingProcess> LinuxDrives::blockingProcesses(const URL& volume) {
    std::optional<Shell::Output> output;
    try {
        output =
            PlainTool::run("lsof", {"-F", "pcn", "-w", "+f", "--", volume.path()}, openFilesWait);
    } catch (const Error&) {
        throw Error("Which programs use it couldn’t be found out.");
    }
    if (!output)
        throw Error("Which programs use it can’t be found out because “lsof” isn’t installed.");
    // lsof counts it as a failure when nothing is open.
    return parseOpenFiles(output->standardOutput);
}

URL LinuxDrives::connect(const std::string& address, const Ask& ask, const CancelToken& token) {
    return GioMount::mount(address, ask, token);
}

std::vector<Mount> LinuxDrives::connectedServers() {
    std::vector<Mount> servers;
    for (const Mount& mount : currentMounts()) {
        if (mount.fileSystem != "fuse.gvfsd-fuse") continue;
        const std::unique_ptr<DIR, CloseFolder> folder(opendir(mount.mountPoint.c_str()));
        while (const dirent* entry = folder ? readdir(folder.get()) : nullptr) {
            if (!serverTitle(entry->d_name)) continue;
            Mount server = mount;
            server.mountPoint = mount.mountPoint.appending(entry->d_name);
            server.fileSystem = serverFileSystem;
            server.source = entry->d_name;
            servers.push_back(std::move(server));
        }
    }
    return servers;
}

}  // namespace tarn
