#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Transfers.h"

namespace tarn::cli {
namespace {

constexpr Example examples[] = {
    {"tarn copy report.pdf ~/Documents", "Copies a file into a folder"},
    {"tarn copy Photos Music /media/usb", "Copies two folders; done means safe to unplug"},
    {"tarn copy --on-conflict merge Photos ~/Pictures", "Adds to a folder of the same name"},
};

int run(const Arguments& arguments, Session& session) {
    return Transfers::run(TransferKind::copy, arguments, session);
}

}  // namespace

extern const Command copyCommand;
const Command copyCommand = {
    .name = "copy",
    .section = Section::changing,
    .summary = "Copies files and folders into a folder",
    .arguments = "SRC… DEST",
    .description =
        "DEST is a folder. Everything about the items is kept: dates, permissions, tags, links. "
        "Prints where the copies are. A copy into the folder that an item is in gets a name of its "
        "own.\n"
        "Nothing is ever overwritten. What cannot be copied is named, and the rest is done; Ctrl-C "
        "leaves nothing behind.",
    .completes = Completes::files,
    .fewest = 2,
    .options = Transfers::options(),
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
