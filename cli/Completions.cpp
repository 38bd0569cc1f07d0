#include "cli/Completions.h"

#include <vector>

#include "TarnCore/base/Text.h"
#include "cli/Arguments.h"
#include "cli/CommandTable.h"

namespace tarn::cli::Completions {
namespace {

/// What a command takes: its own options, then the global ones.
std::vector<Option> visibleOptions(std::span<const Option> own) {
    std::vector<Option> options;
    for (const auto& span : {own, CommandTable::globalOptions()}) {
        for (const Option& option : span) {
            if (!option.isHidden) options.push_back(option);
        }
    }
    return options;
}

/// What the program itself takes, where no command stands: the global options and those for the
/// window.
std::vector<Option> programOptions() { return visibleOptions(CommandTable::windowOptions()); }

std::string joined(const std::vector<std::string_view>& words) {
    std::string out;
    for (const std::string_view word : words) {
        if (!out.empty()) out += ' ';
        out += word;
    }
    return out;
}

/// Inside single quotes of any shell.
std::string shellQuoted(std::string_view text) {
    return "'" + Text::replacing(text, "'", "'\\''") + "'";
}

// ---- bash ----

std::string bashAction(Completes completes) {
    switch (completes) {
        case Completes::files:
            return "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -f -- \"$word\")";
        case Completes::folders:
            return "compopt -o filenames; mapfile -t COMPREPLY < <(compgen -d -- \"$word\")";
        case Completes::nothing:
            break;
    }
    return "COMPREPLY=()";
}

std::string bashWords(std::string_view words) {
    return "mapfile -t COMPREPLY < <(compgen -W " + shellQuoted(words) + " -- \"$word\")";
}

/// The cases of "$previous" that take a value; `--name=` is cut off before they are asked.
void appendBashValues(std::string& out, const std::vector<Option>& options) {
    for (const Option& option : options) {
        if (!option.takesValue()) continue;
        out += "                --" + std::string(option.name);
        if (option.letter) out += std::string("|-") + option.letter;
        out += ") " +
               (option.takesChoice() ? bashWords(joined(choices(option)))
                                     : bashAction(option.completes)) +
               "; return ;;\n";
    }
}

std::string bashOptionWords(const std::vector<Option>& options) {
    std::string words;
    for (const Option& option : options) {
        if (!words.empty()) words += ' ';
        words += "--" + std::string(option.name);
    }
    return words;
}

std::string commandNames() {
    std::vector<std::string_view> names;
    for (const Command* command : CommandTable::all()) names.push_back(command->name);
    return joined(names);
}

std::string groupNames() {
    std::vector<std::string_view> names;
    for (const Command* command : CommandTable::all()) {
        if (command->isGroup()) names.push_back(command->name);
    }
    return joined(names);
}

/// The words after the name of a group.
std::string wordsOf(const Command& group) {
    std::vector<std::string_view> words;
    for (const Command* command : group.commands) words.push_back(command->word());
    return joined(words);
}

void appendBashCommand(std::string& out, const Command& command) {
    const auto options = visibleOptions(command.options);
    out += "        " + shellQuoted(command.name) + ")\n";
    out += "            case $previous in\n";
    appendBashValues(out, options);
    out += "            esac\n";
    out += "            if [[ $word == -* ]]; then\n                " +
           bashWords(bashOptionWords(options)) + "\n            else\n                " +
           (command.isGroup() ? bashWords(wordsOf(command)) : bashAction(command.completes)) +
           "\n            fi ;;\n";
    for (const Command* each : command.commands) appendBashCommand(out, *each);
}

// ---- zsh ----

std::string zshAction(Completes completes) {
    switch (completes) {
        case Completes::files:
            return "_files";
        case Completes::folders:
            return "_files -/";
        case Completes::nothing:
            break;
    }
    return " ";
}

/// Inside an argument of _arguments, where brackets and colons have a meaning.
std::string zshEscaped(std::string_view text) {
    std::string out;
    for (const char byte : text) {
        if (byte == '[' || byte == ']' || byte == ':' || byte == '\\') out += '\\';
        out += byte;
    }
    return out;
}

void appendZshArguments(std::string& out, std::span<const Option> own, std::string_view indent) {
    for (const Option& option : visibleOptions(own)) {
        const std::string name = "--" + std::string(option.name);
        const std::string help = "[" + zshEscaped(option.help) + "]";
        const std::string letter = option.letter ? std::string("-") + option.letter : "";
        std::string value;
        if (option.takesChoice()) {
            value = ":value:(" + joined(choices(option)) + ")";
        } else if (option.takesValue()) {
            value = ":" + std::string(option.value) + ":" + zshAction(option.completes);
        }
        const std::string names = letter.empty()
                                      ? name + (value.empty() ? "" : "=")
                                      : "{" + letter + "," + name + (value.empty() ? "}" : "=}");
        std::string front;
        if (option.isRepeatable) {
            front = "\\*";
        } else if (!letter.empty()) {
            front = "'(" + letter + " " + name + ")'";
        }
        out += std::string(indent) + front + names + shellQuoted(help + value) + " \\\n";
    }
}

void appendZshCommand(std::string& out, const Command& command, const std::string& indent) {
    out += indent + "_arguments \\\n";
    appendZshArguments(out, command.options, indent + "    ");
    out += indent + "    " +
           shellQuoted("*:" + zshEscaped(command.arguments) + ":" + zshAction(command.completes)) +
           '\n';
}

/// "name:summary" in quotes, as _describe lists commands.
std::string zshDescription(const Command& command) {
    return shellQuoted(std::string(command.word()) + ":" + zshEscaped(command.summary));
}

void appendZshGroup(std::string& out, const Command& group) {
    out += "                    commands=(\n";
    for (const Command* command : group.commands) {
        out += "                        " + zshDescription(*command) + "\n";
    }
    out += "                    )\n                    _arguments -C \\\n";
    appendZshArguments(out, group.options, "                        ");
    out +=
        "                        '1: :->word' \\\n"
        "                        '*:: :->behind'\n"
        "                    case $state in\n"
        "                        word)\n"
        "                            _describe command commands\n"
        "                            ;;\n"
        "                        behind)\n"
        "                            case $words[1] in\n";
    for (const Command* command : group.commands) {
        out += "                                " + std::string(command->word()) + ")\n";
        appendZshCommand(out, *command, "                                    ");
        out += "                                    ;;\n";
    }
    out +=
        "                            esac\n"
        "                            ;;\n"
        "                    esac\n";
}

// ---- fish ----

std::string fishQuoted(std::string_view text) {
    std::string out = "'";
    for (const char byte : text) {
        if (byte == '\'' || byte == '\\') out += '\\';
        out += byte;
    }
    return out + "'";
}

void appendFishOptions(std::string& out, std::span<const Option> options,
                       std::string_view condition) {
    for (const Option& option : options) {
        if (option.isHidden) continue;
        out += "complete -c tarn";
        if (!condition.empty()) out += " -n " + fishQuoted(condition);
        if (option.letter) out += std::string(" -s ") + option.letter;
        out += " -l " + std::string(option.name);
        if (option.takesChoice()) {
            out += " -x -a " + fishQuoted(joined(choices(option)));
        } else if (option.takesValue()) {
            switch (option.completes) {
                case Completes::files:
                    out += " -r -F";
                    break;
                case Completes::folders:
                    out += " -x -a '(__fish_complete_directories)'";
                    break;
                case Completes::nothing:
                    out += " -x";
                    break;
            }
        }
        out += " -d " + fishQuoted(option.help) + '\n';
    }
}

void appendFishName(std::string& out, const Command& command, std::string_view condition) {
    out += "complete -c tarn -n " + fishQuoted(condition) + " -a " + std::string(command.word()) +
           " -d " + fishQuoted(command.summary) + '\n';
}

void appendFishCommand(std::string& out, const Command& command, const std::string& condition) {
    appendFishOptions(out, command.options, condition);
    switch (command.completes) {
        case Completes::files:
            break;
        case Completes::folders:
            out += "complete -c tarn -n " + fishQuoted(condition) +
                   " -x -a '(__fish_complete_directories)'\n";
            break;
        case Completes::nothing:
            out += "complete -c tarn -n " + fishQuoted(condition) + " -f\n";
            break;
    }
}

}  // namespace

std::string bash() {
    std::string out =
        "# Completion of tarn for bash.\n"
        "_tarn() {\n"
        "    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
        "    # bash splits --name=value at the sign.\n"
        "    if [[ $word == '=' ]]; then\n"
        "        word=\n"
        "    elif [[ $previous == '=' ]]; then\n"
        "        previous=${COMP_WORDS[COMP_CWORD-2]}\n"
        "    fi\n"
        "    local command='' i\n"
        "    for ((i = 1; i < COMP_CWORD; i++)); do\n"
        "        if [[ ${COMP_WORDS[i]} != -* ]]; then\n"
        "            command+=${command:+ }${COMP_WORDS[i]}\n"
        "            [[ ' " +
        groupNames() +
        " ' == *\" $command \"* ]] || break\n"
        "        fi\n"
        "    done\n"
        "    COMPREPLY=()\n"
        "    case $command in\n";
    for (const Command* command : CommandTable::all()) appendBashCommand(out, *command);
    out += "        '')\n            if [[ $word == -* ]]; then\n                " +
           bashWords(bashOptionWords(programOptions())) +
           "\n            else\n                compopt -o filenames\n                " +
           "mapfile -t COMPREPLY < <(compgen -W " + shellQuoted(commandNames()) +
           " -- \"$word\"; compgen -f -- \"$word\")\n            fi ;;\n";
    out += "        *) " + bashAction(Completes::files) + " ;;\n";
    out += "    esac\n}\ncomplete -F _tarn tarn\n";
    return out;
}

std::string zsh() {
    std::string out =
        "#compdef tarn\n\n"
        "_tarn() {\n"
        "    local context state state_descr line\n"
        "    typeset -A opt_args\n"
        "    local -a commands=(\n";
    for (const Command* command : CommandTable::all()) {
        out += "        " + zshDescription(*command) + "\n";
    }
    out += "    )\n    _arguments -C \\\n";
    appendZshArguments(out, CommandTable::windowOptions(), "        ");
    out +=
        "        '1: :->first' \\\n"
        "        '*:: :->rest'\n"
        "    case $state in\n"
        "        first)\n"
        "            _describe command commands\n"
        "            _files\n"
        "            ;;\n"
        "        rest)\n"
        "            case $words[1] in\n";
    for (const Command* command : CommandTable::all()) {
        out += "                " + std::string(command->name) + ")\n";
        if (command->isGroup()) {
            appendZshGroup(out, *command);
        } else {
            appendZshCommand(out, *command, "                    ");
        }
        out += "                    ;;\n";
    }
    out +=
        "                *)\n"
        "                    _files\n"
        "                    ;;\n"
        "            esac\n"
        "            ;;\n"
        "    esac\n"
        "}\n\n"
        "_tarn \"$@\"\n";
    return out;
}

std::string fish() {
    std::string out = "# Completion of tarn for fish.\n";
    appendFishOptions(out, CommandTable::globalOptions(), "");
    const std::string none = "not __fish_seen_subcommand_from " + commandNames();
    appendFishOptions(out, CommandTable::windowOptions(), none);
    for (const Command* command : CommandTable::all()) {
        appendFishName(out, *command, none);
        const std::string seen = "__fish_seen_subcommand_from " + std::string(command->name);
        if (!command->isGroup()) {
            // A word of a group may be a command as well: "tag list".
            const std::string groups = groupNames();
            appendFishCommand(
                out, *command,
                groups.empty() ? seen : seen + "; and not __fish_seen_subcommand_from " + groups);
            continue;
        }
        out += "complete -c tarn -n " + fishQuoted(seen) + " -f\n";
        appendFishOptions(out, command->options,
                          seen + "; and not __fish_seen_subcommand_from " + wordsOf(*command));
        for (const Command* each : command->commands) {
            appendFishName(out, *each,
                           seen + "; and not __fish_seen_subcommand_from " + wordsOf(*command));
            appendFishCommand(
                out, *each,
                seen + "; and __fish_seen_subcommand_from " + std::string(each->word()));
        }
    }
    return out;
}

}  // namespace tarn::cli::Completions
