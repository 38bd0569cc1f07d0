#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/Error.h"
#include "TarnCore/platform/WindowSocket.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Session.h"

namespace tarn::cli {
namespace {

/// Seconds. Doing a large move to another disk again takes its time.
constexpr double longestRedo = 6 * 3600;

constexpr Example examples[] = {
    {"tarn redo", "Does again what was last undone in the window"},
};

int run(const Arguments&, Session& session) {
    const std::optional<std::string> answer = WindowSocket::ask("redo", longestRedo);
    const std::string_view text = answer ? std::string_view(*answer) : "nothing";
    const std::size_t end = text.find('\n');
    const std::string_view word = text.substr(0, end);
    const std::string_view rest = end == text.npos ? std::string_view() : text.substr(end + 1);
    if (word == "done") {
        session.out() << Terminal::escaped(rest) << '\n';
        return ExitStatus::done;
    }
    if (word == "failed") throw Error(std::string(rest));
    Session::say("There is nothing to redo.");
    return ExitStatus::nothingFound;
}

}  // namespace

extern const Command redoCommand;
const Command redoCommand = {
    .name = "redo",
    .section = Section::changing,
    .summary = "Asks the window to do again what was undone",
    .arguments = "",
    .description =
        "What was undone is remembered by the window that is open, and only until the "
        "next change. Prints the title of what was done again.",
    .most = 0,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
