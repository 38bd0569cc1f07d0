#include "TarnCore/search/CandidateQueue.h"

#include <condition_variable>
#include <deque>
#include <utility>

#include "TarnCore/base/Guarded.h"

namespace tarn {

/// Kept by helpers that begin when all is done.
struct CandidateQueue::State {
    struct Pieces {
        std::deque<Candidates> waiting;
        std::size_t inWork = 0;
        std::size_t helpers = 0;
    };
    Work work;
    Guarded<Pieces> pieces;
    std::condition_variable done;
};

CandidateQueue::CandidateQueue(TaskPool& pool, Work work)
    : pool_(pool), state_(std::make_shared<State>()) {
    state_->work = std::move(work);
}

void CandidateQueue::add(Candidates candidates) {
    {
        const auto pieces = state_->pieces.lock();
        pieces->waiting.push_back(std::move(candidates));
        // The first may be all there is; and one thread stays with the index.
        if (!std::exchange(hasMany_, true) || pieces->helpers + 1 >= pool_.threadCount()) return;
        ++pieces->helpers;
    }
    pool_.run([state = state_] { workOff(*state, true); });
}

void CandidateQueue::workOff(State& state, bool isHelper) {
    for (;;) {
        Candidates piece;
        {
            const auto pieces = state.pieces.lock();
            if (pieces->waiting.empty()) {
                if (isHelper) --pieces->helpers;
                return;
            }
            piece = std::move(pieces->waiting.front());
            pieces->waiting.pop_front();
            ++pieces->inWork;
        }
        state.work(std::move(piece));
        if (--state.pieces.lock()->inWork == 0) state.done.notify_all();
    }
}

void CandidateQueue::finish() {
    workOff(*state_, false);
    auto pieces = state_->pieces.lock();
    state_->done.wait(pieces.mutex(), [&] { return pieces->inWork == 0; });
}

}  // namespace tarn
