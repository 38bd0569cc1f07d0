#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>
#include <signal.h>
#include <unistd.h>

#include "Tarn/model/records/UserStores.h"
#include "Tarn/model/records/Workspaces.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/ops/ChangeJournal.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "cli/Arguments.h"
#include "cli/CommandTable.h"
#include "cli/Completions.h"
#include "cli/Help.h"
#include "cli/Interrupt.h"
#include "cli/ManPage.h"
#include "cli/Output.h"
#include "cli/Session.h"
#include "cli/UsageError.h"
#include "cli/WindowLauncher.h"

namespace tarn::cli {
namespace {

using Words = std::vector<std::string_view>;

int print(std::string_view text) {
    Output out(STDOUT_FILENO);
    out << text;
    out.flush();
    return ExitStatus::done;
}

/// The pages that are made at build time: `tarn __pages man`, `tarn __pages bash` …
int printPage(const Words& words) {
    const std::string_view page = words.size() == 2 ? words[1] : std::string_view();
    if (page == "man") return print(manPage());
    if (page == "bash") return print(Completions::bash());
    if (page == "zsh") return print(Completions::zsh());
    if (page == "fish") return print(Completions::fish());
    throw UsageError("The pages are man, bash, zsh and fish.");
}

/// The global options at each place where they may stand: before the command, before the command
/// of a group, behind it.
using Levels = std::vector<Arguments>;

void setPlatform(const Levels& levels) {
    Platform platform = makeLinuxPlatform();
    std::optional<std::string_view> now;
    for (const Arguments& level : levels) {
        if (const auto given = level.value("now")) now = given;
    }
    if (now) {
        const auto date = Date::fromISO8601(*now);
        if (!date) {
            throw UsageError("The option “--now” takes a time such as 2026-03-15T12:00:00Z, not " +
                             Text::quoted(Terminal::escaped(*now)) + ".");
        }
        platform.clock = std::make_shared<FixedClock>(*date);
    }
    Platform::setCurrent(std::move(platform));
}

void checkCount(const Command& command, const Arguments& arguments) {
    const std::size_t count = arguments.rest().size();
    const std::string usage =
        "tarn " + std::string(command.name) + " " + std::string(command.arguments);
    if (count < command.fewest) {
        throw UsageError("Something is missing after “tarn " + std::string(command.name) +
                         "”: it is used as “" + usage + "”.");
    }
    if (count > command.most) {
        throw UsageError("There is no place for " +
                         Text::quoted(Terminal::escaped(arguments.rest()[command.most])) +
                         ": the command is used as “" + usage + "”.");
    }
}

/// The command of a group that a word names; throws UsageError when it names none.
const Command& requireCommand(const Command& group, const Words& rest) {
    std::vector<std::string_view> words;
    for (const Command* command : group.commands) words.push_back(command->word());
    const std::string name = "tarn " + std::string(group.name);
    std::string all;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) all += i + 1 == words.size() ? " or " : ", ";
        all += words[i];
    }
    if (rest.empty()) {
        throw UsageError("Something is missing after “" + name + "”: " + all + ".");
    }
    if (const Command* command = CommandTable::find(group, rest[0])) return *command;
    std::string sentence =
        "There is no command " + Text::quoted(name + " " + Terminal::escaped(rest[0])) + ".";
    if (const auto near = nearest(rest[0], words)) {
        sentence += " Did you mean “" + name + " " + std::string(*near) + "”?";
    } else {
        sentence += " After “" + name + "” comes " + all + ".";
    }
    throw UsageError(sentence);
}

int runCommand(const Command& command, Levels levels, const Words& words) {
    const auto global = CommandTable::globalOptions();
    const auto order = command.isGroup() ? Arguments::Order::optionsFirst : Arguments::Order::any;
    levels.push_back(Arguments::parse(words, command.options, global, order));
    const Arguments& arguments = levels.back();
    if (arguments.has("help")) return print(Help::command(command));
    if (arguments.has("version")) return print("tarn " TARN_VERSION "\n");
    if (command.isGroup() && !(command.run && arguments.rest().empty())) {
        const Words rest = arguments.rest();
        const Command& chosen = requireCommand(command, rest);
        // The options in front are the command's too: “tarn favorites --json add ~/Work”.
        Words behind;
        if (!command.options.empty()) {
            behind.assign(words.begin(),
                          words.begin() + static_cast<std::ptrdiff_t>(arguments.consumed()));
            levels.pop_back();
        }
        behind.insert(behind.end(), rest.begin() + 1, rest.end());
        return runCommand(chosen, std::move(levels), behind);
    }
    if (!command.isGroup()) checkCount(command, arguments);
    setPlatform(levels);
    ChangeJournal::repair();
    Session session(std::ranges::any_of(levels, [](const auto& l) { return l.has("quiet"); }));
    const int status = command.run(arguments, session);
    session.out().flush();
    return status;
}

