#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tarn {

/// What a listing and the watch on its folder know of each other. They begin side by side, since
/// the watch on a folder of 100,000 files takes 10 ms: the names are read meanwhile, but no file is
/// looked at before the watch is there, so that no change falls between the two. A disk that makes
/// the watch wait must not make the rows wait: then the listing goes on without it, and what it
/// missed is to be read once the watch is there. Callable from any thread.
class AwaitedWatch {
public:
    /// Since the watch was asked for; it usually takes one.
    static constexpr std::chrono::milliseconds patience{30};

    /// Blocks until the watch is there, but not for ever.
    void wait() {
        std::unique_lock lock(mutex_);
        if (!arrival_.wait_until(lock, begun_ + patience, [this] { return isThere_; }))
            isGivenUp_ = true;
    }
    /// False when it comes too late.
    bool arrive() {
        const std::lock_guard lock(mutex_);
        isThere_ = true;
        arrival_.notify_all();
        return !isGivenUp_;
    }

private:
    const std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
    std::mutex mutex_;
    std::condition_variable arrival_;
    bool isThere_ = false;
    bool isGivenUp_ = false;
};

}  // namespace tarn
