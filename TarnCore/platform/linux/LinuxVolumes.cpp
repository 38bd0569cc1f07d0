#include "TarnCore/platform/linux/LinuxVolumes.h"

#include <array>
#include <utility>

#include <sys/eventfd.h>
#include <sys/statvfs.h>

#include <fcntl.h>
#include <poll.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/platform/linux/MountTable.h"
#include "TarnCore/platform/linux/ServerFolder.h"

namespace tarn {
namespace {

/// Waits for the kernel's word on a queue of its own until it goes.
class MountObserver {
public:
    explicit MountObserver(std::function<void()> onChange)
        : table_(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)),
          stop_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
          onChange_(std::move(onChange)) {
        if (table_ && stop_) queue_.run([this] { wait(); });
    }
    ~MountObserver() {
        if (stop_) eventfd_write(stop_.get(), 1);
    }
    MountObserver(const MountObserver&) = delete;
    MountObserver& operator=(const MountObserver&) = delete;

private:
    void wait() {
        for (;;) {
            std::array<pollfd, 2> watched = {
                {{table_.get(), POLLPRI, 0}, {stop_.get(), POLLIN, 0}}};
            if (poll(watched.data(), watched.size(), -1) < 0 && errno != EINTR) return;
            if (watched[1].revents != 0) return;
            if ((watched[0].revents & (POLLPRI | POLLERR)) != 0) onChange_();
        }
    }
    FileDescriptor table_;
    FileDescriptor stop_;
    std::function<void()> onChange_;
    SerialQueue queue_{"tarn.mounts"};  // Last, so that it ends before what its task uses.
};

/// "share on server" for "//server/share" and "server:/exports/share"; empty for anything else.
std::string shareName(const std::string& source) {
    std::string_view rest = source;
    std::string_view server;
    if (rest.starts_with("//")) {
        rest.remove_prefix(2);
        server = rest.substr(0, rest.find('/'));
    } else {
        server = rest.substr(0, rest.find(":/"));
    }
    if (server.size() >= rest.size() || server.empty()) return {};
    const URL share = URL::fromPath(rest.substr(server.size() + (rest[server.size()] == ':')));
    if (share.isRoot()) return std::string(server);
    return std::string(share.name()) + " on " + std::string(server);
}

}  // namespace

std::vector<Mount> LinuxVolumes::mounts() const { return currentMounts(); }

std::optional<Mount> LinuxVolumes::mountHolding(const URL& url) const {
    const auto all = currentMounts();
    const Mount* found = tarn::mountHolding(all, url);
    return found ? std::optional(*found) : std::nullopt;
}

std::string LinuxVolumes::displayName(const Mount& mount) const {
    if (mount.mountPoint.isRoot()) return "Computer";
    if (mount.fileSystem == "fuse.gvfsd-fuse") return "Network";
    if (mount.fileSystem == serverFileSystem)
        if (auto title = serverTitle(mount.mountPoint.name())) return *title;
    if (mount.isNetwork) {
        std::string name = shareName(mount.source);
        if (!name.empty()) return name;
    }
    // The desktop's mounter calls the folder like the volume.
    return std::string(mount.mountPoint.name());
}

std::optional<VolumeSpace> LinuxVolumes::space(const URL& url) const {
    struct statvfs result {};
    if (statvfs(url.c_str(), &result) != 0) return std::nullopt;
    const auto unit = static_cast<std::int64_t>(result.f_frsize);
    return VolumeSpace{static_cast<std::int64_t>(result.f_blocks) * unit,
                       static_cast<std::int64_t>(result.f_bavail) * unit};
}

std::shared_ptr<void> LinuxVolumes::observe(std::function<void()> onChange) {
    return std::make_shared<MountObserver>(std::move(onChange));
}

}  // namespace tarn
