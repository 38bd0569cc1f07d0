#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QString>

#include "TarnCore/ops/TransferJob.h"

namespace tarn {

/// A transfer as the window shows it: copies of what its job tells, taken over on the main thread.
///
/// Main thread only. The destructor cancels the job and waits for it.
class TransferModel final : public QObject {
    Q_OBJECT
public:
    explicit TransferModel(std::unique_ptr<TransferJob> job, QObject* parent = nullptr);
    ~TransferModel() override;

    const UUID& id() const { return job_->id(); }
    TransferKind kind() const { return job_->kind(); }
    const std::vector<URL>& sources() const { return job_->sources(); }
    const std::optional<URL>& destination() const { return job_->destination(); }
    /// “Copy “a.txt” to “Documents””, as it is shown.
    QString title() const;
    /// The same with the bytes of the names.
    std::string recordTitle() const { return job_->title(); }

    const TransferProgress& progress() const { return progress_; }
    const std::vector<TransferFailure>& failures() const { return failures_; }
    /// What a cancelled transfer had done already and has not taken back, in words.
    const std::string& notice() const { return notice_; }
    /// From the first moment until the result is there.
    bool isActive() const { return isActive_; }
    bool hasStarted() const { return hasStarted_; }
    /// Seconds since it was started, pauses and questions included; 0 before.
    double secondsSinceStart() const;
    bool wasCancelled() const { return wasCancelled_; }

    /// The window that asked for it, and asks the user for it.
    const UUID& windowID() const { return windowID_; }
    void setWindowID(const UUID& id) { windowID_ = id; }

    /// Once.
    void start();
    void pause();
    void resume();
    /// One that has not started ends at once.
    void cancel();

    /// The question that the job waits for; absent for none.
    const std::optional<TransferConflict>& conflict() const { return conflict_; }
    void answer(const ConflictDecision& decision);

signals:
    void progressChanged();
    void conflictChanged();
    /// Once, after the last change of progress.
    void finished(const tarn::TransferResult& result);

private:
    struct Link;

    void takeProgress();
    void ask(const TransferConflict& conflict);
    void end(const TransferResult& result);

    std::unique_ptr<TransferJob> job_;
    std::shared_ptr<Link> link_;  ///< What the job's thread and this object share.
    TransferProgress progress_;
    std::vector<TransferFailure> failures_;
    std::string notice_;
    std::optional<TransferConflict> conflict_;
    UUID windowID_;
    bool isActive_ = true;
    bool hasStarted_ = false;
    QElapsedTimer sinceStart_;
    bool wasCancelled_ = false;
};

}  // namespace tarn
