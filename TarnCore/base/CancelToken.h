#pragma once

#include <atomic>
#include <memory>

namespace tarn {

/// A flag shared by the one who may stop a long scan and the scan that polls it. Copies share the
/// flag. Any thread may set or read it.
class CancelToken {
public:
    CancelToken() : cancelled_(std::make_shared<std::atomic<bool>>(false)) {}
    void cancel() const { cancelled_->store(true, std::memory_order_relaxed); }
    bool isCancelled() const { return cancelled_->load(std::memory_order_relaxed); }

private:
    std::shared_ptr<std::atomic<bool>> cancelled_;
};

}  // namespace tarn
