#pragma once

#include <QtCore/QPointer>

#include "Tarn/ui/transfers/JobRow.h"

namespace tarn {

class ActivityTask;

/// A long job among the transfers.
class ActivityRow final : public JobRow {
    Q_OBJECT
public:
    explicit ActivityRow(ActivityTask& task, QWidget* parent = nullptr);

    /// Null once the job has ended.
    ActivityTask* task() const { return task_; }

private:
    void showState() override;

    QPointer<ActivityTask> task_;
};

}  // namespace tarn
