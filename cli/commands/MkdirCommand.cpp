#include <string>
#include <vector>

#include "TarnCore/base/Text.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/Subject.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Interrupt.h"
#include "cli/ItemChanges.h"
#include "cli/Session.h"
#include "cli/UsageError.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {
    {.name = "with",
     .value = "ITEM",
     .help = "Moves the items behind it into the new folder",
     .completes = Completes::files,
     .isRepeatable = true},
    ItemChanges::json,
    CommonOptions::paths,
    CommonOptions::null,
};

constexpr Example examples[] = {
    {"tarn mkdir Invoices", "Makes a folder; “Invoices 2” if there is one"},
    {"tarn mkdir Trip --with *.jpg", "Makes a folder around the pictures"},
};

int run(const Arguments& arguments, Session& session) {
    const URL folder = session.url(arguments.rest().front());
    std::vector<URL> items;
    for (const std::string_view item : arguments.values("with")) items.push_back(session.url(item));
    for (std::size_t i = 1; i < arguments.rest().size(); ++i) {
        if (items.empty())
            throw UsageError(
                "“tarn mkdir” makes one folder; items to put into it follow “--with”.");
        items.push_back(session.url(arguments.rest()[i]));
    }

    // Ctrl-C waits for the end, so that what was moved is recorded.
    const CancelToken ignored;
    const Interrupt::Cancels cancels(ignored);
    std::vector<Step> done;
    std::string failure;
    URL made;
    try {
        if (items.empty()) {
            FileChange change = FileOps::createFolder(folder.parent(), folder.name());
            made = change.url;
            done = std::move(change.steps);
        } else {
            made = FileOps::createFolder(items, folder.parent(), folder.name(), &done).url;
        }
    } catch (const Error& error) {
        if (done.empty()) throw;
        made = std::get<Step::Create>(done.front().change).url;
        failure = error.what();
    }
    const auto moved = static_cast<std::int64_t>(done.size()) - 1;
    std::string title = "New folder " + Text::quoted(made.name());
    if (moved > 0) title += " with " + Subject::items(static_cast<std::size_t>(moved));
    ItemChanges::report(
        arguments, session,
        {OperationKind::create, title, done, std::max<std::int64_t>(moved, 1), {made}});
    if (failure.empty()) return ExitStatus::done;
    session.out().flush();
    Session::say(failure);
    return ExitStatus::partlyFailed;
}

}  // namespace

extern const Command mkdirCommand;
const Command mkdirCommand = {
    .name = "mkdir",
    .section = Section::changing,
    .summary = "Makes a folder, also around items",
    .arguments = "DIR [--with ITEM…]",
    .description =
        "Prints the path of the folder made. A name that is taken gets a number behind "
        "it, and so does an item whose name is taken in the new folder.",
    .completes = Completes::files,
    .fewest = 1,
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
