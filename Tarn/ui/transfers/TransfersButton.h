#pragma once

#include <QtWidgets/QToolButton>

#include "Tarn/ui/states/LoadingGate.h"

namespace tarn {

class TransferList;

/// Opens the list of transfers; around it grows a ring with what is done. There only while there
/// is something in the list.
class TransfersButton final : public QToolButton {
    Q_OBJECT
public:
    explicit TransfersButton(TransferList& list, QWidget* parent = nullptr);

    /// Keeps it there without transfers, while their list is open.
    void setHeld(bool held);

signals:
    void shownChanged();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void follow();

    TransferList& list_;
    LoadingGate gate_;
    bool isHeld_ = false;
    int shownStep_ = -1;  ///< Of the ring, so that it is drawn only when it grows.
};

}  // namespace tarn
