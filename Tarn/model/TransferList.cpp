#include "Tarn/model/TransferList.h"

#include <algorithm>

#include "Tarn/model/HistoryModel.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

OperationKind operation(TransferKind kind) {
    switch (kind) {
        case TransferKind::copy:
            return OperationKind::copy;
        case TransferKind::move:
            return OperationKind::move;
        case TransferKind::trash:
            return OperationKind::trash;
    }
    return OperationKind::move;
}

}  // namespace

TransferList::TransferList(HistoryModel& history, QObject* parent)
    : QObject(parent), history_(history) {}

TransferList::~TransferList() {
    // All are told before the first is waited for.
    for (TransferModel* transfer : transfers_) {
        transfer->disconnect(this);
        transfer->cancel();
    }
    for (TransferModel* transfer : transfers_) delete transfer;
}

TransferList::Lane TransferList::laneOf(TransferKind kind, const std::vector<URL>& sources,
                                        const std::optional<URL>& destination) {
    const auto& volumes = Platform::current().volumes;
    if (kind == TransferKind::trash || sources.empty() || !destination || !volumes) return {};
    // The mount table alone: a disk that is away must not make the window wait.
    const auto from = volumes->mountHolding(sources.front());
    const auto to = volumes->mountHolding(*destination);
    if (!from || !to) return {};
    if (kind == TransferKind::move && from->mountPoint == to->mountPoint) return {};
    return {from->mountPoint.path(), to->mountPoint.path()};
}

TransferList::Lane TransferList::lane(const TransferModel& transfer) const {
    return laneOf(transfer.kind(), transfer.sources(), transfer.destination());
}

TransferModel& TransferList::add(TransferKind kind, std::vector<URL> sources,
                                 std::optional<URL> destination, Ended ended) {
    auto* transfer = new TransferModel(
        std::make_unique<TransferJob>(kind, std::move(sources), std::move(destination)));
    connect(transfer, &TransferModel::progressChanged, this,
            [this, transfer] { emit transferChanged(transfer); });
    connect(transfer, &TransferModel::conflictChanged, this,
            [this, transfer] { emit transferChanged(transfer); });
    connect(transfer, &TransferModel::finished, this,
            [this, transfer, ended = std::move(ended)](const TransferResult& result) {
                end(*transfer, result, ended);
            });
    transfers_.push_back(transfer);
    emit listChanged();
    startWaiting();
    return *transfer;
}

void TransferList::startNow(TransferModel& transfer) {
    transfer.start();
    emit transferChanged(&transfer);
}

void TransferList::startWaiting() {
    for (TransferModel* waiting : std::vector(transfers_)) {
        if (waiting->hasStarted() || !waiting->isActive()) continue;
        const Lane wanted = lane(*waiting);
        const bool isTaken =
            wanted != Lane() &&
            std::any_of(transfers_.begin(), transfers_.end(), [&](const TransferModel* other) {
                return other != waiting && other->isActive() && other->hasStarted() &&
                       lane(*other) == wanted;
            });
        if (!isTaken) startNow(*waiting);
    }
}

void TransferList::end(TransferModel& transfer, const TransferResult& result, const Ended& ended) {
    std::optional<UUID> entryID;
    if (!result.steps.empty()) {
        HistoryEntry entry;
        entry.kind = operation(transfer.kind());
        entry.title = transfer.recordTitle();
        entry.steps = result.steps;
        entry.fileCount = static_cast<std::int64_t>(result.resultURLs.size());
        entryID = entry.id;
        history_.record(std::move(entry));
    }
    if (ended) ended(transfer, result, entryID);
    emit transferEnded(transfer, result);
    const bool hasSomethingToTell = !transfer.failures().empty() || !transfer.notice().empty();
    if (hasSomethingToTell)
        emit transferChanged(&transfer);
    else
        remove(transfer);
    startWaiting();
}

std::size_t TransferList::activeCount() const {
    return static_cast<std::size_t>(
        std::count_if(transfers_.begin(), transfers_.end(),
                      [](const TransferModel* transfer) { return transfer->isActive(); }));
}

std::optional<double> TransferList::fraction() const {
    double sum = 0;
    double count = 0;
    for (const TransferModel* transfer : transfers_) {
        if (!transfer->isActive()) continue;
        sum += transfer->progress().fraction();
        count += 1;
    }
    if (count == 0) return std::nullopt;
    return sum / count;
}

TransferModel* TransferList::asking() const {
    for (TransferModel* transfer : transfers_)
        if (transfer->conflict()) return transfer;
    return nullptr;
}

void TransferList::repeatQuestions() {
    for (TransferModel* transfer : std::vector(transfers_))
        if (transfer->conflict()) emit transferChanged(transfer);
}

void TransferList::removeEnded() {
    const auto ended = std::stable_partition(transfers_.begin(), transfers_.end(),
                                             [](TransferModel* one) { return one->isActive(); });
    if (ended == transfers_.end()) return;
    for (auto it = ended; it != transfers_.end(); ++it) (*it)->deleteLater();
    transfers_.erase(ended, transfers_.end());
    emit listChanged();
}

void TransferList::remove(TransferModel& transfer) {
    if (transfer.isActive() || std::erase(transfers_, &transfer) == 0) return;
    transfer.deleteLater();
    emit listChanged();
}

void TransferList::cancelAll() {
    for (TransferModel* transfer : std::vector(transfers_)) transfer->cancel();
}

}  // namespace tarn
