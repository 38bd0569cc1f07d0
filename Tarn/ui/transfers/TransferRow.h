#pragma once

#include <QtCore/QElapsedTimer>

#include "Tarn/ui/transfers/JobRow.h"
#include "Tarn/ui/transfers/TimeLeft.h"
#include "TarnCore/ops/TransferProgress.h"

namespace tarn {

class SpeedGraph;
class TransferList;
class TransferModel;

/// One transfer; once it has ended, what could not be done. Under the pointer it shows how fast it
/// has been.
class TransferRow final : public JobRow {
    Q_OBJECT
public:
    TransferRow(TransferList& list, TransferModel& transfer, QWidget* parent = nullptr);

    TransferModel& transfer() const { return transfer_; }

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void transferChanged();
    void showState() override;
    void showFailures();

    TransferList& list_;
    TransferModel& transfer_;
    SpeedGraph* graph_;
    QWidget* failures_ = nullptr;
    TimeLeft timeLeft_;
    QElapsedTimer clock_;
    TransferState shownState_ = TransferState::queued;
};

}  // namespace tarn
