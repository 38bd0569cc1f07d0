#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Tarn/model/ActivityTask.h"
#include "TarnCore/base/SerialQueue.h"

namespace tarn {

/// The long jobs of the program beside its transfers: work on archives, one after the other in the
/// order it was asked for, on a queue of its own, and the services that run beside it.
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

    /// A job that runs elsewhere and goes on by itself another time (ActivityTask::isService); who
    /// shows it ends it.
    ActivityTask& show(const QString& title, const std::string& symbol);
    void end(const UUID& id);

    /// Something runs or waits that would be lost.
    bool hasWork() const;
    /// Stops what `hasWork` tells of.
    void stopWork();

    /// Those that run or wait, oldest first.
    const std::vector<std::unique_ptr<ActivityTask>>& tasks() const { return tasks_; }
    bool isEmpty() const { return tasks_.empty(); }
    /// Of the one at work, of a service when there is no other; 0 while that is unknown.
    double fraction() const;

signals:
    /// One was added or has ended.
    void listChanged();
    /// One tells how far it has come.
    void progressChanged();

private:
    ActivityTask& append(std::unique_ptr<ActivityTask> task);

    std::vector<std::unique_ptr<ActivityTask>> tasks_;
    SerialQueue queue_{"tarn.activities"};
};

}  // namespace tarn
