#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/ops/SpeedMeter.h"
#include "TarnCore/ops/TransferProgress.h"

namespace tarn {

/// How far a transfer has come, and whether it may go on: what its thread and everybody who watches
/// it share. Any thread.
class TransferMonitor {
public:
    /// Calls of this come one at a time and in order, on the thread that caused them or on one that
    /// is reporting already; no lock is held meanwhile.
    void setReport(std::function<void(const TransferProgress&)> report);

    /// What the job is doing; shown as paused while it is paused. Reported at once.
    void enter(TransferState activity);
    void setFinishingWriting(bool isFinishing);
    void setName(std::string name);
    void setTotals(std::int64_t bytes, std::int64_t items);
    void add(std::int64_t bytes, std::int64_t items);
    void setDone(std::int64_t bytes, std::int64_t items);

    /// Without effect after cancel().
    void pause();
    void resume();
    void cancel();
    bool isCancelled() const { return token_.isCancelled(); }
    /// Set by cancel().
    const CancelToken& token() const { return token_; }

    /// Waits while the transfer is paused. False when it is cancelled.
    bool proceed();
    /// Waits until `isDone`, and longer while the transfer is paused. False when it is cancelled.
    /// Whoever makes it true calls wake().
    bool waitUntil(const std::function<bool()>& isDone);
    void wake();

    /// Reports the progress: at most every 0.1 s unless forced.
    void emit(bool force);
    /// Returns when no report is under way.
    void finishReports();
    TransferProgress progress() const;

private:
    double now() const;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    const CancelToken token_;
    TransferProgress progress_;
    TransferState activity_ = TransferState::queued;
    bool isPaused_ = false;
    double lastReport_ = -1;  ///< Seconds of the steady clock.
    SpeedMeter speed_;
    bool isReporting_ = false;
    bool reportsAgain_ = false;  ///< Something was to be reported meanwhile.
    std::function<void(const TransferProgress&)> report_;
};

}  // namespace tarn
