#pragma once

#include <functional>

#include <QtCore/QObject>
#include <QtCore/QPointer>

namespace tarn {

class ConflictSheet;
class HistorySheet;
class QuestionSheet;
class ToastView;
class TransferList;
class TransferModel;
class TransfersButton;
class TransfersPanel;
class WindowModel;

/// What a window shows of the changes that are made to files: the toast, the transfers, the
/// questions they ask, and the history.
class WindowChanges final : public QObject {
    Q_OBJECT
public:
    /// The toast floats above `pane`; `button` opens the transfers. All are parts of `window`.
    WindowChanges(WindowModel& model, QWidget& window, QWidget& pane, TransfersButton& button);

    /// Asks before the last window goes while files are being transferred, packed or unpacked; true
    /// when it may go at once. Otherwise the window is closed later, if the person wants it.
    bool mayClose();
    /// Closes all windows, after the same question.
    void quit();

private:
    void ask();
    bool isAskedHere(const TransferModel& transfer) const;
    void showHistory();
    bool isBusy() const;
    void askToStop(const QString& sentence, const QString& yes, std::function<void()> then);
    void goOnWhenIdle();

    WindowModel& model_;
    QWidget& window_;
    TransferList& transfers_;
    TransfersButton& button_;
    TransfersPanel* panel_;
    ToastView* toast_;
    QPointer<ConflictSheet> conflict_;
    QPointer<HistorySheet> history_;
    QPointer<QuestionSheet> question_;
    std::function<void()> whenIdle_;  ///< What waits for the work that is being stopped.
};

}  // namespace tarn
