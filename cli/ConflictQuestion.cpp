#include "cli/ConflictQuestion.h"

#include <cerrno>
#include <optional>
#include <string>
#include <string_view>

#include <poll.h>
#include <unistd.h>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/Format.h"
#include "cli/Output.h"
#include "cli/Terminal.h"

namespace tarn::cli::ConflictQuestion {
namespace {

constexpr int patience = 100;  // milliseconds between looks at the token

std::string quoted(const URL& url) { return Text::quoted(Terminal::escaped(url.name())); }

std::string facts(std::optional<std::int64_t> size, std::optional<Date> modified) {
    std::string text = size ? Format::bytes(*size) : "a folder";
    if (modified) text += ", " + Format::date(modified);
    return text;
}

std::string question(const TransferConflict& conflict) {
    std::string text = quoted(conflict.existing) + " already exists in " +
                       quoted(conflict.existing.parent()) + ".\n";
    text += "  there now: " + facts(conflict.existingSize, conflict.existingModified) + '\n';
    text += "  to come:   " + facts(conflict.sourceSize, conflict.sourceModified) + '\n';
    return text;
}

std::string prompt(bool bothFolders) {
    return std::string("[r]eplace, [s]kip, [k]eep both, ") + (bothFolders ? "[m]erge, " : "") +
           "s[t]op? In capitals for all such " + (bothFolders ? "folders" : "files") + ": ";
}

void write(std::string_view text) {
    Output out(STDERR_FILENO);
    out << text;
    out.flush();
}

/// A line of the terminal without its end; absent at the end of the input and when cancelled.
std::optional<std::string> readLine(const CancelToken& token) {
    std::string line;
    while (!token.isCancelled()) {
        pollfd waiting = {STDIN_FILENO, POLLIN, 0};
        if (::poll(&waiting, 1, patience) <= 0) continue;
        // Byte by byte, since what follows the line is not ours; a terminal hands out lines.
        char byte = 0;
        const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return std::nullopt;
        if (byte == '\n') return line;
        line += byte;
    }
    return std::nullopt;
}

std::optional<ConflictDecision> decision(std::string_view answer, bool bothFolders) {
    if (answer.size() != 1) return std::nullopt;
    const bool all = answer[0] >= 'A' && answer[0] <= 'Z';
    switch (all ? answer[0] - 'A' + 'a' : answer[0]) {
        case 'r':
            return ConflictDecision{ConflictAction::replace, all};
        case 's':
            return ConflictDecision{ConflictAction::skip, all};
        case 'k':
            return ConflictDecision{ConflictAction::keepBoth, all};
        case 't':
            return ConflictDecision{ConflictAction::stop, all};
        case 'm':
            if (bothFolders) return ConflictDecision{ConflictAction::merge, all};
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

}  // namespace

bool canAsk() {
    return Terminal::at(STDIN_FILENO).isTerminal() && Terminal::at(STDERR_FILENO).isTerminal();
}

ConflictDecision ask(const TransferConflict& conflict, const CancelToken& token) {
    write(question(conflict));
    for (;;) {
        write(prompt(conflict.bothFolders));
        const auto line = readLine(token);
        if (!line) {
            write("\n");
            return {ConflictAction::stop, false};
        }
        if (const auto answer = decision(Text::trimmed(*line), conflict.bothFolders))
            return *answer;
    }
}

}  // namespace tarn::cli::ConflictQuestion
