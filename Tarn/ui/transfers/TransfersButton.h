#pragma once

#include <optional>

#include <QtWidgets/QToolButton>

#include "Tarn/ui/states/LoadingGate.h"

namespace tarn {

class ActivityList;
class TransferList;

/// Opens the list of transfers and other long jobs; around it grows a ring with what is done. There
/// only while there is something in the list.
class TransfersButton final : public QToolButton {
    Q_OBJECT
public:
    TransfersButton(TransferList& list, ActivityList& activities, QWidget* parent = nullptr);

    /// Keeps it there without transfers, while their list is open.
    void setHeld(bool held);

signals:
    void shownChanged();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void follow();
    bool isEmpty() const;
    /// Of everything under way; absent when nothing is.
    std::optional<double> fraction() const;

    TransferList& list_;
    ActivityList& activities_;
    LoadingGate gate_;
    bool isHeld_ = false;
    int shownStep_ = -1;  ///< Of the ring, so that it is drawn only when it grows.
};

}  // namespace tarn
