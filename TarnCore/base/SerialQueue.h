#pragma once

#include <functional>
#include <memory>
#include <string>

namespace tarn {

/// A named thread that runs tasks one after the other, in the order they were given.
///
/// The thread starts with the first task. Tasks must not throw. The destructor runs everything
/// that was given and then ends the thread; it must not be called from a task of the queue.
class SerialQueue {
public:
    /// `name` shows in debuggers and `ps` ("tarn.watcher"); the kernel keeps 15 characters of it.
    explicit SerialQueue(std::string name);
    ~SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    void run(std::function<void()> task);

    /// Runs the task `seconds` from now, or never when the queue ends before.
    void runAfter(double seconds, std::function<void()> task);

    /// Returns when everything given so far has run. Not from a task of the queue.
    void flush();

    /// True inside a task of this queue.
    bool isCurrent() const;

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tarn
