#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSON.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/ops/OperationHistory.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Session.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {CommonOptions::json};

constexpr Example examples[] = {
    {"tarn history", "What can be undone, the newest last"},
    {"tarn history --json", "The same with every step"},
};

int run(const Arguments& arguments, Session& session) {
    const std::vector<HistoryEntry> entries =
        OperationHistory(OperationHistory::defaultFile()).undoStack();
    if (arguments.has("json")) {
        session.out() << JSONText::pretty(JSON(entries)) << '\n';
        return ExitStatus::done;
    }
    session.useLocaleForFormats();
    std::vector<std::string> dates;
    std::size_t widest = 0;
    for (const HistoryEntry& entry : entries) {
        dates.push_back(Format::date(entry.date));
        widest = std::max(widest, Terminal::width(dates.back()));
    }
    for (std::size_t i = 0; i < entries.size(); ++i) {
        std::string& out = session.out().buffer();
        session.terminal().append(out, Terminal::Style::dim, entries[i].id.string().substr(0, 8));
        out += "  " + dates[i] + std::string(widest - Terminal::width(dates[i]) + 2, ' ');
        out += Terminal::escaped(entries[i].title) + '\n';
    }
    return ExitStatus::done;
}

}  // namespace

extern const Command historyCommand;
const Command historyCommand = {
    .name = "history",
    .section = Section::changing,
    .summary = "Lists the changes that can be undone",
    .arguments = "",
    .description =
        "The newest stands last. Each line begins with what “tarn undo” takes as ID. "
        "Changes are kept for seven days.",
    .most = 0,
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
