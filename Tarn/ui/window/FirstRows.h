#pragma once

#include <functional>

#include <QtCore/QObject>
#include <QtCore/QTimer>

namespace tarn {

/// The moment when the first window shows its files, for which everything waits that nobody sees.
/// Main thread only.
class FirstRows final : public QObject {
    Q_OBJECT
public:
    /// Calls `then` once, when files have been drawn for the first time; where none come, after
    /// half a second.
    explicit FirstRows(std::function<void()> then, QObject* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void finish();

    std::function<void()> then_;
    QTimer patience_;
};

}  // namespace tarn
