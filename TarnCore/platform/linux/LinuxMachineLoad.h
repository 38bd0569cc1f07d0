#pragma once

#include <chrono>
#include <cstdint>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/platform/MachineLoad.h"

namespace tarn {

/// Reads the power supplies in /sys and the pressure information in /proc (Linux 4.20 and later;
/// without it the machine is never busy).
///
/// Pressure tells how long work had to wait, but not whose: work of idle priority waits more than
/// any other. So the machine is busy with processors or disks only when others are also seen to use
/// them: by the time of processors that was not spent on work of low priority, and by the bytes
/// that went over disks and were not our own.
class LinuxMachineLoad final : public MachineLoad {
public:
    /// Shares of the last ten seconds, in percent, in which something waited.
    static constexpr double mostProcessorPressure = 10;
    static constexpr double mostMemoryPressure = 10;
    static constexpr double mostDiskPressure = 20;
    /// Shares that others had since it was last looked at.
    static constexpr double mostProcessorOfOthers = 0.75;
    static constexpr double mostDiskOfOthers = 0.5;

    /// `root` is where "proc" and "sys" are. Answers of isBusy are kept for `period`.
    explicit LinuxMachineLoad(URL root = {},
                              std::chrono::milliseconds period = std::chrono::seconds(1));

    bool isOnBattery() const override;
    bool isBusy() const override;
    void lowerPriorityOfThread() override;

private:
    /// Counters since the machine, or the process, started.
    struct Counters {
        std::uint64_t ticks = 0;          ///< Of all processors.
        std::uint64_t ticksOfOthers = 0;  ///< At normal priority, in programs and in the kernel.
        std::uint64_t diskBytes = 0;
        std::uint64_t ownDiskBytes = 0;
    };
    struct Look {
        std::chrono::steady_clock::time_point time;
        Counters counters;
        bool isFirst = true;
        bool isBusy = false;
    };
    Counters counters() const;
    bool isBusy(const Counters& before, const Counters& now) const;
    double pressure(const char* resource) const;

    URL root_;
    std::chrono::milliseconds period_;
    Guarded<Look> last_;
};

}  // namespace tarn
