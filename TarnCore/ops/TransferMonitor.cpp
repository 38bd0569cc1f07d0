#include "TarnCore/ops/TransferMonitor.h"

#include <chrono>
#include <utility>

namespace tarn {
namespace {

constexpr double betweenReports = 0.1;  // seconds

bool isEnd(TransferState state) {
    return state == TransferState::finished || state == TransferState::cancelled;
}

}  // namespace

double TransferMonitor::now() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void TransferMonitor::setReport(std::function<void(const TransferProgress&)> report) {
    report_ = std::move(report);
}

void TransferMonitor::enter(TransferState activity) {
    {
        const std::lock_guard lock(mutex_);
        activity_ = activity;
        if (!isPaused_ || isEnd(activity)) progress_.state = activity;
    }
    emit(true);
}

void TransferMonitor::setFinishingWriting(bool isFinishing) {
    {
        const std::lock_guard lock(mutex_);
        progress_.isFinishingWriting = isFinishing;
    }
    emit(true);
}

void TransferMonitor::setName(std::string name) {
    const std::lock_guard lock(mutex_);
    progress_.currentName = std::move(name);
}

void TransferMonitor::setTotals(std::int64_t bytes, std::int64_t items) {
    {
        const std::lock_guard lock(mutex_);
        progress_.totalBytes = bytes;
        progress_.totalItems = items;
    }
    emit(true);
}

void TransferMonitor::add(std::int64_t bytes, std::int64_t items) {
    const std::lock_guard lock(mutex_);
    progress_.doneBytes += bytes;
    progress_.doneItems += items;
}

void TransferMonitor::setDone(std::int64_t bytes, std::int64_t items) {
    const std::lock_guard lock(mutex_);
    progress_.doneBytes = bytes;
    progress_.doneItems = items;
}

void TransferMonitor::pause() {
    {
        const std::lock_guard lock(mutex_);
        if (token_.isCancelled() || isEnd(activity_)) return;
        isPaused_ = true;
        progress_.state = TransferState::paused;
    }
    emit(true);
}

void TransferMonitor::resume() {
    {
        const std::lock_guard lock(mutex_);
        isPaused_ = false;
        if (progress_.state == TransferState::paused) progress_.state = activity_;
    }
    changed_.notify_all();
    emit(true);
}

void TransferMonitor::cancel() {
    {
        const std::lock_guard lock(mutex_);
        token_.cancel();
        isPaused_ = false;
    }
    changed_.notify_all();
}

bool TransferMonitor::proceed() {
    return waitUntil([] { return true; });
}

bool TransferMonitor::waitUntil(const std::function<bool()>& isDone) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return token_.isCancelled() || (!isPaused_ && isDone()); });
    return !token_.isCancelled();
}

void TransferMonitor::wake() {
    // With the mutex taken once, no waiter can be between looking and sleeping.
    { const std::lock_guard lock(mutex_); }
    changed_.notify_all();
}

void TransferMonitor::emit(bool force) {
    std::unique_lock lock(mutex_);
    const double time = now();
    if (!force && time - lastReport_ <= betweenReports) return;
    progress_.bytesPerSecond = speed_.add(time, progress_.doneBytes);
    lastReport_ = time;
    reportsAgain_ = true;
    if (isReporting_ || !report_) return;
    isReporting_ = true;
    while (std::exchange(reportsAgain_, false)) {
        const TransferProgress progress = progress_;
        lock.unlock();
        report_(progress);
        lock.lock();
    }
    isReporting_ = false;
    changed_.notify_all();
}

void TransferMonitor::finishReports() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return !isReporting_; });
}

TransferProgress TransferMonitor::progress() const {
    const std::lock_guard lock(mutex_);
    return progress_;
}

}  // namespace tarn
