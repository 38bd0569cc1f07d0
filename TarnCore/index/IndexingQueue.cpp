#include "TarnCore/index/IndexingQueue.h"

#include <utility>

namespace tarn {
namespace {

/// What an entry takes beside its text and the tokens.
constexpr std::size_t overhead = 256;

std::size_t bytesOf(const TextIndex::Entry& entry) {
    return entry.text.capacity() + entry.tokens.bytes() + entry.path.size() + overhead;
}

}  // namespace

bool IndexingQueue::push(TextIndex::Entry entry) {
    const std::size_t bytes = bytesOf(entry);
    auto state = state_.lock();
    // One that is larger than all of the room goes in by itself.
    room_.wait(state.mutex(), [&] {
        return state->isClosed || state->entries.empty() || state->bytes + bytes <= mostBytes_;
    });
    if (state->isClosed) return false;
    state->entries.push_back(std::move(entry));
    state->bytes += bytes;
    if (state->bytes >= mostBytes_ / 2) work_.notify_one();
    return true;
}

void IndexingQueue::finish() {
    if (--state_.lock()->readers == 0) work_.notify_one();
}

void IndexingQueue::close() {
    state_.lock()->isClosed = true;
    room_.notify_all();
    work_.notify_all();
}

std::vector<TextIndex::Entry> IndexingQueue::take(std::chrono::milliseconds longest) {
    std::vector<TextIndex::Entry> taken;
    auto state = state_.lock();
    const auto isDone = [&] { return state->isClosed || state->readers == 0; };
    do {
        work_.wait_for(state.mutex(), longest,
                       [&] { return isDone() || state->bytes >= mostBytes_ / 2; });
    } while (state->entries.empty() && !isDone());
    if (state->isClosed) return taken;
    taken.swap(state->entries);
    state->bytes = 0;
    room_.notify_all();
    return taken;
}

}  // namespace tarn
