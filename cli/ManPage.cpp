#include "cli/ManPage.h"

#include <string_view>

#include "TarnCore/base/Text.h"
#include "cli/CommandTable.h"

namespace tarn::cli {
namespace {

/// Text as roff takes it. Backslashes are its own; dashes, apostrophes and tildes would turn into
/// typographic ones, which nobody could paste into a shell; a line that begins with a dot would be
/// a request. Characters beyond ASCII stay: man reads UTF-8.
std::string roff(std::string_view text) {
    std::string out;
    for (const char byte : text) {
        switch (byte) {
            case '\\':
                out += "\\e";
                break;
            case '-':
                out += "\\-";
                break;
            case '\'':
                out += "\\(aq";
                break;
            case '~':
                out += "\\(ti";
                break;
            case '^':
                out += "\\(ha";
                break;
            case '`':
                out += "\\(ga";
                break;
            case '.':
                if (out.empty() || out.back() == '\n') out += "\\&";
                [[fallthrough]];
            default:
                out += byte;
        }
    }
    return out;
}

std::string bold(std::string_view text) { return "\\fB" + roff(text) + "\\fR"; }
std::string italic(std::string_view text) { return "\\fI" + roff(text) + "\\fR"; }

void appendOption(std::string& out, const Option& option) {
    out += ".TP\n";
    if (option.letter) out += bold({&option.letter, 1}).insert(3, "\\-") + ", ";
    out += bold("--" + std::string(option.name));
    if (option.takesValue()) out += " " + italic(option.value);
    out += '\n' + roff(option.help) + ".\n";
}

void appendExamples(std::string& out, std::span<const Example> examples) {
    for (const Example& example : examples) {
        out += ".TP\n" + bold(example.command) + '\n' + roff(example.meaning) + ".\n";
    }
}

void appendCommand(std::string& out, const Command& command) {
    out += ".SS " + bold("tarn " + std::string(command.name));
    if (command.isGroup())
        out += " " + (command.run ? "[" + italic("COMMAND") + "]" : italic("COMMAND"));
    if (!command.options.empty()) out += " [" + italic("OPTION") + "]…";
    if (!command.arguments.empty()) out += ' ' + roff(command.arguments);
    out += '\n' + roff(command.summary) + ".\n";
    for (const std::string_view paragraph : Text::split(command.description, '\n')) {
        if (!paragraph.empty()) out += ".PP\n" + roff(paragraph) + '\n';
    }
    for (const Option& option : command.options) appendOption(out, option);
    if (!command.examples.empty()) out += ".PP\nExamples:\n";
    appendExamples(out, command.examples);
    for (const Command* each : command.commands) appendCommand(out, *each);
}

constexpr std::string_view output = R"(.SH OUTPUT
Results go to the standard output, messages and progress to the standard error.
With \fB\-\-json\fR the output is one JSON document.
Keys are field names, absent values are left out, dates are seconds since
2001\-01\-01 00:00:00 UTC, files are percent\-encoded \fBfile://\fR URLs.
\fB\-\-paths\fR and \fB\-0\fR print names byte for byte, whatever bytes they hold;
on a terminal, control characters in names are written out (\fB\en\fR, \fB\ex1b\fR).
)";

constexpr std::string_view exitStatus = R"(.SH EXIT STATUS
.TP
.B 0
Done.
.TP
.B 1
Nothing was found.
.TP
.B 2
The command line is wrong.
.TP
.B 3
The operation failed.
.TP
.B 4
Part of it failed; the rest was done.
.TP
.B 130
Cancelled with Control\-C.
)";

constexpr std::string_view environment = R"(.SH ENVIRONMENT
.TP
.B NO_COLOR
When set to anything, no colours are used.
.TP
.BR TZ ", " LC_ALL ", " LC_TIME ", " LANG
Time zone and language of dates, months and sorting.
.TP
.B TARN_ISOLATED_ROOT
A folder that takes the place of the home folder (as
.IR Home )
and of the stored settings and lists (as
.IR Support ).
.TP
.B TARN_RESTORE_SESSION
Whether the first window brings back the windows of the last time, instead of what the
settings say: \fB0\fR or nothing for no, anything else for yes.
.TP
.B TARN_SHOW_ONBOARDING
Anything but \fB0\fR has the first window introduce itself again.
)";

}  // namespace

std::string manPage() {
    std::string out = ".TH TARN 1 \"\" \"Tarn " TARN_VERSION "\" \"User Commands\"\n";
    std::string summary = Text::withFirstLowered(CommandTable::summary());
    out += ".SH NAME\ntarn \\- " + roff(summary) + '\n';
    out += ".SH SYNOPSIS\n.B tarn\n[" + italic("OPTION") + "]… [" + italic("PATH") +
           "]…\n.br\n.B tarn\n" + italic("COMMAND") + " [" + italic("OPTION") + "]… [" +
           italic("ARGUMENT") + "]…\n";
    out += ".SH DESCRIPTION\n" + roff(CommandTable::description()) + '\n';
    out += "With a command, one job is done in the terminal.\n";
    out += ".SH OPTIONS\nEvery command takes these.\n";
    for (const Option& option : CommandTable::globalOptions()) appendOption(out, option);
    out += ".PP\nWithout a command there are also:\n";
    for (const Option& option : CommandTable::windowOptions()) appendOption(out, option);
    out += ".SH COMMANDS\n";
    for (const Command* command : CommandTable::all()) appendCommand(out, *command);
    out += output;
    out += exitStatus;
    out += environment;
    out += ".SH EXAMPLES\n";
    appendExamples(out, CommandTable::examples());
    return out;
}

}  // namespace tarn::cli
