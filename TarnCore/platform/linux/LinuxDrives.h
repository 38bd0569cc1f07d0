#pragma once

#include "TarnCore/platform/Drives.h"

namespace tarn {

/// Disks by udisks2, or `umount` where that is not running or does not know them; servers and other
/// FUSE mounts by `gio`; who keeps a volume busy by `lsof`.
class LinuxDrives final : public Drives {
public:
    EjectResult eject(const Mount& volume, const std::string& name, bool force) override;
    std::vector<BlockingProcess> blockingProcesses(const URL& volume) override;
    URL connect(const std::string& address, const Ask& ask, const CancelToken& token) override;
    std::vector<Mount> connectedServers() override;
};

}  // namespace tarn
