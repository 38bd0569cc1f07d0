#include "TarnCore/base/TaskPool.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace tarn {

struct TaskPool::State {
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::function<void()>> urgent;
    std::deque<std::function<void()>> background;
    bool stopping = false;
    std::size_t threadCount = 0;
    std::vector<std::thread> threads;

    void startThreadsIfNeeded() {  // with the mutex held
        if (!threads.empty()) return;
        for (std::size_t i = 0; i < threadCount; ++i) threads.emplace_back([this] { work(); });
    }

    void work() {
        std::unique_lock lock(mutex);
        for (;;) {
            wake.wait(lock, [&] { return stopping || !urgent.empty() || !background.empty(); });
            if (stopping) return;
            auto& queue = urgent.empty() ? background : urgent;
            auto task = std::move(queue.front());
            queue.pop_front();
            lock.unlock();
            task();
            task = nullptr;
            lock.lock();
        }
    }
};

TaskPool::TaskPool(std::size_t threads) : state_(std::make_unique<State>()) {
    if (threads == 0) threads = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 2, 8);
    state_->threadCount = threads;
}

TaskPool::~TaskPool() {
    std::deque<std::function<void()>> dropped[2];
    {
        const std::lock_guard lock(state_->mutex);
        state_->stopping = true;
        dropped[0].swap(state_->urgent);
        dropped[1].swap(state_->background);
    }
    state_->wake.notify_all();
    for (auto& thread : state_->threads) thread.join();
}

void TaskPool::run(std::function<void()> task, TaskPriority priority) {
    {
        const std::lock_guard lock(state_->mutex);
        if (state_->stopping) return;
        state_->startThreadsIfNeeded();
        (priority == TaskPriority::userWaits ? state_->urgent : state_->background)
            .push_back(std::move(task));
    }
    state_->wake.notify_one();
}

void TaskPool::forEach(std::size_t count, const std::function<void(std::size_t)>& body) {
    if (count == 0) return;
    struct Share {
        std::atomic<std::size_t> next{0};
        std::mutex mutex;
        std::condition_variable done;
        std::size_t finished = 0;
    };
    // The helpers may start after the caller has done everything and gone, so they own the share;
    // `body` itself is only called for an index that the caller is still waiting for.
    auto share = std::make_shared<Share>();
    auto take = [share, count, &body] {
        for (;;) {
            const std::size_t i = share->next.fetch_add(1);
            if (i >= count) return;
            body(i);
            const std::lock_guard lock(share->mutex);
            if (++share->finished == count) share->done.notify_all();
        }
    };
    const std::size_t helpers = std::min(count - 1, state_->threadCount);
    for (std::size_t i = 0; i < helpers; ++i) run(take);
    take();
    std::unique_lock lock(share->mutex);
    share->done.wait(lock, [&] { return share->finished == count; });
}

std::size_t TaskPool::threadCount() const { return state_->threadCount; }

TaskPool& TaskPool::shared() {
    static TaskPool pool;
    return pool;
}

}  // namespace tarn
