#include "cli/CommandTable.h"

#include <algorithm>
#include <tuple>
#include <vector>

namespace tarn::cli {

// The list of files in cli/commands, made by CMake: TARN_COMMAND(listCommand) and so on.
#define TARN_COMMAND(command) extern const Command command;
#include "CommandFiles.inc"
#undef TARN_COMMAND

namespace CommandTable {
namespace {

constexpr Option global[] = {
    {.name = "help", .letter = 'h', .help = "Shows this help"},
    {.name = "version", .help = "Shows the version"},
    {.name = "quiet", .letter = 'q', .help = "Shows no progress"},
    {.name = "now",
     .value = "TIME",
     .help = "Takes TIME (2026-03-15T12:00:00Z) for the present, for queries and groups that "
             "depend on it",
     .isHidden = true},
};

constexpr Option forWindow[] = {
    {.name = "workspace",
     .value = "NAME",
     .help = "Opens the workspace of this name or id in a window"},
    {.name = "new-window", .help = "Opens another window on the home folder"},
    {.name = "quick-search", .help = "Opens the quick search panel"},
    {.name = "select", .help = "Shows each PATH selected in the folder that holds it, folders too"},
};

constexpr Example programExamples[] = {
    {"tarn", "Opens a window on the home folder"},
    {"tarn ~/Downloads", "Opens a window on a folder"},
    {"tarn --select ~/Downloads/report.pdf", "Shows where a file is"},
    {"tarn search pdfs from last week over 5 mb", "Searches below the current folder"},
    {"tarn list --sort size ~/Downloads", "Lists a folder, largest files first"},
};

}  // namespace

std::span<const Command* const> all() {
    static const auto commands = [] {
        std::vector<const Command*> sorted = {
#define TARN_COMMAND(command) &command,
#include "CommandFiles.inc"
#undef TARN_COMMAND
        };
        std::ranges::sort(sorted, {}, [](const Command* command) {
            return std::tuple(command->section, command->name);
        });
        return sorted;
    }();
    return commands;
}

const Command* find(std::string_view word) {
    const auto found = std::ranges::find(all(), word, &Command::name);
    return found == all().end() ? nullptr : *found;
}

const Command* find(const Command& group, std::string_view word) {
    const auto found = std::ranges::find(group.commands, word, &Command::word);
    return found == group.commands.end() ? nullptr : *found;
}

std::span<const Option> globalOptions() { return global; }

std::span<const Option> windowOptions() { return forWindow; }

std::string_view summary() { return "A file manager built around search"; }

std::string_view description() {
    return "Without a command, a window opens on the home folder or on each PATH; a file is shown "
           "selected in its folder.";
}

std::span<const Example> examples() { return programExamples; }

std::string_view title(Section section) {
    switch (section) {
        case Section::looking:
            return "Looking";
        case Section::changing:
            return "Changing (all undoable)";
        case Section::settings:
            return "Settings, commands, saved lists";
    }
    return {};
}

}  // namespace CommandTable
}  // namespace tarn::cli
