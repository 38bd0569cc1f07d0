#include "TarnCore/base/TaskPool.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace tarn {
namespace {

using Clock = std::chrono::steady_clock;

/// For so long a task that someone waits for is left to the threads of the pool, all of which are
/// kept by others: mostly one of them is free before.
constexpr std::chrono::milliseconds patience(250);

}  // namespace

struct TaskPool::State {
    struct Task {
        std::function<void()> work;
        bool isShare = false;  ///< Of a forEach(), whose caller works, too.
        Clock::time_point since = Clock::now();
    };

    std::mutex mutex;
    std::condition_variable wake;
    std::condition_variable wakeSpare;
    std::deque<Task> urgent;
    std::deque<Task> background;
    bool stopping = false;
    std::size_t threadCount = 0;
    std::vector<std::thread> threads;
    std::size_t sharing = 0;  ///< Of `threads`, how many are inside of a forEach().
    std::size_t idle = 0;     ///< Of `threads`, how many wait for a task, or are just beginning.
    /// They do what someone waits for, a folder to be listed or a preview, while all threads are
    /// kept: at once when they share a walk of the whole disk, and after `patience` when each is
    /// kept by something of its own. They begin when they are first needed.
    std::vector<std::thread> spares;
    std::size_t idleSpares = 0;

    /// The pool that the current thread is one of the `threads` of, and how deep in forEach() it
    /// is.
    struct Membership {
        State* pool = nullptr;
        int depth = 0;
    };
    static thread_local Membership membership;

    /// Counts the current thread among those that share, if it is one of the pool's.
    class Sharing {
    public:
        explicit Sharing(State& state) : state_(state) {
            if (membership.pool != &state_ || membership.depth++ > 0) return;
            const std::lock_guard lock(state_.mutex);
            ++state_.sharing;
            state_.wakeSpareIfWanted();
        }
        ~Sharing() {
            if (membership.pool != &state_ || --membership.depth > 0) return;
            const std::lock_guard lock(state_.mutex);
            --state_.sharing;
        }
        Sharing(const Sharing&) = delete;
        Sharing& operator=(const Sharing&) = delete;

    private:
        State& state_;
    };

    // All below with the mutex held.

    void startThreadsIfNeeded() {
        if (!threads.empty()) return;
        idle = threadCount;
        for (std::size_t i = 0; i < threadCount; ++i) threads.emplace_back([this] { work(); });
    }

    std::deque<Task>::iterator firstThatIsNoShare() {
        return std::find_if(urgent.begin(), urgent.end(),
                            [](const Task& task) { return !task.isShare; });
    }

    void wakeSpareIfWanted() {
        if (stopping || urgent.size() <= idle || firstThatIsNoShare() == urgent.end()) return;
        if (idleSpares == 0 && spares.size() < mostSpares)
            spares.emplace_back([this] { workBeside(); });
        wakeSpare.notify_one();
    }

    static void run(Task task, std::unique_lock<std::mutex>& lock) {
        lock.unlock();
        task.work();
        task.work = nullptr;
        lock.lock();
    }

    // What the threads run.

    void work() {
        membership.pool = this;
        std::unique_lock lock(mutex);
        for (;; ++idle) {
            wake.wait(lock, [&] { return stopping || !urgent.empty() || !background.empty(); });
            --idle;
            if (stopping) return;
            auto& queue = urgent.empty() ? background : urgent;
            Task task = std::move(queue.front());
            queue.pop_front();
            run(std::move(task), lock);
        }
    }

    void workBeside() {
        std::unique_lock lock(mutex);
        while (!stopping) {
            const auto next = firstThatIsNoShare();
            const bool isAny = next != urgent.end();
            const Clock::time_point due = isAny ? next->since + patience : Clock::time_point::max();
            if (!isAny || (sharing < threadCount && Clock::now() < due)) {
                ++idleSpares;
                if (isAny)
                    wakeSpare.wait_until(lock, due);
                else
                    wakeSpare.wait(lock);
                --idleSpares;
                continue;
            }
            Task task = std::move(*next);
            urgent.erase(next);
            wakeSpareIfWanted();  // This one may be kept as well.
            run(std::move(task), lock);
        }
    }
};

thread_local TaskPool::State::Membership TaskPool::State::membership;

TaskPool::TaskPool(std::size_t threads) : state_(std::make_unique<State>()) {
    if (threads == 0) threads = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 2, 8);
    state_->threadCount = threads;
}

TaskPool::~TaskPool() {
    std::deque<State::Task> dropped[2];
    {
        const std::lock_guard lock(state_->mutex);
        state_->stopping = true;
        dropped[0].swap(state_->urgent);
        dropped[1].swap(state_->background);
    }
    state_->wake.notify_all();
    state_->wakeSpare.notify_all();
    for (auto& thread : state_->threads) thread.join();
    for (auto& spare : state_->spares) spare.join();
}

void TaskPool::run(std::function<void()> task, TaskPriority priority) {
    {
        const std::lock_guard lock(state_->mutex);
        if (state_->stopping) return;
        state_->startThreadsIfNeeded();
        (priority == TaskPriority::userWaits ? state_->urgent : state_->background)
            .push_back({std::move(task)});
        state_->wakeSpareIfWanted();
    }
    state_->wake.notify_one();
}

void TaskPool::forEach(std::size_t count, const std::function<void(std::size_t)>& body) {
    if (count == 0) return;
    const State::Sharing sharing(*state_);  // Also while others finish their shares.
    struct Share {
        std::atomic<std::size_t> next{0};
        std::mutex mutex;
        std::condition_variable done;
        std::size_t finished = 0;
    };
    // The helpers may start after the caller has done everything and gone, so they own the share;
    // `body` itself is only called for an index that the caller is still waiting for.
    auto share = std::make_shared<Share>();
    auto take = [share, count, &body, state = state_.get()] {
        const State::Sharing taking(*state);
        for (;;) {
            const std::size_t i = share->next.fetch_add(1);
            if (i >= count) return;
            body(i);
            const std::lock_guard lock(share->mutex);
            if (++share->finished == count) share->done.notify_all();
        }
    };
    const std::size_t helpers = std::min(count - 1, state_->threadCount);
    if (helpers > 0) {
        const std::lock_guard lock(state_->mutex);
        if (!state_->stopping) {
            state_->startThreadsIfNeeded();
            for (std::size_t i = 0; i < helpers; ++i) state_->urgent.push_back({take, true});
        }
    }
    for (std::size_t i = 0; i < helpers; ++i) state_->wake.notify_one();
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
