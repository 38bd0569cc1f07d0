#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/Templates.h"
#include "cli/Arguments.h"
#include "cli/Changes.h"
#include "cli/Command.h"
#include "cli/Session.h"
#include "cli/UsageError.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {{.name = "list", .help = "Lists the templates"}};

constexpr Example examples[] = {
    {"tarn new md", "Makes untitled.md in the current folder"},
    {"tarn new docx ~/Documents", "Makes an empty Word document in a folder"},
    {"tarn new --list", "Every template, yours among them"},
};

/// What is typed for a template: the id of a built-in one, the file's name of the user's own.
const std::string& word(const FileTemplate& file) {
    return file.sourceURL ? file.fileName : file.id;
}

int list(Session& session) {
    const auto templates = Templates::all();
    std::size_t widest = 0;
    for (const FileTemplate& file : templates)
        widest = std::max(widest, Terminal::width(Terminal::escaped(word(file))));
    for (const FileTemplate& file : templates) {
        if (!session.terminal().isTerminal()) {
            session.out() << word(file) << '\n';
            continue;
        }
        std::string line = Terminal::escaped(word(file));
        line.append(widest - Terminal::width(line) + 2, ' ');
        session.out() << line << Terminal::escaped(file.title) << '\n';
    }
    return ExitStatus::done;
}

FileTemplate find(std::string_view wanted) {
    auto templates = Templates::all();
    std::vector<std::string_view> words;
    for (FileTemplate& file : templates) {
        if (word(file) == wanted || Text::folded(file.title) == Text::folded(wanted)) return file;
        words.push_back(word(file));
    }
    std::string sentence = "There is no template " + Text::quoted(Terminal::escaped(wanted)) + ".";
    if (const auto near = nearest(wanted, words))
        sentence += " Did you mean " + Text::quoted(Terminal::escaped(*near)) + "?";
    throw UsageError(sentence);
}

int run(const Arguments& arguments, Session& session) {
    const auto& words = arguments.rest();
    if (arguments.has("list")) {
        if (!words.empty()) throw UsageError("“--list” takes no arguments.");
        return list(session);
    }
    if (words.empty()) throw UsageError("Which template? “tarn new --list” shows them.");
    const FileTemplate file = find(words[0]);
    const URL folder = words.size() > 1 ? session.url(words[1]) : session.currentFolder();
    FileChange made = Templates::create(file, folder);
    Changes::record(OperationKind::create, "New File " + Text::quoted(made.url.name()),
                    std::move(made.steps), 1);
    const bool isForPeople = session.terminal().isTerminal();
    session.out() << (isForPeople ? Terminal::escaped(made.url.path()) : made.url.path()) << '\n';
    return ExitStatus::done;
}

}  // namespace

extern const Command newCommand;
const Command newCommand = {
    .name = "new",
    .section = Section::changing,
    .summary = "Makes a new file from a template",
    .arguments = "TEMPLATE [DIR]",
    .description =
        "In DIR or the current folder, under the first free name, which is printed. TEMPLATE is "
        "one of txt, md, rtf, docx, xlsx, pptx, html and csv, or the name of a file in your "
        "templates folder.",
    .completes = Completes::folders,
    .most = 2,
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
