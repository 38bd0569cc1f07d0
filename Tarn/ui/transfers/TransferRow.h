#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

#include "Tarn/ui/transfers/TimeLeft.h"
#include "TarnCore/ops/TransferProgress.h"

class QLabel;
class QProgressBar;
class QToolButton;
class QVBoxLayout;

namespace tarn {

class TabularLabel;
class ElidedLabel;
class TransferList;
class TransferModel;

/// One transfer: what it does, how far it has come, and what can be done about it.
class TransferRow final : public QWidget {
    Q_OBJECT
public:
    /// Milliseconds between two changes of the numbers.
    static constexpr int calm = 250;

    TransferRow(TransferList& list, TransferModel& transfer, QWidget* parent = nullptr);

    TransferModel& transfer() const { return transfer_; }
    QString detail() const;

private:
    void refreshSoon();
    void refresh();
    void showFailures();

    TransferList& list_;
    TransferModel& transfer_;
    ElidedLabel* title_;
    QToolButton* pause_;
    QToolButton* stop_;
    QProgressBar* bar_;
    TabularLabel* detail_;
    QVBoxLayout* column_;
    QWidget* failures_ = nullptr;
    TimeLeft timeLeft_;
    QElapsedTimer clock_;
    QElapsedTimer sinceShown_;
    QTimer timer_;
    TransferState shownState_ = TransferState::queued;
};

}  // namespace tarn
