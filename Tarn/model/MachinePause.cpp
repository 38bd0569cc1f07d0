#include "Tarn/model/MachinePause.h"

#include <algorithm>
#include <utility>

namespace tarn {
namespace {

/// Between two looks at the machine, whatever the timing says.
constexpr std::chrono::milliseconds leastPause(10);

std::chrono::steady_clock::duration seconds(double count) {
    return std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double>(count));
}

}  // namespace

MachinePause::MachinePause(std::shared_ptr<MachineLoad> load, Timing timing, Told told)
    : load_(std::move(load)), timing_(timing), told_(std::move(told)) {}

void MachinePause::setPaused(bool isPaused) {
    {
        const std::lock_guard lock(mutex_);
        if (std::exchange(isPaused_, isPaused) == isPaused) return;
    }
    wake();
}

void MachinePause::wake() {
    {
        const std::lock_guard lock(mutex_);
        ++wakes_;
    }
    changed_.notify_all();
}

bool MachinePause::isPaused() const {
    const std::lock_guard lock(mutex_);
    return isPaused_;
}

bool MachinePause::holds() {
    {
        const std::lock_guard lock(mutex_);
        if (!load_ || isLooking_ || Clock::now() < nextLook_) return isPaused_ || reason_;
        isLooking_ = true;
    }
    look();
    const std::lock_guard lock(mutex_);
    return isPaused_ || reason_;
}

void MachinePause::look() {
    std::optional<Reason> reason;
    if (load_->isOnBattery())
        reason = Reason::battery;
    else if (load_->isBusy())
        reason = Reason::busy;
    bool isNew = false;
    {
        const std::lock_guard lock(mutex_);
        const auto now = Clock::now();
        nextLook_ = now + seconds(reason == Reason::battery ? timing_.betweenBatteryLooks
                                                            : timing_.betweenLooks);
        isLooking_ = false;
        if (reason) calmSince_ = now;
        // A machine that was busy a moment ago is likely to be so again in another.
        if (!reason && reason_ == Reason::busy && now - calmSince_ < seconds(timing_.calm)) return;
        isNew = std::exchange(reason_, reason) != reason;
    }
    if (isNew && told_) told_(reason);
}

void MachinePause::wait(const CancelToken& token) {
    for (;;) {
        std::uint64_t seen = 0;
        {
            const std::lock_guard lock(mutex_);
            seen = wakes_;
        }
        if (token.isCancelled() || !holds()) return;
        std::unique_lock lock(mutex_);
        const auto isWoken = [&] { return wakes_ != seen; };
        if (isPaused_)
            changed_.wait(lock, isWoken);
        else
            changed_.wait_until(lock, std::max(nextLook_, Clock::now() + leastPause), isWoken);
    }
}

}  // namespace tarn
