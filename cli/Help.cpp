#include "cli/Help.h"

#include <algorithm>
#include <vector>

#include "TarnCore/base/Text.h"
#include "cli/CommandTable.h"
#include "cli/Terminal.h"

namespace tarn::cli::Help {
namespace {

constexpr std::size_t pageWidth = 80;
constexpr std::size_t widestLeftColumn = 26;

/// Words filled into lines that begin at `indent`; the first line continues at column `column`.
void appendWrapped(std::string& out, std::string_view text, std::size_t indent,
                   std::size_t column) {
    bool first = true;
    for (const std::string_view word : Text::split(text, ' ')) {
        const std::size_t width = Terminal::width(word);
        if (!first && column + 1 + width > pageWidth) {
            out += '\n';
            out.append(indent, ' ');
            column = indent;
        } else if (!first) {
            out += ' ';
            ++column;
        }
        out += word;
        column += width;
        first = false;
    }
    out += '\n';
}

struct Row {
    std::string left;
    std::string right;
};

void appendRows(std::string& out, const std::vector<Row>& rows) {
    std::size_t widest = 0;
    for (const Row& row : rows) {
        const std::size_t width = Terminal::width(row.left);
        if (width <= widestLeftColumn) widest = std::max(widest, width);
    }
    const std::size_t indent = 2 + widest + 2;
    for (const Row& row : rows) {
        const std::size_t width = Terminal::width(row.left);
        out += "  " + row.left;
        if (width > widest) {
            out += '\n';
            out.append(indent, ' ');
        } else {
            out.append(indent - 2 - width, ' ');
        }
        appendWrapped(out, row.right, indent, indent);
    }
}

void appendOptions(std::string& out, std::span<const Option> options) {
    // Options without a letter leave the place of one free, so that the long names stand in line.
    std::vector<Row> rows;
    for (const Option& option : options) {
        if (option.isHidden) continue;
        rows.push_back(
            {(option.letter ? "" : "    ") + spelling(option), std::string(option.help)});
    }
    appendRows(out, rows);
}

void appendExamples(std::string& out, std::span<const Example> examples) {
    if (examples.empty()) return;
    out += "\nExamples:\n";
    for (const Example& example : examples) {
        out += "  " + std::string(example.command) + "\n      ";
        appendWrapped(out, example.meaning, 6, 6);
    }
}

void appendParagraphs(std::string& out, std::string_view text) {
    for (const std::string_view paragraph : Text::split(text, '\n')) {
        out += '\n';
        appendWrapped(out, paragraph, 0, 0);
    }
}

}  // namespace

std::string spelling(const Option& option) {
    std::string text;
    if (option.letter) text = {'-', option.letter, ',', ' '};
    text += "--";
    text += option.name;
    if (option.takesValue()) {
        text += ' ';
        text += option.value;
    }
    return text;
}

std::string program() {
    std::string out =
        "Usage: tarn [OPTION]… [PATH…]\n"
        "       tarn COMMAND [OPTION]… [ARGUMENT]…\n\n";
    appendWrapped(
        out, std::string(CommandTable::summary()) + ". " + std::string(CommandTable::description()),
        0, 0);
    for (auto rest = CommandTable::all(); !rest.empty();) {
        const Section section = rest.front()->section;
        out += "\n" + std::string(CommandTable::title(section)) + ":\n";
        std::vector<Row> rows;
        while (!rest.empty() && rest.front()->section == section) {
            rows.push_back({std::string(rest.front()->name), std::string(rest.front()->summary)});
            rest = rest.subspan(1);
        }
        appendRows(out, rows);
    }
    out += "\nOptions:\n";
    appendOptions(out, CommandTable::globalOptions());
    out += "\nFor the window:\n";
    appendOptions(out, CommandTable::windowOptions());
    appendExamples(out, CommandTable::examples());
    out += "\n“tarn COMMAND --help” explains a command.\n";
    return out;
}

std::string command(const Command& command) {
    std::string out = "Usage: tarn " + std::string(command.name);
    if (command.isGroup() && command.run)
        out += " [OPTION]…\n       tarn " + std::string(command.name);
    if (command.isGroup()) out += " COMMAND [OPTION]… [ARGUMENT]…";
    if (!command.isGroup() && !command.options.empty()) out += " [OPTION]…";
    if (!command.arguments.empty()) out += ' ' + std::string(command.arguments);
    out += "\n\n" + std::string(command.summary) + ".\n";
    if (!command.description.empty()) appendParagraphs(out, command.description);
    if (command.isGroup()) {
        out += "\nCommands:\n";
        std::vector<Row> rows;
        for (const Command* each : command.commands) {
            rows.push_back({std::string(each->word()), std::string(each->summary)});
        }
        appendRows(out, rows);
    }
    out += "\nOptions:\n";
    std::vector<Option> options(command.options.begin(), command.options.end());
    const auto global = CommandTable::globalOptions();
    options.insert(options.end(), global.begin(), global.end());
    appendOptions(out, options);
    appendExamples(out, command.examples);
    if (command.isGroup()) {
        out += "\n“tarn " + std::string(command.name) + " COMMAND --help” explains a command.\n";
    }
    return out;
}

}  // namespace tarn::cli::Help
