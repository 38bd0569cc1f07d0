#include "TarnCore/platform/Volumes.h"

namespace tarn {

const Mount* mountHolding(const std::vector<Mount>& mounts, const URL& url) {
    const Mount* best = nullptr;
    for (const Mount& mount : mounts) {
        if (!url.isInside(mount.mountPoint)) continue;
        if (!best || mount.mountPoint.path().size() >= best->mountPoint.path().size())
            best = &mount;
    }
    return best;
}

}  // namespace tarn
