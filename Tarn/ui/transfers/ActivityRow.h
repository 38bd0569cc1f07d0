#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

class QProgressBar;
class QToolButton;

namespace tarn {

class ActivityTask;
class TabularLabel;

/// A long job among the transfers: what it does, how far it has come, and the buttons to hold and
/// to stop it.
class ActivityRow final : public QWidget {
    Q_OBJECT
public:
    explicit ActivityRow(ActivityTask& task, QWidget* parent = nullptr);

    /// Null once the job has ended.
    ActivityTask* task() const { return task_; }

private:
    void refreshSoon();
    void refresh();

    QPointer<ActivityTask> task_;
    QToolButton* pause_;
    QToolButton* stop_;
    QProgressBar* bar_;
    TabularLabel* detail_;
    QTimer timer_;
    QElapsedTimer sinceShown_;
};

}  // namespace tarn
