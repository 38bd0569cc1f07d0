#include <string>

#include "TarnCore/base/Text.h"
#include "TarnCore/ops/FileOps.h"
#include "cli/Arguments.h"
#include "cli/ItemChanges.h"
#include "cli/Command.h"
#include "cli/Session.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {ItemChanges::json, CommonOptions::paths, CommonOptions::null};

constexpr Example examples[] = {
    {"tarn rename scan.pdf \"Invoice March.pdf\"", "Gives a file a new name in its folder"},
};

int run(const Arguments& arguments, Session& session) {
    const URL url = session.url(arguments.rest()[0]);
    const std::string_view name = arguments.rest()[1];
    const FileChange change = FileOps::rename(url, name);
    ItemChanges::report(arguments, session,
                    {OperationKind::rename,
                     "Rename " + Text::quoted(url.name()) + " to " + Text::quoted(name),
                     change.steps,
                     1,
                     {change.url}});
    return ExitStatus::done;
}

}  // namespace

extern const Command renameCommand;
const Command renameCommand = {
    .name = "rename",
    .section = Section::changing,
    .summary = "Gives a file or folder a new name",
    .arguments = "PATH NEWNAME",
    .description =
        "NEWNAME is a name, not a path; the item stays in its folder. Nothing is "
        "replaced: a name that is taken is refused. Prints the new path.",
    .completes = Completes::files,
    .fewest = 2,
    .most = 2,
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
