#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Tarn/model/ActivityTask.h"
#include "TarnCore/base/SerialQueue.h"

namespace tarn {

/// The long jobs of the program beside its transfers, one after the other in the order they were
/// asked for, on a queue of their own.
///
/// Main thread only. The destructor stops them all and waits.
class ActivityList final : public QObject {
    Q_OBJECT
public:
    using Work = std::function<void(ActivityTask::Handle&)>;

    explicit ActivityList(QObject* parent = nullptr);
    ~ActivityList() override;

    /// `work` runs on the queue and must not throw; it polls the token of its handle. One that was
    /// stopped before it began does not run. `then` hears of the end on the main thread, and
    /// whether it ran.
    ActivityTask& add(const QString& title, Work work, std::function<void(bool)> then = {});

    /// Those that run or wait, oldest first.
    const std::vector<std::unique_ptr<ActivityTask>>& tasks() const { return tasks_; }
    bool isEmpty() const { return tasks_.empty(); }
    /// Of the one at work; 0 while that is unknown.
    double fraction() const;

signals:
    /// One was added or has ended.
    void listChanged();
    /// One tells how far it has come.
    void progressChanged();

private:
    void end(const UUID& id);

    std::vector<std::unique_ptr<ActivityTask>> tasks_;
    SerialQueue queue_{"tarn.activities"};
};

}  // namespace tarn
