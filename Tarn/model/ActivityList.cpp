#include "Tarn/model/ActivityList.h"

#include <utility>

#include "Tarn/model/MainThread.h"

namespace tarn {

ActivityList::ActivityList(QObject* parent) : QObject(parent) {}

ActivityList::~ActivityList() {
    for (const auto& task : tasks_) task->stop();
    queue_.flush();
}

ActivityTask& ActivityList::add(const QString& title, Work work, std::function<void(bool)> then) {
    Q_ASSERT(MainThread::isCurrent());
    tasks_.push_back(std::make_unique<ActivityTask>(title));
    ActivityTask& task = *tasks_.back();
    connect(&task, &ActivityTask::changed, this, &ActivityList::progressChanged);
    queue_.run([work = std::move(work), then = std::move(then), handle = task.handle(),
                id = task.id(), self = QPointer<ActivityList>(this)] {
        const bool runs = !handle->token().isCancelled();
        if (runs) work(*handle);
        MainThread::post(self, [id, then, runs](ActivityList& list) {
            list.end(id);
            if (then) then(runs);
        });
    });
    emit listChanged();
    return task;
}

double ActivityList::fraction() const {
    return tasks_.empty() ? 0 : tasks_.front()->fraction().value_or(0);
}

void ActivityList::end(const UUID& id) {
    std::erase_if(tasks_, [&id](const auto& task) { return task->id() == id; });
    emit listChanged();
}

}  // namespace tarn
