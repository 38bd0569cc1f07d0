#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>

namespace tarn {

/// Decides when a sign of loading is worth showing: not for the first 150 ms, and then for at
/// least 300 ms, so that quick work never flickers. Main thread only.
class LoadingGate final : public QObject {
    Q_OBJECT
public:
    static constexpr int delay = 150;     ///< Milliseconds.
    static constexpr int shortest = 300;  ///< Milliseconds.

    explicit LoadingGate(QObject* parent = nullptr);

    void setLoading(bool loading);
    bool isShown() const { return shown_; }

signals:
    void shownChanged(bool shown);

private:
    void step();
    void setShown(bool shown);

    QTimer timer_;
    QElapsedTimer since_;
    bool loading_ = false;
    bool shown_ = false;
};

}  // namespace tarn
