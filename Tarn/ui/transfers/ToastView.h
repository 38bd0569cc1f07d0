#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

#include "Tarn/model/Toast.h"

class QLabel;
class QPushButton;
class QToolButton;

namespace tarn {

class SymbolView;
class WindowModel;

/// The message at the bottom of a tab: one at a time, for 6 seconds, or 12 with “Undo”. It stays
/// while the pointer or the keyboard is on it, and time does not pass while the tab is not shown.
class ToastView final : public QWidget {
    Q_OBJECT
public:
    static constexpr int shortTime = 6000;   ///< Milliseconds.
    static constexpr int longTime = 12'000;  ///< Milliseconds; with something to click, or to read.

    /// A child of `window`, so that it is seen over a sheet; it floats at the bottom of `pane`.
    ToastView(WindowModel& model, QWidget& window, QWidget& pane);
    ~ToastView() override;

    /// Milliseconds until it goes by itself; does not pass while it is held.
    int timeLeft() const;
    bool isHeld() const { return isHeld_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void showToast();
    void appear();
    void place();
    void hold();
    void dismiss();

    WindowModel& window_;
    QWidget& pane_;
    SymbolView* symbol_;
    SymbolView* warning_;
    QLabel* message_;
    QPushButton* undo_;
    QToolButton* close_;
    UUID shown_;
    QTimer timer_;
    int remaining_ = 0;  ///< Milliseconds, while held.
    bool isHeld_ = false;
};

}  // namespace tarn
