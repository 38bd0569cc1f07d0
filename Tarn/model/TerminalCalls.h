#pragma once

#include <memory>

#include <QtCore/QObject>

#include "TarnCore/platform/WindowSocket.h"

class QSocketNotifier;

namespace tarn {

class HistoryModel;

/// Answers what the terminal program asks of the window: `tarn redo`. Main thread only. Of several
/// window programs of a user the first answers; the others have nothing to do here.
class TerminalCalls final : public QObject {
    Q_OBJECT
public:
    /// `history` outlives it.
    explicit TerminalCalls(HistoryModel& history, QObject* parent = nullptr);
    ~TerminalCalls() override;

    bool isListening() const { return socket_ != nullptr; }

private:
    void answerNext();

    HistoryModel& history_;
    std::unique_ptr<WindowSocket> socket_;
    std::unique_ptr<QSocketNotifier> notifier_;  ///< Ends before the socket does.
};

}  // namespace tarn
