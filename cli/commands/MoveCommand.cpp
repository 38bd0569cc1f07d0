#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Transfers.h"

namespace tarn::cli {
namespace {

constexpr Example examples[] = {
    {"tarn move report.pdf ~/Documents", "Moves a file into a folder"},
    {"tarn move -q *.mov /media/usb", "Moves files to another disk, without progress"},
    {"tarn move --on-conflict skip Downloads/* Archive", "Leaves what has its name there already"},
};

int run(const Arguments& arguments, Session& session) {
    return Transfers::run(TransferKind::move, arguments, session);
}

}  // namespace

extern const Command moveCommand;
const Command moveCommand = {
    .name = "move",
    .section = Section::changing,
    .summary = "Moves files and folders into a folder",
    .arguments = "SRC… DEST",
    .description =
        "DEST is a folder. Prints where the items are now. On another disk an item is copied, the "
        "copy written out, and then the original removed; it stays when anything in it could not "
        "be "
        "copied.\n"
        "Nothing is ever overwritten. Ctrl-C takes back what is half-done and names what has "
        "already moved.",
    .completes = Completes::files,
    .fewest = 2,
    .options = Transfers::options(),
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
