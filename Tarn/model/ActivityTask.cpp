#include "Tarn/model/ActivityTask.h"

#include <utility>

#include "Tarn/model/MainThread.h"

namespace tarn {

ActivityTask::ActivityTask(QString title, QObject* parent)
    : QObject(parent), title_(std::move(title)), handle_(std::make_shared<Handle>()) {
    handle_->task_ = this;
}

ActivityTask::~ActivityTask() { stop(); }

void ActivityTask::pause() {
    {
        const std::lock_guard lock(handle_->mutex_);
        handle_->isPaused_ = true;
    }
    isPaused_ = true;
    emit changed();
}

void ActivityTask::resume() {
    {
        const std::lock_guard lock(handle_->mutex_);
        handle_->isPaused_ = false;
    }
    handle_->resumed_.notify_all();
    if (!std::exchange(isPaused_, false)) return;
    emit changed();
}

void ActivityTask::stop() {
    handle_->token_.cancel();
    resume();
}

void ActivityTask::take() {
    Handle::Report report;
    {
        const std::lock_guard lock(handle_->mutex_);
        handle_->isPosted_ = false;
        report = handle_->latest_;
    }
    detail_ = report.detail;
    fraction_ = report.fraction;
    emit changed();
}

void ActivityTask::Handle::report(const QString& detail, std::optional<double> fraction) {
    std::unique_lock lock(mutex_);
    latest_ = {detail, fraction};
    if (!std::exchange(isPosted_, true))
        MainThread::post(task_, [](ActivityTask& task) { task.take(); });
    resumed_.wait(lock, [this] { return !isPaused_ || token_.isCancelled(); });
}

}  // namespace tarn
