#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <string_view>

/// The terminal program: one table describes every command, and parsing, help, the man page and
/// shell completions all read it.
namespace tarn::cli {

class Arguments;
class Session;

/// What the process says with its exit status.
enum ExitStatus : int {
    done = 0,
    nothingFound = 1,
    wrongUsage = 2,
    failed = 3,
    partlyFailed = 4,  ///< The rest was done.
    cancelled = 130,
};

/// What a shell offers when the user completes a value.
enum class Completes { nothing, files, folders };

/// One option of a command. Every view points to static storage.
struct Option {
    std::string_view name;     ///< Long name, without its dashes.
    char letter = 0;           ///< Short name; 0 for none.
    std::string_view value{};  ///< "DIR"; "name|size" names all the words allowed; empty: a switch.
    std::string_view help{};   ///< A phrase without a full stop.
    Completes completes = Completes::nothing;
    bool isRepeatable = false;
    bool isHidden = false;  ///< Left out of the help and completions; the man page has it.

    bool takesValue() const { return !value.empty(); }
    bool takesChoice() const { return value.find('|') != value.npos; }
};

struct Example {
    std::string_view command;
    std::string_view meaning;  ///< A phrase without a full stop.
};

/// The headings under which the help lists commands, in this order.
enum class Section { looking, changing, settings };

/// One command. A file in cli/commands that defines `const Command xCommand` and is called
/// XCommand.cpp adds it to the program.
///
/// A command may be a group of others instead ("tag", with "tag add", "tag remove" …): it has
/// `commands` and no arguments of its own. A group with a `run`, and perhaps options, does that
/// when none of its commands follows ("favorites" lists them). Groups are not nested.
struct Command {
    static constexpr std::size_t anyNumber = std::numeric_limits<std::size_t>::max();

    std::string_view
        name{};  ///< "list"; in a group the name of the group stands before: "tag list".
    Section section = Section::looking;
    std::string_view summary{};      ///< "Lists a folder": a phrase without a full stop.
    std::string_view arguments{};    ///< As the usage line shows them: "[DIR]", "PATH…".
    std::string_view description{};  ///< Sentences; a line feed separates paragraphs.
    Completes completes = Completes::nothing;  ///< For the arguments.
    std::size_t fewest = 0;
    std::size_t most = anyNumber;
    std::span<const Option> options{};
    std::span<const Example> examples{};
    /// Returns the exit status. UsageError and tarn::Error may leave it; their sentences are shown.
    int (*run)(const Arguments& arguments, Session& session) = nullptr;
    /// Of a group, in the order of the help.
    std::span<const Command* const> commands{};

    bool isGroup() const { return !commands.empty(); }
    /// What is typed for it: "list", also in a group.
    std::string_view word() const { return name.substr(name.rfind(' ') + 1); }
};

/// The options that mean the same wherever they are taken.
namespace CommonOptions {
inline constexpr Option json = {.name = "json", .help = "Prints one JSON document"};
inline constexpr Option paths = {.name = "paths",
                                 .help = "Prints one absolute path a line, byte for byte"};
inline constexpr Option null = {
    .name = "null", .letter = '0', .help = "Ends each path with a NUL byte; implies --paths"};
}  // namespace CommonOptions

}  // namespace tarn::cli
