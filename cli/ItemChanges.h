#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/ops/OperationHistory.h"
#include "TarnCore/ops/Step.h"
#include "cli/Command.h"

/// What the commands that change files have in common.
namespace tarn::cli::ItemChanges {

/// --json, --paths and -0, which all of them take.
inline constexpr Option json = {.name = "json",
                                .help = "Prints the entry of the undo list as a JSON document"};

/// One change, to be recorded.
struct Done {
    OperationKind kind;
    std::string title;
    std::vector<Step> steps;
    std::int64_t fileCount = 0;
    std::vector<URL> results;  ///< Printed, one a line.
};

/// Records a change in the undo list and prints its results, or with --json its entry. Without
/// steps there is nothing to record.
void report(const Arguments& arguments, Session& session, const Done& done);

/// What `change` returns for one argument: where the item now is, and the step that takes it back.
struct One {
    URL result;
    std::vector<Step> steps;
};
/// Does the same to each argument. What fails is said and the rest goes on; Ctrl-C ends it between
/// two, with those done recorded. `titleOfOne` and `titleOfMany` stand before and behind the name
/// or the number of items: {"Move ", " to the Trash"}.
struct Title {
    std::string_view before;
    std::string_view behind;
};
int toEach(const Arguments& arguments, Session& session, OperationKind kind, Title title,
           const std::function<One(const URL&, const CancelToken&)>& change);

/// The options of a command that prints paths.
std::span<const Option> options();

}  // namespace tarn::cli::ItemChanges
