#pragma once

#include <cstddef>
#include <functional>
#include <memory>

namespace tarn {

/// How much a piece of background work matters to the person waiting.
enum class TaskPriority { userWaits, background };

/// Worker threads for work that has no order: a fixed number of them, which is all that is needed
/// as long as each task ends soon. What someone waits for is done by spare threads where none of
/// these comes free: at once while all of them share a forEach(), and after a quarter of a second
/// while each is kept by a task of its own, a folder on a server that is away for one. There are at
/// most `mostSpares` of them, which begin when they are needed.
///
/// Tasks must not throw; an exception that leaves one ends the program, as it would anywhere else
/// outside main. The destructor drops what has not begun and waits for what has, so owners cancel
/// their tokens first. Callable from any thread.
class TaskPool {
public:
    /// Who is kept by a server that is away may be kept for ever, and holds his thread.
    static constexpr std::size_t mostSpares = 16;

    /// `threads` 0 means one per processor, at least two and at most eight.
    explicit TaskPool(std::size_t threads = 0);
    ~TaskPool();
    TaskPool(const TaskPool&) = delete;
    TaskPool& operator=(const TaskPool&) = delete;

    void run(std::function<void()> task, TaskPriority priority = TaskPriority::userWaits);

    /// Calls `body(0)` … `body(count - 1)`, spread over the workers and the calling thread, and
    /// returns when all are done. Safe to call from inside a task: the caller works too, so it
    /// never waits for a worker that is not there.
    void forEach(std::size_t count, const std::function<void(std::size_t)>& body);

    std::size_t threadCount() const;

    /// The pool of the process.
    static TaskPool& shared();

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tarn
