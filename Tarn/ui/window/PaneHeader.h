#pragma once

#include <QtWidgets/QWidget>

class QToolButton;

namespace tarn {

class ElidedLabel;
class PaneModel;
class SymbolView;

/// The line above a pane that has another one beside it: what it shows, and the button that closes
/// it. The active one of the two bears a line in the accent colour.
class PaneHeader final : public QWidget {
    Q_OBJECT
public:
    PaneHeader(PaneModel& pane, QWidget* parent);

    void setActive(bool active);
    bool isActive() const { return isActive_; }

signals:
    void closePressed();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showPlace();

    PaneModel& pane_;
    SymbolView* symbol_;
    ElidedLabel* title_;
    QToolButton* close_;
    bool isActive_ = false;
};

}  // namespace tarn
