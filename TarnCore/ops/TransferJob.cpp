#include "TarnCore/ops/TransferJob.h"

#include <utility>

#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/ops/TransferMonitor.h"
#include "TarnCore/ops/TransferRun.h"
#include "TarnCore/ops/TransferWords.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {

struct TransferJob::State {
    const UUID id = UUID::random();
    const TransferKind kind;
    const std::vector<URL> sources;
    const std::optional<URL> destination;
    const Date createdAt = Platform::current().clock->now();
    TransferMonitor monitor{};
    std::unique_ptr<SerialQueue> queue{};  ///< Goes first, and waits.
};

TransferJob::TransferJob(TransferKind kind, std::vector<URL> sources,
                         std::optional<URL> destination)
    : state_(new State{
          .kind = kind, .sources = std::move(sources), .destination = std::move(destination)}) {}

TransferJob::~TransferJob() {
    cancel();
    state_->queue.reset();
}

const UUID& TransferJob::id() const { return state_->id; }
TransferKind TransferJob::kind() const { return state_->kind; }
const std::vector<URL>& TransferJob::sources() const { return state_->sources; }
const std::optional<URL>& TransferJob::destination() const { return state_->destination; }
Date TransferJob::createdAt() const { return state_->createdAt; }

std::string TransferJob::title() const {
    return TransferWords::title(kind(), sources(), destination());
}

void TransferJob::start() {
    state_->queue = std::make_unique<SerialQueue>("tarn.transfer");
    state_->queue->run([this] { run(); });
}

void TransferJob::run() {
    state_->monitor.setReport(onProgress);
    TransferRun work(*this, state_->monitor);
    const TransferResult result = work.run();
    state_->monitor.finishReports();
    if (onFinish) onFinish(result);
}

void TransferJob::pause() { state_->monitor.pause(); }
void TransferJob::resume() { state_->monitor.resume(); }
void TransferJob::cancel() { state_->monitor.cancel(); }
TransferProgress TransferJob::progress() const { return state_->monitor.progress(); }

}  // namespace tarn
