#include "Tarn/model/TransferModel.h"

#include <condition_variable>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/MainThread.h"
#include "TarnCore/base/Guarded.h"

namespace tarn {

struct TransferModel::Link {
    struct State {
        TransferProgress progress;
        bool isPosted = false;  ///< The main thread has been told and has not looked yet.
        std::optional<ConflictDecision> answer;
        bool isClosed = false;  ///< Nobody will answer any more.
    };
    Guarded<State> state;
    std::condition_variable answered;
};

TransferModel::TransferModel(std::unique_ptr<TransferJob> job, QObject* parent)
    : QObject(parent), job_(std::move(job)), link_(std::make_shared<Link>()) {
    Q_ASSERT(MainThread::isCurrent());
    const QPointer<TransferModel> self(this);
    job_->onProgress = [link = link_, self](const TransferProgress& progress) {
        {
            auto state = link->state.lock();
            state->progress = progress;
            if (state->isPosted) return;
            state->isPosted = true;
        }
        MainThread::post(self, [](TransferModel& model) { model.takeProgress(); });
    };
    job_->resolveConflict = [link = link_, self](const TransferConflict& conflict) {
        link->state.lock()->answer.reset();
        MainThread::post(self, [conflict](TransferModel& model) { model.ask(conflict); });
        auto state = link->state.lock();
        link->answered.wait(state.mutex(),
                            [&state] { return state->answer.has_value() || state->isClosed; });
        return state->answer.value_or(ConflictDecision{ConflictAction::stop, false});
    };
    job_->onFinish = [self](const TransferResult& result) {
        MainThread::post(self, [result](TransferModel& model) { model.end(result); });
    };
}

TransferModel::~TransferModel() {
    link_->state.lock()->isClosed = true;
    link_->answered.notify_all();
    job_->cancel();
}

QString TransferModel::title() const { return coreSentence(job_->title()); }

void TransferModel::start() {
    if (hasStarted_ || !isActive_) return;
    hasStarted_ = true;
    sinceStart_.start();
    job_->start();
}

double TransferModel::secondsSinceStart() const {
    constexpr double milliseconds = 1000;
    return sinceStart_.isValid() ? static_cast<double>(sinceStart_.elapsed()) / milliseconds : 0;
}

void TransferModel::pause() {
    if (hasStarted_) job_->pause();
}

void TransferModel::resume() {
    if (hasStarted_) job_->resume();
}

void TransferModel::cancel() {
    if (!isActive_) return;
    if (!hasStarted_) {
        TransferResult result;
        result.cancelled = true;
        progress_.state = TransferState::cancelled;
        end(result);
        return;
    }
    job_->cancel();
    if (conflict_) answer({ConflictAction::stop, false});
}

void TransferModel::answer(const ConflictDecision& decision) {
    if (!conflict_) return;
    conflict_.reset();
    link_->state.lock()->answer = decision;
    link_->answered.notify_all();
    emit conflictChanged();
}

void TransferModel::takeProgress() {
    {
        auto state = link_->state.lock();
        state->isPosted = false;
        progress_ = state->progress;
    }
    emit progressChanged();
}

void TransferModel::ask(const TransferConflict& conflict) {
    conflict_ = conflict;
    emit conflictChanged();
}

void TransferModel::end(const TransferResult& result) {
    if (!isActive_) return;
    failures_ = result.failures;
    notice_ = result.notice;
    wasCancelled_ = result.cancelled;
    isActive_ = false;
    if (hasStarted_) takeProgress();
    emit finished(result);
}

}  // namespace tarn
