#include "Tarn/model/HistoryModel.h"

#include <algorithm>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/MainThread.h"

namespace tarn {
namespace {

std::optional<QString> shown(const std::optional<std::string>& title) {
    if (!title) return std::nullopt;
    return coreSentence(*title);
}

}  // namespace

HistoryModel::HistoryModel(std::optional<URL> file, QObject* parent)
    : QObject(parent), history_(std::make_shared<std::unique_ptr<OperationHistory>>()) {
    Q_ASSERT(MainThread::isCurrent());
    queue_.run([holder = history_, file = std::move(file)] {
        *holder = std::make_unique<OperationHistory>(file);
    });
    run([](OperationHistory&) {});
}

HistoryModel::~HistoryModel() { queue_.flush(); }

void HistoryModel::run(std::function<void(OperationHistory&)> task) {
    queue_.run([holder = history_, task = std::move(task), self = QPointer<HistoryModel>(this)] {
        OperationHistory& history = **holder;
        bool hasChanged = false;
        history.onChange = [&hasChanged] { hasChanged = true; };
        task(history);
        history.onChange = {};
        MainThread::post(self, [undo = history.nextUndoTitle(), redo = history.nextRedoTitle(),
                                hasChanged](HistoryModel& model) {
            auto undoTitle = shown(undo);
            auto redoTitle = shown(redo);
            if (!hasChanged && undoTitle == model.undoTitle_ && redoTitle == model.redoTitle_)
                return;
            model.undoTitle_ = std::move(undoTitle);
            model.redoTitle_ = std::move(redoTitle);
            ++model.version_;
            emit model.changed();
        });
    });
}

void HistoryModel::record(HistoryEntry entry) {
    run([entry = std::move(entry)](OperationHistory& history) { history.record(entry); });
}

void HistoryModel::attempt(std::function<std::optional<HistoryEntry>(OperationHistory&)> task,
                           Answer answer) {
    run([task = std::move(task), answer = std::move(answer)](OperationHistory& history) {
        Outcome outcome;
        try {
            outcome.entry = task(history);
        } catch (const std::exception& error) {
            outcome.failure = coreSentence(error.what());
        }
        MainThread::post([answer, outcome = std::move(outcome)] {
            if (answer) answer(outcome);
        });
    });
}

void HistoryModel::undo(Answer answer) {
    attempt([](OperationHistory& history) { return history.undo(); }, std::move(answer));
}

void HistoryModel::undo(const UUID& id, Answer answer) {
    attempt([id](OperationHistory& history) { return history.undo(id); }, std::move(answer));
}

void HistoryModel::redo(Answer answer) {
    attempt([](OperationHistory& history) { return history.redo(); }, std::move(answer));
}

void HistoryModel::list(std::function<void(std::vector<Row>)> answer) {
    run([answer = std::move(answer)](OperationHistory& history) {
        history.refresh();
        std::vector<Row> rows;
        for (HistoryEntry& entry : history.undoStack()) {
            const bool canUndo = history.canUndo(entry.id);
            rows.push_back({std::move(entry), canUndo});
        }
        std::reverse(rows.begin(), rows.end());
        MainThread::post([answer, rows = std::move(rows)] { answer(rows); });
    });
}

void HistoryModel::refresh() {
    run([](OperationHistory& history) { history.refresh(); });
}

void HistoryModel::flush() { queue_.flush(); }

}  // namespace tarn
