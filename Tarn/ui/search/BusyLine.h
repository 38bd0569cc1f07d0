#pragma once

#include <QtCore/QVariantAnimation>
#include <QtWidgets/QWidget>

#include "Tarn/ui/states/LoadingGate.h"

namespace tarn {

/// A thin line that runs while something is being searched; a still one when motion is off. It
/// keeps its room when it is idle, so that nothing below it moves.
class BusyLine final : public QWidget {
    Q_OBJECT
public:
    explicit BusyLine(QWidget* parent = nullptr);
    void setBusy(bool busy);
    bool isBusy() const { return busy_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void follow();

    LoadingGate gate_;
    QVariantAnimation run_;
    bool busy_ = false;
};

}  // namespace tarn
