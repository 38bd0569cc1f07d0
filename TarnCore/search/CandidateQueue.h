#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/search/IndexedContent.h"

namespace tarn {

/// What an index finds, on its way to those who look at the files: the pool looks at some while the
/// index finds the next. A few are looked at by the finder itself, since threads take longer to
/// begin.
///
/// For one thread, but for `work`, which is called on several at once.
class CandidateQueue {
public:
    using Candidates = std::vector<IndexedContent::Candidate>;
    using Work = std::function<void(Candidates)>;

    /// `work` must not throw. It is called no more when `finish` has returned.
    CandidateQueue(TaskPool& pool, Work work);

    /// Never waits.
    void add(Candidates candidates);
    /// Helps, and returns when all that was added is done. To be called once.
    void finish();

private:
    struct State;
    static void workOff(State& state, bool isHelper);

    TaskPool& pool_;
    std::shared_ptr<State> state_;
    bool hasMany_ = false;
};

}  // namespace tarn
