#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/base/UUID.h"
#include "TarnCore/ops/TransferProgress.h"

namespace tarn {

/// Copies or moves items into a folder, or moves them to the Trash, on a thread of its own, and can
/// be watched, paused, resumed and cancelled.
///
/// Set the callbacks, then start() once. The callbacks come on the job's thread, and onProgress
/// also on a thread that pauses or resumes, one call at a time; none of them may destroy the job.
/// The functions may be called from any thread. The destructor cancels and waits.
///
/// Every item is copied under a temporary name beside its target and gets its name when it is
/// complete. A move is a rename; on another disk it is a copy that is written out before the
/// original goes. An item that was replaced is in the Trash, and put back when nothing came in its
/// place.
class TransferJob {
public:
    /// `destination` is absent for the Trash only.
    TransferJob(TransferKind kind, std::vector<URL> sources, std::optional<URL> destination);
    ~TransferJob();
    TransferJob(const TransferJob&) = delete;
    TransferJob& operator=(const TransferJob&) = delete;

    const UUID& id() const;
    TransferKind kind() const;
    const std::vector<URL>& sources() const;
    const std::optional<URL>& destination() const;
    Date createdAt() const;
    /// "Copy “a.txt” to “Documents”".
    std::string title() const;

    /// At most every 0.1 s, and at every change of state.
    std::function<void(const TransferProgress&)> onProgress;
    /// May block until the user has answered. Without it every conflict keeps both.
    std::function<ConflictDecision(const TransferConflict&)> resolveConflict;
    std::function<void(const TransferResult&)> onFinish;
    /// After each finished file.
    std::function<void()> afterEachFile;

    void start();
    void pause();
    void resume();
    void cancel();
    /// Runs the job on the calling thread and returns when it has ended; instead of start().
    void run();

    TransferProgress progress() const;

    struct Measure {
        std::int64_t bytes = 0;
        std::int64_t items = 0;
    };
    /// What copying would move: links count themselves and are not followed; a folder is the sum of
    /// the files in it.
    static Measure measure(const URL& url);

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tarn
