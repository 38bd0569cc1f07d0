#include "TarnCore/ops/TwoPhaseMove.h"

#include <optional>

#include "TarnCore/ops/ChangeJournal.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::TwoPhaseMove {
namespace {

using JournalMoves = std::vector<ChangeJournal::Move>;

/// One run, with what it takes to go back.
class Run {
public:
    explicit Run(JournalMoves moves) : moves_(std::move(moves)) {}

    Failure operator()(bool twoPhases) {
        std::optional<ChangeJournal> journal;
        try {
            journal = ChangeJournal::ofMoves(moves_);
            if (twoPhases)
                for (at_ = 0; at_ < moves_.size(); ++at_, ++between_)
                    FileOps::move(moves_[at_].from, moves_[at_].temporary);
            for (at_ = 0; at_ < moves_.size(); ++at_, ++arrived_) {
                makeFolderOf(moves_[at_].to);
                FileOps::move(moves_[at_].temporary, moves_[at_].to);
            }
            return {};
        } catch (const std::exception&) {
            Failure failure{std::current_exception(), at_, nullptr};
            failure.notPutBack = putBack(twoPhases);
            if (failure.notPutBack && journal) journal->leaveToRepair();
            return failure;
        }
    }

private:
    void makeFolderOf(const URL& url) {
        const URL folder = url.parent();
        if (folder == lastFolder_) return;
        Platform::current().files->createFolders(folder);
        lastFolder_ = folder;
    }

    /// Goes on after a failure, so that as much as possible is back; the first one is returned.
    std::exception_ptr putBack(bool twoPhases) {
        std::exception_ptr failure;
        const auto move = [&](const URL& from, const URL& to) {
            try {
                FileOps::move(from, to);
            } catch (const std::exception&) {
                if (!failure) failure = std::current_exception();
            }
        };
        for (std::size_t i = arrived_; i-- > 0;) move(moves_[i].to, moves_[i].temporary);
        if (twoPhases)
            for (std::size_t i = between_; i-- > 0;) move(moves_[i].temporary, moves_[i].from);
        return failure;
    }

    JournalMoves moves_;
    std::size_t at_ = 0;
    std::size_t between_ = 0;  ///< So many have left their place.
    std::size_t arrived_ = 0;
    std::optional<URL> lastFolder_;
};

}  // namespace

Failure run(const Moves& moves, std::string_view prefix) {
    JournalMoves plan;
    plan.reserve(moves.size());
    for (const auto& [from, to] : moves)
        plan.push_back({from, to, from.parent().appending(ChangeJournal::temporaryName(prefix))});
    return Run(std::move(plan))(/*twoPhases=*/true);
}

Failure runDirectly(const Moves& moves) {
    JournalMoves plan;
    plan.reserve(moves.size());
    for (const auto& [from, to] : moves) plan.push_back({from, to, from});
    return Run(std::move(plan))(/*twoPhases=*/false);
}

}  // namespace tarn::TwoPhaseMove
