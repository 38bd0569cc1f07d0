#pragma once

#include "TarnCore/platform/Volumes.h"

namespace tarn {

/// /proc/self/mountinfo, read afresh for every question (some 50 µs), and watched with poll().
class LinuxVolumes final : public Volumes {
public:
    std::vector<Mount> mounts() const override;
    std::optional<Mount> mountHolding(const URL& url) const override;
    std::string displayName(const Mount& mount) const override;
    std::optional<VolumeSpace> space(const URL& url) const override;
    std::shared_ptr<void> observe(std::function<void()> onChange) override;
};

}  // namespace tarn
