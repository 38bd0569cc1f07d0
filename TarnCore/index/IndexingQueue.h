#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <vector>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/index/TextIndex.h"

namespace tarn {

/// Texts on their way from those who read them to the one who stores them, held to a number of
/// bytes. Callable from any thread.
class IndexingQueue {
public:
    IndexingQueue(std::size_t mostBytes, std::size_t readers)
        : mostBytes_(mostBytes), state_(State{{}, 0, readers, false}) {}

    /// Waits while there is no room. False when the queue was closed; the entry is dropped.
    bool push(TextIndex::Entry entry);
    /// One of the readers has nothing more.
    void finish();
    /// From now on nothing goes in or out.
    void close();

    /// Everything there is: as soon as half of the room is used, `longest` after the call, or when
    /// all readers have finished. Nothing after the last.
    std::vector<TextIndex::Entry> take(std::chrono::milliseconds longest);

private:
    struct State {
        std::vector<TextIndex::Entry> entries;
        std::size_t bytes = 0;
        std::size_t readers = 0;
        bool isClosed = false;
    };
    const std::size_t mostBytes_;
    Guarded<State> state_;
    std::condition_variable room_;
    std::condition_variable work_;
};

}  // namespace tarn
