#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QtCore/QObject>
#include <QtCore/QString>

#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/ops/OperationHistory.h"

namespace tarn {

/// The history of changes as windows use it: recording, taking back and doing again, one after the
/// other on a queue of its own, with copies of what menus show.
///
/// Main thread only. The destructor finishes what was asked for.
class HistoryModel final : public QObject {
    Q_OBJECT
public:
    /// Reads the file in the background; in memory only without one.
    explicit HistoryModel(std::optional<URL> file, QObject* parent = nullptr);
    ~HistoryModel() override;

    /// Counts the changes of the history.
    std::uint64_t version() const { return version_; }
    bool canUndo() const { return undoTitle_.has_value(); }
    bool canRedo() const { return redoTitle_.has_value(); }
    /// “Move “a.txt” to “Documents””; absent when there is nothing to take back.
    const std::optional<QString>& nextUndoTitle() const { return undoTitle_; }
    const std::optional<QString>& nextRedoTitle() const { return redoTitle_; }

    void record(HistoryEntry entry);

    /// How taking back or doing again went: the entry that it was, none when there was nothing to
    /// do, or the sentence of what prevented it.
    struct Outcome {
        std::optional<HistoryEntry> entry;
        QString failure;
    };
    /// Called on the main thread, also when whoever asked has gone.
    using Answer = std::function<void(const Outcome&)>;
    void undo(Answer answer);
    void undo(const UUID& id, Answer answer);
    void redo(Answer answer);

    struct Row {
        HistoryEntry entry;
        bool canUndo = false;  ///< Its files are still where the entry says.
    };
    /// All that can be taken back, newest first, looked at on the queue.
    void list(std::function<void(std::vector<Row>)> answer);

    /// Takes over what other programs have recorded or taken back.
    void refresh();
    /// Waits until all that was asked for is done.
    void flush();

signals:
    void changed();

private:
    /// Runs on the queue, with the history read.
    void run(std::function<void(OperationHistory&)> task);
    void attempt(std::function<std::optional<HistoryEntry>(OperationHistory&)> task, Answer answer);

    std::shared_ptr<std::unique_ptr<OperationHistory>> history_;  ///< Only the queue looks inside.
    std::uint64_t version_ = 0;
    std::optional<QString> undoTitle_;
    std::optional<QString> redoTitle_;
    SerialQueue queue_{"tarn.history"};
};

}  // namespace tarn
