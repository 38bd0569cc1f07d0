#include "Tarn/ui/transfers/ActivityRow.h"

#include <QtWidgets/QToolButton>

#include "Tarn/model/ActivityTask.h"

namespace tarn {

ActivityRow::ActivityRow(ActivityTask& task, QWidget* parent)
    : JobRow(task.title(), task.symbol(), parent), task_(&task) {
    connect(&task, &ActivityTask::changed, this, [this] { refreshSoon(); });
    connect(&pauseButton(), &QToolButton::clicked, this, [this] {
        if (!task_) return;
        if (task_->isPaused())
            task_->resume();
        else
            task_->pause();
        refresh();
    });
    connect(&stopButton(), &QToolButton::clicked, this, [this] {
        if (task_) task_->stop();
        refresh();
    });
    setStop(tr("Stop"));
    refresh();
}

void ActivityRow::showState() {
    if (!task_) return;
    setFraction(task_->fraction());
    QString detail = task_->isStopped()  ? tr("Stopping…")
                     : task_->isPaused() ? tr("Paused")
                                         : task_->power().value_or(task_->detail());
    if (detail.isEmpty()) detail = tr("Waiting…");
    setDetail(detail);
    if (task_->isPaused())
        setPause("play", tr("Resume"));
    else
        setPause("pause", tr("Pause"));
    pauseButton().setVisible(task_->canPause());
    pauseButton().setEnabled(!task_->isStopped());
    stopButton().setEnabled(!task_->isStopped());
}

}  // namespace tarn
