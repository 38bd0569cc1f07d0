#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/Text.h"
#include "TarnCore/ops/OperationHistory.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Interrupt.h"
#include "cli/Session.h"
#include "cli/UsageError.h"

namespace tarn::cli {
namespace {

constexpr std::size_t fewestDigits = 4;

constexpr Example examples[] = {
    {"tarn undo", "Takes back the last change"},
    {"tarn undo 7A2D41C0", "Takes back one change of “tarn history”, and leaves later ones"},
};

/// The one entry whose identifier begins so.
UUID find(const OperationHistory& history, std::string_view text) {
    std::string start(text);
    std::ranges::transform(start, start.begin(), [](char c) {
        return c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    if (start.size() < fewestDigits ||
        start.find_first_not_of("0123456789ABCDEF-") != std::string::npos)
        throw UsageError(Text::quoted(Terminal::escaped(text)) +
                         " is no ID of a change; “tarn history” lists them.");
    std::vector<UUID> found;
    for (const HistoryEntry& entry : history.undoStack())
        if (entry.id.string().starts_with(start)) found.push_back(entry.id);
    if (found.empty())
        throw Error("No change that can be undone has the ID " + Text::quoted(text) + ".");
    if (found.size() > 1)
        throw Error("More than one change has an ID that begins with " + Text::quoted(text) + ".");
    return found.front();
}

int run(const Arguments& arguments, Session& session) {
    OperationHistory history(OperationHistory::defaultFile());
    // Ctrl-C waits for the end, since half a change taken back is worse than either.
    const CancelToken ignored;
    const Interrupt::Cancels cancels(ignored);
    const std::optional<HistoryEntry> entry =
        arguments.rest().empty() ? history.undo()
                                 : history.undo(find(history, arguments.rest().front()));
    if (!entry) {
        Session::say("There is nothing to undo.");
        return ExitStatus::nothingFound;
    }
    session.out() << Terminal::escaped(entry->title) << '\n';
    return ExitStatus::done;
}

}  // namespace

extern const Command undoCommand;
const Command undoCommand = {
    .name = "undo",
    .section = Section::changing,
    .summary = "Takes back the last change, or another one",
    .arguments = "[ID]",
    .description =
        "Prints the title of the change that was taken back. It works for changes made "
        "in the terminal and in the window alike.",
    .most = 1,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
