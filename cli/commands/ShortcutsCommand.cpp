#include <string>
#include <vector>

#include "Tarn/model/records/CommandList.h"
#include "Tarn/model/records/Shortcuts.h"
#include "TarnCore/base/Text.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Session.h"
#include "cli/StoredSettings.h"
#include "cli/UsageError.h"

namespace tarn::cli {
namespace {

using Shortcuts::Overrides;
using Losers = std::vector<std::string_view>;

const CommandRecord& requireCommand(std::string_view id) {
    if (const CommandRecord* command = CommandList::find(id)) return *command;
    std::vector<std::string_view> ids;
    for (const CommandRecord& command : CommandList::all()) ids.push_back(command.id);
    std::string sentence = "There is no command " + Text::quoted(Terminal::escaped(id)) + ".";
    if (const auto near = nearest(id, ids)) {
        sentence += " Did you mean " + Text::quoted(*near) + "?";
    } else {
        sentence += " “tarn commands” lists them.";
    }
    throw UsageError(sentence);
}

Shortcut requireKeys(std::string_view text) {
    try {
        return Shortcuts::parse(text);
    } catch (const Error& error) {
        throw UsageError(error.what());
    }
}

/// Makes the change, and says from which commands it took their keys.
template <class Change>
int changing(const Change& change) {
    Losers losers;
    Overrides before;
    StoredSettings::change([&](AppSettings& settings) {
        before = settings.shortcutOverrides;
        losers = change(settings.shortcutOverrides);
    });
    for (const std::string_view loser : losers) {
        Session::say(Shortcuts::text(*Shortcuts::effective(before, loser)) + " was taken from " +
                     Text::quoted(CommandList::find(loser)->title) + ".");
    }
    return ExitStatus::done;
}

int runSet(const Arguments& arguments, Session&) {
    const CommandRecord& command = requireCommand(arguments.rest()[0]);
    const Shortcut shortcut = requireKeys(arguments.rest()[1]);
    return changing(
        [&](Overrides& overrides) { return Shortcuts::set(overrides, command.id, shortcut); });
}

int runClear(const Arguments& arguments, Session&) {
    const CommandRecord& command = requireCommand(arguments.rest()[0]);
    return changing([&](Overrides& overrides) {
        Shortcuts::clear(overrides, command.id);
        return Losers();
    });
}

int runReset(const Arguments& arguments, Session&) {
    if (arguments.has("all") != arguments.rest().empty())
        throw UsageError("“tarn shortcuts reset” takes either an ID or “--all”.");
    if (arguments.has("all")) {
        return changing([](Overrides& overrides) {
            overrides.clear();
            return Losers();
        });
    }
    const CommandRecord& command = requireCommand(arguments.rest()[0]);
    return changing([&](Overrides& overrides) { return Shortcuts::reset(overrides, command.id); });
}

int runPreset(const Arguments& arguments, Session&) {
    const std::string_view name = arguments.rest()[0];
    if (name != "finder") {
        throw UsageError("There are no keys called " + Text::quoted(Terminal::escaped(name)) +
                         ". There is “finder”.");
    }
    return changing(Shortcuts::applyFinderPreset);
}

constexpr Option resetOptions[] = {
    {.name = "all", .help = "Gives every command its own keys back"}};

constexpr Example setExamples[] = {
    {"tarn shortcuts set tags Command+Shift+g", "Ctrl+Shift+G shows the tags"},
};
constexpr Example clearExamples[] = {
    {"tarn shortcuts clear trash", "No key moves anything to the Trash"},
};
constexpr Example resetExamples[] = {
    {"tarn shortcuts reset trash", "Takes back what was changed for one command"},
    {"tarn shortcuts reset --all", "Takes back everything"},
};
constexpr Example presetExamples[] = {
    {"tarn shortcuts preset finder", "Moves nine commands to the keys of a file manager"},
};

constexpr Command setCommand = {
    .name = "shortcuts set",
    .section = Section::settings,
    .summary = "Gives a command other keys",
    .arguments = "ID KEYS",
    .description =
        "KEYS are the words Command, Control, Option and Shift and one key, joined by “+”. Command "
        "is Ctrl on the keyboard, Option is Alt, Control is the Super key. The key is a character, "
        "or up, down, left, right or delete.\n"
        "Keys that another command has are taken from it, and it is said which.",
    .fewest = 2,
    .most = 2,
    .examples = setExamples,
    .run = runSet,
};
constexpr Command clearCommand = {
    .name = "shortcuts clear",
    .section = Section::settings,
    .summary = "Leaves a command without keys",
    .arguments = "ID",
    .description = "The command stays in the menus and in the palette.",
    .fewest = 1,
    .most = 1,
    .examples = clearExamples,
    .run = runClear,
};
constexpr Command resetCommand = {
    .name = "shortcuts reset",
    .section = Section::settings,
    .summary = "Gives a command its own keys back",
    .arguments = "ID",
    .description = "Another command that was given these keys loses them, and it is said which.",
    .fewest = 0,
    .most = 1,
    .options = resetOptions,
    .examples = resetExamples,
    .run = runReset,
};
constexpr Command presetCommand = {
    .name = "shortcuts preset",
    .section = Section::settings,
    .summary = "Takes over a set of keys",
    .arguments = "NAME",
    .description =
        "There is “finder”: Ctrl+Shift+D goes to the desktop, and the duplicates and the "
        "palette have no keys.",
    .fewest = 1,
    .most = 1,
    .examples = presetExamples,
    .run = runPreset,
};

constexpr const Command* commands[] = {&setCommand, &clearCommand, &resetCommand, &presetCommand};

constexpr Example examples[] = {
    {"tarn commands", "Lists the commands with their keys"},
    {"tarn shortcuts set compress Command+Option+k", "Ctrl+Alt+K compresses the selection"},
};

}  // namespace

extern const Command shortcutsCommand;
const Command shortcutsCommand = {
    .name = "shortcuts",
    .section = Section::settings,
    .summary = "Changes the keys of commands",
    .description =
        "A window that is open follows at once. No two commands ever have the same keys.",
    .examples = examples,
    .commands = commands,
};

}  // namespace tarn::cli
