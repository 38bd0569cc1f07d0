#pragma once

#include <cstddef>
#include <exception>
#include <string_view>
#include <utility>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// Giving many items new places, among them those of each other: all go to temporary names in their
/// own folders first, and from there to where they belong. All or none, also when the program is
/// ended in between (ChangeJournal).
namespace TwoPhaseMove {

using Moves = std::vector<std::pair<URL, URL>>;  ///< From, to.

/// What went wrong, with everything back in its place unless it says otherwise.
struct Failure {
    std::exception_ptr error;  ///< Null for success.
    std::size_t at = 0;        ///< The move that failed.
    /// Why moving back failed too; items may be under temporary names until the next start.
    std::exception_ptr notPutBack;
};

/// Creates missing folders of the destinations. Never replaces an item. `prefix` is
/// ChangeJournal::renaming or ::moving. What fails is returned, not thrown.
Failure run(const Moves& moves, std::string_view prefix);

/// The same in one step each, where no destination is a source.
Failure runDirectly(const Moves& moves);

}  // namespace TwoPhaseMove

}  // namespace tarn
