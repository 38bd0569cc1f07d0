#pragma once

#include <QtCore/QElapsedTimer>

#include "Tarn/ui/transfers/JobRow.h"
#include "Tarn/ui/transfers/TimeLeft.h"
#include "TarnCore/ops/TransferProgress.h"

namespace tarn {

class TransferList;
class TransferModel;

/// One transfer; once it has ended, what could not be done.
class TransferRow final : public JobRow {
    Q_OBJECT
public:
    TransferRow(TransferList& list, TransferModel& transfer, QWidget* parent = nullptr);

    TransferModel& transfer() const { return transfer_; }

private:
    void transferChanged();
    void showState() override;
    void showFailures();

    TransferList& list_;
    TransferModel& transfer_;
    QWidget* failures_ = nullptr;
    TimeLeft timeLeft_;
    QElapsedTimer clock_;
    TransferState shownState_ = TransferState::queued;
};

}  // namespace tarn
