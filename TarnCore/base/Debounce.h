#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/SerialQueue.h"

namespace tarn {

/// Runs the last of a burst of calls on a queue, once nothing new has come for a while.
///
/// Callable from any thread. Calls still pending when it goes are dropped.
class Debounce {
public:
    Debounce(SerialQueue& queue, double seconds) : queue_(queue), seconds_(seconds) {}
    ~Debounce() { cancel(); }
    Debounce(const Debounce&) = delete;
    Debounce& operator=(const Debounce&) = delete;

    void call(std::function<void()> task) {
        const std::uint64_t mine = ++*latest_->lock();
        queue_.runAfter(seconds_, [latest = latest_, mine, task = std::move(task)] {
            if (*latest->lock() == mine) task();
        });
    }
    void cancel() { ++*latest_->lock(); }

private:
    SerialQueue& queue_;
    double seconds_;
    std::shared_ptr<Guarded<std::uint64_t>> latest_ = std::make_shared<Guarded<std::uint64_t>>();
};

}  // namespace tarn
