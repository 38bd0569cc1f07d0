#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/platform/MachineLoad.h"

namespace tarn {

/// Decides when work that nobody waits for may go on: not while the user has paused it, while the
/// machine runs on its battery, or while other programs need it. Callable from any thread.
class MachinePause {
public:
    enum class Reason { battery, busy };
    /// Seconds.
    struct Timing {
        double betweenLooks = 2;          ///< At the machine.
        double betweenBatteryLooks = 30;  ///< The same on a battery, which rests, too.
        double calm = 10;  ///< It has to have had time for so long after it was busy.
    };
    /// Hears of every change of the machine's reason, on the thread that noticed it.
    using Told = std::function<void(std::optional<Reason>)>;

    /// `load` null: the machine always has time.
    MachinePause(std::shared_ptr<MachineLoad> load, Timing timing, Told told);

    void setPaused(bool isPaused);
    /// True while nothing is to be begun. Looks at the machine now and then.
    bool holds();
    /// Returns when nothing holds any more. Looks at the token when it is called, when it looks at
    /// the machine, and when it is woken; not at all meanwhile, so that waiting for hours costs
    /// nothing.
    void wait(const CancelToken& token);
    /// Whoever sets a token says so here.
    void wake();

private:
    using Clock = std::chrono::steady_clock;
    bool isPaused() const;
    void look();

    const std::shared_ptr<MachineLoad> load_;
    const Timing timing_;
    const Told told_;
    mutable std::mutex mutex_;  ///< Not held while the machine is looked at or `told_` runs.
    std::condition_variable changed_;
    std::uint64_t wakes_ = 0;
    bool isPaused_ = false;
    bool isLooking_ = false;
    std::optional<Reason> reason_;
    Clock::time_point nextLook_;
    Clock::time_point calmSince_;
};

}  // namespace tarn
