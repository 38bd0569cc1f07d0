#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <QtCore/QObject>

#include "Tarn/model/TransferModel.h"
#include "TarnCore/base/UUID.h"

namespace tarn {

class HistoryModel;

/// The transfers of all windows: those at work, those that wait for their turn, and those that
/// ended with something to tell and have not been seen.
///
/// Transfers between the same two disks take turns, since each would only slow the other down.
/// Moves on one disk and the Trash never wait. Main thread only.
class TransferList final : public QObject {
    Q_OBJECT
public:
    /// What is done is recorded in `history`, which outlives the list.
    explicit TransferList(HistoryModel& history, QObject* parent = nullptr);
    ~TransferList() override;

    /// Called once, on the main thread, when a transfer has ended; with the id of its entry in the
    /// history where there is one.
    using Ended = std::function<void(const TransferModel& transfer, const TransferResult& result,
                                     std::optional<UUID> entry)>;
    /// Starts a transfer, or lets it wait for those between the same disks.
    TransferModel& add(TransferKind kind, std::vector<URL> sources, std::optional<URL> destination,
                       Ended ended = {});
    /// Starts one that waits for its turn, now.
    void startNow(TransferModel& transfer);

    /// Oldest first.
    const std::vector<TransferModel*>& transfers() const { return transfers_; }
    std::size_t activeCount() const;
    bool isEmpty() const { return transfers_.empty(); }
    /// Part of everything under way that is done, 0 to 1; absent when nothing is.
    std::optional<double> fraction() const;
    /// The first that waits for an answer; null for none.
    TransferModel* asking() const;

    /// Tells again of transfers that wait for an answer, when the window that asked has gone.
    void repeatQuestions();

    /// Drops what has ended and told its failures.
    void removeEnded();
    void remove(TransferModel& ended);
    void cancelAll();

signals:
    /// A transfer came or went.
    void listChanged();
    /// One has ended, whether or not it has something to tell; it may go at once.
    void transferEnded(const tarn::TransferModel& transfer, const tarn::TransferResult& result);
    /// Progress, state or question of one.
    void transferChanged(tarn::TransferModel* transfer);

private:
    /// The two disks of a transfer, by their mount points; empty for one that never waits.
    using Lane = std::pair<std::string, std::string>;
    static Lane laneOf(TransferKind kind, const std::vector<URL>& sources,
                       const std::optional<URL>& destination);
    void end(TransferModel& transfer, const TransferResult& result, const Ended& ended);
    void startWaiting();
    Lane lane(const TransferModel& transfer) const;

    HistoryModel& history_;
    std::vector<TransferModel*> transfers_;
};

}  // namespace tarn
