#include "Tarn/model/ActivityList.h"

#include <algorithm>
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
    ActivityTask& task = append(std::make_unique<ActivityTask>(title, "archivebox"));
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

ActivityTask& ActivityList::append(std::unique_ptr<ActivityTask> task) {
    connect(task.get(), &ActivityTask::changed, this, &ActivityList::progressChanged);
    tasks_.push_back(std::move(task));
    return *tasks_.back();
}

ActivityTask& ActivityList::show(const QString& title, const std::string& symbol) {
    Q_ASSERT(MainThread::isCurrent());
    ActivityTask& task = append(std::make_unique<ActivityTask>(title, symbol));
    task.setService(true);
    emit listChanged();
    return task;
}

bool ActivityList::hasWork() const {
    return std::any_of(tasks_.begin(), tasks_.end(),
                       [](const auto& task) { return !task->isService(); });
}

void ActivityList::stopWork() {
    for (const auto& task : tasks_)
        if (!task->isService()) task->stop();
}

double ActivityList::fraction() const {
    const ActivityTask* shown = nullptr;
    for (const auto& task : tasks_)
        if (!shown || (shown->isService() && !task->isService())) shown = task.get();
    return shown ? shown->fraction().value_or(0) : 0;
}

void ActivityList::end(const UUID& id) {
    std::erase_if(tasks_, [&id](const auto& task) { return task->id() == id; });
    emit listChanged();
}

}  // namespace tarn