/// Words that are neither a command nor there are mistyped commands more often than files. The
/// paths are absolute, so that none looks like an option to the window.
std::vector<URL> requirePaths(const Words& words) {
    Session session(true);
    std::vector<URL> paths;
    for (const std::string_view path : words) {
        // As desktop entries name files.
        if (const auto url = path.starts_with("file:") ? URL::parse(path) : std::nullopt) {
            paths.push_back(*url);
            continue;
        }
        if (::access(std::string(path).c_str(), F_OK) == 0) {
            paths.push_back(session.url(path));
            continue;
        }
        std::string sentence = Text::quoted(Terminal::escaped(path)) +
                               " is neither a command nor an existing file or folder.";
        std::vector<std::string_view> names;
        for (const Command* command : CommandTable::all()) names.push_back(command->name);
        if (const auto near = nearest(path, names)) {
            sentence += " Did you mean “tarn " + std::string(*near) + "”?";
        }
        throw UsageError(sentence);
    }
    return paths;
}

/// The options for the window as it is given them.
std::vector<std::string> windowOptions(const Arguments& arguments) {
    std::vector<std::string> options;
    if (const auto name = arguments.value("workspace")) {
        const auto store = UserStores::workspaces();
        // The window is told an id, so that it finds the one that was found here.
        options.push_back("--workspace=" +
                          Workspaces::require(store.value().records, *name).id.string());
    }
    for (const std::string_view name : {"new-window", "quick-search", "select"})
        if (arguments.has(name)) options.push_back("--" + std::string(name));
    return options;
}

int run(const Words& words) {
    const Arguments before =
        Arguments::parse(words, CommandTable::globalOptions(), CommandTable::windowOptions(),
                         Arguments::Order::optionsFirst);
    if (before.has("help")) return print(Help::program());
    if (before.has("version")) return print("tarn " TARN_VERSION "\n");

    const Words& rest = before.rest();
    if (!rest.empty() && !before.wasEnded()) {
        if (rest[0] == "__pages") return printPage(rest);
        if (const Command* command = CommandTable::find(rest[0])) {
            for (const Option& option : CommandTable::windowOptions()) {
                if (before.has(option.name)) {
                    throw UsageError("The option “--" + std::string(option.name) +
                                     "” is for a window and takes no command.");
                }
            }
            return runCommand(*command, {before}, Words(rest.begin() + 1, rest.end()));
        }
    }
    const std::vector<URL> paths = requirePaths(rest);
    if (paths.empty() && before.has("select"))
        throw UsageError("“--select” is followed by the files and folders to be shown.");
    WindowLauncher::start(windowOptions(before), paths);
}

int runReporting(const Words& words) {
    try {
        return run(words);
    } catch (const UsageError& error) {
        Session::say(error.what());
        return ExitStatus::wrongUsage;
    } catch (const Error& error) {
        Session::say(error.what());
    } catch (const std::system_error& error) {
        Session::say("The operation failed. " + systemErrorSentence(error.code().value()));
    } catch (const std::bad_alloc&) {
        Session::say("The operation failed because there is not enough memory.");
    }
    return ExitStatus::failed;
}

}  // namespace
}  // namespace tarn::cli

int main(int argc, char** argv) {
    // A reader that stops early (head, less) ends the program without a word, even when a parent
    // switched the signal off.
    ::signal(SIGPIPE, SIG_DFL);
    tarn::cli::Interrupt::endsProcess();
    const int status = tarn::cli::runReporting({argv + 1, argv + argc});
    // Everything has been flushed; taking large results apart again would only keep people waiting.
    ::_exit(status);
}
