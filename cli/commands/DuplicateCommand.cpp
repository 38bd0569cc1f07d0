#include "TarnCore/ops/FileOps.h"
#include "cli/Arguments.h"
#include "cli/ItemChanges.h"
#include "cli/Command.h"
#include "cli/Session.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {ItemChanges::json, CommonOptions::paths, CommonOptions::null};

constexpr Example examples[] = {
    {"tarn duplicate Report.pdf", "Makes “Report copy.pdf” beside it"},
};

int run(const Arguments& arguments, Session& session) {
    return ItemChanges::toEach(arguments, session, OperationKind::duplicate, {"Duplicate ", ""},
                           [](const URL& url, const CancelToken& token) {
                               FileChange change = FileOps::duplicate(url, token);
                               return ItemChanges::One{change.url, std::move(change.steps)};
                           });
}

}  // namespace

extern const Command duplicateCommand;
const Command duplicateCommand = {
    .name = "duplicate",
    .section = Section::changing,
    .summary = "Copies files and folders beside themselves",
    .arguments = "PATH…",
    .description = "Prints the paths of the copies.",
    .completes = Completes::files,
    .fewest = 1,
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
