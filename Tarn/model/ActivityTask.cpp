#include "Tarn/model/ActivityTask.h"

#include <utility>

#include "Tarn/model/MainThread.h"

namespace tarn {

ActivityTask::ActivityTask(QString title, std::string symbol, QObject* parent)
    : QObject(parent),
      title_(std::move(title)),
      symbol_(std::move(symbol)),
      handle_(std::make_shared<Handle>()) {
    handle_->task_ = this;
}

ActivityTask::~ActivityTask() { release(); }

void ActivityTask::release() {
    handle_->token_.cancel();
    {
        const std::lock_guard lock(handle_->mutex_);
        handle_->isPaused_ = false;
    }
    handle_->resumed_.notify_all();
}

void ActivityTask::pause() {
    {
        const std::lock_guard lock(handle_->mutex_);
        handle_->isPaused_ = true;
    }
    isPaused_ = true;
    resumeRefused_ = false;
    emit changed();
}

void ActivityTask::resume() {
    {
        const std::lock_guard lock(handle_->mutex_);
        handle_->isPaused_ = false;
    }
    handle_->resumed_.notify_all();
    resumeRefused_ = power_.has_value();
    if (!std::exchange(isPaused_, false) && !resumeRefused_) return;
    emit changed();
}

void ActivityTask::setPower(std::optional<QString> reason) {
    if (reason == power_) return;
    power_ = std::move(reason);
    if (!power_) resumeRefused_ = false;
    emit changed();
}

void ActivityTask::tell(const QString& detail, std::optional<double> fraction) {
    if (detail == detail_ && fraction == fraction_) return;
    detail_ = detail;
    fraction_ = fraction;
    emit changed();
}

void ActivityTask::stop() {
    release();
    isPaused_ = false;
    emit changed();
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
