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
        "            command=${COMP_WORDS[i]}\n"
        "            break\n"
        "        fi\n"
        "    done\n"
        "    COMPREPLY=()\n"
        "    case $command in\n";
    for (const Command* command : CommandTable::all()) {
        const auto options = visibleOptions(command->options);
        out += "        " + std::string(command->name) + ")\n";
        out += "            case $previous in\n";
        appendBashValues(out, options);
        out += "            esac\n";
        out += "            if [[ $word == -* ]]; then\n                " +
               bashWords(bashOptionWords(options)) + "\n            else\n                " +
               bashAction(command->completes) + "\n            fi ;;\n";
    }
    out += "        '')\n            if [[ $word == -* ]]; then\n                " +
           bashWords(bashOptionWords(visibleOptions({}))) +
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
        out += "        " +
               shellQuoted(std::string(command->name) + ":" + zshEscaped(command->summary)) + "\n";
    }
    out += "    )\n    _arguments -C \\\n";
    appendZshArguments(out, {}, "        ");
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
        out += "                    _arguments \\\n";
        appendZshArguments(out, command->options, "                        ");
        out += "                        " +
               shellQuoted("*:" + zshEscaped(command->arguments) + ":" +
                           zshAction(command->completes)) +
               "\n                    ;;\n";
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
    const std::string names = commandNames();
    for (const Command* command : CommandTable::all()) {
        out += "complete -c tarn -n " + fishQuoted("not __fish_seen_subcommand_from " + names) +
               " -a " + std::string(command->name) + " -d " + fishQuoted(command->summary) + '\n';
    }
    for (const Command* command : CommandTable::all()) {
        const std::string seen = "__fish_seen_subcommand_from " + std::string(command->name);
        appendFishOptions(out, command->options, seen);
        switch (command->completes) {
            case Completes::files:
                break;
            case Completes::folders:
                out += "complete -c tarn -n " + fishQuoted(seen) +
                       " -x -a '(__fish_complete_directories)'\n";
                break;
            case Completes::nothing:
                out += "complete -c tarn -n " + fishQuoted(seen) + " -f\n";
                break;
        }
    }
    return out;
}

}  // namespace tarn::cli::Completions
