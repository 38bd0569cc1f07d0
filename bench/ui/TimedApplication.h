#pragma once

#include <algorithm>

#include <QtCore/QElapsedTimer>
#include <QtWidgets/QApplication>

namespace tarn::bench {

/// An application that measures how long its main thread is busy with one event, so that a view
/// that stalls is found wherever the time goes: in the model, in layout, or in painting.
class TimedApplication final : public QApplication {
public:
    using QApplication::QApplication;

    /// The longest that one event took since the last reset, in seconds.
    double longestBlock() const { return static_cast<double>(longest_) * 1e-9; }
    void reset() { longest_ = 0; }

    bool notify(QObject* receiver, QEvent* event) override {
        if (depth_ > 0) return QApplication::notify(receiver, event);
        ++depth_;
        QElapsedTimer timer;
        timer.start();
        const bool result = QApplication::notify(receiver, event);
        longest_ = std::max(longest_, timer.nsecsElapsed());
        --depth_;
        return result;
    }

private:
    qint64 longest_ = 0;
    int depth_ = 0;
};

}  // namespace tarn::bench
