#include "cli/Command.h"

#include <algorithm>
#include <string>

#include "Tarn/model/records/CommandList.h"
#include "Tarn/model/records/Shortcuts.h"
#include "TarnCore/base/JSON.h"
#include "cli/Arguments.h"
#include "cli/Session.h"
#include "cli/StoredSettings.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {CommonOptions::json};

constexpr Example examples[] = {
    {"tarn commands", "What the window can do, and the keys for it"},
    {"tarn commands --json", "The same for a program"},
};

void write(JSONWriter& json, const Shortcut& shortcut) {
    json.beginObject();
    json.key("key");
    json.string(shortcut.key);
    const struct {
        std::string_view name;
        bool isHeld;
    } flags[] = {{"command", shortcut.command},
                 {"shift", shortcut.shift},
                 {"option", shortcut.option},
                 {"control", shortcut.control}};
    for (const auto& flag : flags) {
        json.key(flag.name);
        json.boolean(flag.isHeld);
    }
    json.endObject();
}

void writeJSON(std::string& out, const Shortcuts::ByCommand& shortcuts) {
    std::string_view before = "[\n";
    for (const CommandRecord& command : CommandList::all()) {
        out += before;
        before = ",\n";
        JSONWriter json(out);
        json.beginObject();
        const std::pair<std::string_view, std::string_view> texts[] = {{"id", command.id},
                                                                       {"title", command.title},
                                                                       {"group", command.group},
                                                                       {"symbol", command.symbol}};
        for (const auto& [key, text] : texts) {
            json.key(key);
            json.string(text);
        }
        json.key("needsSelection");
        json.boolean(command.needsSelection);
        json.key("needsFolder");
        json.boolean(command.needsFolder);
        if (const auto found = shortcuts.find(command.id); found != shortcuts.end()) {
            json.key("shortcut");
            write(json, found->second);
        }
        if (!command.shortcut.key.empty()) {
            json.key("defaultShortcut");
            write(json, command.shortcut);
        }
        json.endObject();
    }
    out += "\n]\n";
}

void writeTable(Session& session, const Shortcuts::ByCommand& shortcuts) {
    std::size_t widestID = 0;
    std::size_t widestTitle = 0;
    for (const CommandRecord& command : CommandList::all()) {
        widestID = std::max(widestID, Terminal::width(command.id));
        widestTitle = std::max(widestTitle, Terminal::width(command.title));
    }
    std::string& out = session.out().buffer();
    std::string_view group;
    for (const CommandRecord& command : CommandList::all()) {
        if (command.group != group) {
            if (!group.empty()) out += '\n';
            group = command.group;
            session.terminal().append(out, Terminal::Style::heading, group);
            out += '\n';
        }
        out += "  " + std::string(command.id) +
               std::string(widestID - Terminal::width(command.id) + 2, ' ') +
               std::string(command.title);
        if (const auto found = shortcuts.find(command.id); found != shortcuts.end()) {
            out += std::string(widestTitle - Terminal::width(command.title) + 2, ' ');
            session.terminal().append(out, Terminal::Style::dim, Shortcuts::text(found->second));
        }
        out += '\n';
    }
}

int run(const Arguments& arguments, Session& session) {
    const auto shortcuts = Shortcuts::effective(StoredSettings::read().shortcutOverrides);
    if (arguments.has("json"))
        writeJSON(session.out().buffer(), shortcuts);
    else
        writeTable(session, shortcuts);
    return ExitStatus::done;
}

}  // namespace

extern const Command commandsCommand;
const Command commandsCommand = {
    .name = "commands",
    .section = Section::settings,
    .summary = "Lists what the window can do, and the keys for it",
    .arguments = "",
    .description =
        "In the order of the menus: the name that “tarn shortcuts” takes, the title, and "
        "the keys. The key Command is Ctrl on the keyboard, Option is Alt, and Control "
        "is the Super key.",
    .most = 0,
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
