#include "TarnCore/ops/FileOps.h"
#include "cli/Arguments.h"
#include "cli/ItemChanges.h"
#include "cli/Command.h"
#include "cli/Session.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {ItemChanges::json, CommonOptions::paths, CommonOptions::null};

constexpr Example examples[] = {
    {"tarn trash old.zip", "Moves a file to the Trash of the desktop"},
    {"tarn trash *.tmp && tarn undo", "… and takes that back"},
};

int run(const Arguments& arguments, Session& session) {
    return ItemChanges::toEach(arguments, session, OperationKind::trash, {"Move ", " to the Trash"},
                           [](const URL& url, const CancelToken&) {
                               const URL place = FileOps::trash(url);
                               return ItemChanges::One{place, {Step::move(url, place)}};
                           });
}

}  // namespace

extern const Command trashCommand;
const Command trashCommand = {
    .name = "trash",
    .section = Section::changing,
    .summary = "Moves files and folders to the Trash",
    .arguments = "PATH…",
    .description =
        "Each goes to the Trash of its disk, where other programs find it too. Prints "
        "where the items now are. Links are moved themselves.",
    .completes = Completes::files,
    .fewest = 1,
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
