#include "TarnCore/base/SerialQueue.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

#include <pthread.h>

namespace tarn {

struct SerialQueue::State {
    using Time = std::chrono::steady_clock::time_point;
    std::string name;
    std::mutex mutex;
    std::condition_variable wake;
    std::condition_variable idle;
    std::deque<std::function<void()>> tasks;
    std::multimap<Time, std::function<void()>> timed;
    bool running = false;
    bool stopping = false;
    std::thread thread;

    void startIfNeeded() {  // with the mutex held
        if (!thread.joinable()) thread = std::thread([this] { work(); });
    }

    void work() {
        pthread_setname_np(pthread_self(), name.substr(0, 15).c_str());
        std::unique_lock lock(mutex);
        for (;;) {
            while (!timed.empty() && timed.begin()->first <= std::chrono::steady_clock::now())
                tasks.push_back(std::move(timed.extract(timed.begin()).mapped()));
            if (tasks.empty()) {
                idle.notify_all();
                if (stopping) return;
                if (timed.empty())
                    wake.wait(lock);
                else
                    wake.wait_until(lock, Time(timed.begin()->first));
                continue;
            }
            auto task = std::move(tasks.front());
            tasks.pop_front();
            running = true;
            lock.unlock();
            task();
            task = nullptr;
            lock.lock();
            running = false;
        }
    }
};

SerialQueue::SerialQueue(std::string name) : state_(std::make_unique<State>()) {
    state_->name = std::move(name);
}

SerialQueue::~SerialQueue() {
    {
        const std::lock_guard lock(state_->mutex);
        state_->stopping = true;
        state_->timed.clear();
    }
    state_->wake.notify_all();
    if (state_->thread.joinable()) state_->thread.join();
}

void SerialQueue::run(std::function<void()> task) {
    {
        const std::lock_guard lock(state_->mutex);
        state_->tasks.push_back(std::move(task));
        state_->startIfNeeded();
    }
    state_->wake.notify_one();
}

void SerialQueue::runAfter(double seconds, std::function<void()> task) {
    {
        const std::lock_guard lock(state_->mutex);
        if (state_->stopping) return;
        const auto delay = std::chrono::duration_cast<std::chrono::steady_clock::duration>(
            std::chrono::duration<double>(seconds));
        state_->timed.emplace(std::chrono::steady_clock::now() + delay, std::move(task));
        state_->startIfNeeded();
    }
    state_->wake.notify_one();
}

void SerialQueue::flush() {
    std::unique_lock lock(state_->mutex);
    state_->idle.wait(lock, [&] {
        return !state_->thread.joinable() || (state_->tasks.empty() && !state_->running);
    });
}

bool SerialQueue::isCurrent() const {
    const std::lock_guard lock(state_->mutex);
    return state_->thread.get_id() == std::this_thread::get_id();
}

}  // namespace tarn
