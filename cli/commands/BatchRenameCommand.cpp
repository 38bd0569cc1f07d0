#include <exception>
#include <iostream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/OperationHistory.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/rename/BatchRenamer.h"
#include "cli/Arguments.h"
#include "cli/Changes.h"
#include "cli/Command.h"
#include "cli/Session.h"
#include "cli/UsageError.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {
    {.name = "rules",
     .value = "FILE",
     .help = "Takes the rules, a JSON array, from this file; “-” is the standard input",
     .completes = Completes::files},
    {.name = "include-extension", .help = "Lets the rules work on extensions, too"},
    {.name = "apply", .help = "Renames the files; without it only the new names are shown"},
    CommonOptions::json,
};

constexpr Example examples[] = {
    {"tarn batch-rename --rules rules.json *.jpg",
     "Shows the new names, and what stands against "
     "them"},
    {"tarn batch-rename --rules rules.json --apply *.jpg", "Renames, all of them or none"},
    {"echo '[{\"replace\": {\"find\": \"IMG_\", \"with\": \"Trip \"}}]' | tarn batch-rename "
     "--rules - *.jpg",
     "Puts “Trip ” in the place of “IMG_”"},
    {"echo '[{\"number\": {\"start\": 1, \"step\": 1, \"digits\": 3, \"position\": \"before\", "
     "\"separator\": \" \"}}]' | tarn batch-rename --rules - *.mp3",
     "Puts 001, 002 … before the names, in the order given"},
};

/// No list of rules is longer; a file that is was named by mistake.
constexpr std::size_t longestRules = 16 << 20;

std::string readRules(std::string_view file, Session& session) {
    if (file == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
    const URL url = session.url(file);
    try {
        return Platform::current().files->readFile(url, longestRules);
    } catch (const std::system_error& error) {
        throw FileOpError::failed(FileOps::friendly(error, "read " + Text::quoted(url.name())));
    }
}

std::vector<RenameRule> requireRules(const Arguments& arguments, Session& session) {
    const auto file = arguments.value("rules");
    if (!file) throw UsageError("The option “--rules” is missing.");
    const auto json = JSONText::parse(readRules(*file, session));
    if (!json || !json->is_array()) throw UsageError("The rules are not a JSON array.");
    try {
        return json->get<std::vector<RenameRule>>();
    } catch (const JSON::exception&) {
        throw UsageError("A field of a rule is missing or of the wrong type.");
    } catch (const Error& error) {
        throw UsageError(error.what());
    }
}

void print(Session& session, const std::vector<RenamePreview>& previews) {
    std::string& out = session.out().buffer();
    for (const RenamePreview& preview : previews) {
        out += Terminal::escaped(preview.oldName) + " → " + Terminal::escaped(preview.newName);
        if (preview.problem) {
            out += "  ";
            session.terminal().append(out, Terminal::Style::bold,
                                      "(" + Terminal::escaped(*preview.problem) + ")");
        }
        out += '\n';
        session.out().flushIfLarge();
    }
}

int run(const Arguments& arguments, Session& session) {
    const std::vector<RenameRule> rules = requireRules(arguments, session);
    std::vector<URL> urls;
    for (const std::string_view path : arguments.rest()) {
        urls.push_back(session.url(path));
        if (!FileOps::exists(urls.back())) throw FileOpError::missing(urls.back().name());
    }
    const auto previews = BatchRenamer::preview(urls, rules, arguments.has("include-extension"));
    std::size_t problems = 0;
    for (const RenamePreview& preview : previews) problems += preview.problem.has_value();

    if (arguments.has("apply") && problems == 0) {
        std::vector<Step> steps = BatchRenamer::apply(previews);
        const auto count = static_cast<std::int64_t>(steps.size());
        Changes::record(OperationKind::batchRename, "Rename " + Format::count(count, "file"),
                        std::move(steps), count);
    }
    if (arguments.has("json")) {
        session.out() << JSONText::pretty(JSON(previews)) << '\n';
    } else {
        print(session, previews);
    }
    if (problems == 0) return ExitStatus::done;
    if (!arguments.has("apply")) return ExitStatus::partlyFailed;
    Session::say(
        "Nothing was renamed: " + Format::count(static_cast<std::int64_t>(problems), "new name") +
        " can’t be used.");
    return ExitStatus::failed;
}

}  // namespace

extern const Command batchRenameCommand;
const Command batchRenameCommand = {
    .name = "batch-rename",
    .section = Section::changing,
    .summary = "Renames many files by rules",
    .arguments = "PATH…",
    .description =
        "The rules act in their order, each on what the one before has made of the name. Without "
        "“--apply” nothing changes, and the exit status is 4 when a new name can’t be used. With "
        "it all files are renamed, or none; files may exchange their names.\n"
        "A rule is an object with one key: "
        "{\"replace\": {\"find\", \"with\", \"regex\", \"caseSensitive\"}}, "
        "{\"addText\": {\"_0\": TEXT, \"_1\": POSITION}}, "
        "{\"number\": {\"start\", \"step\", \"digits\", \"position\", \"separator\"}}, "
        "{\"insertDate\": {\"_0\": DATE, \"format\", \"position\", \"separator\"}}, "
        "{\"changeCase\": {\"_0\": STYLE}}, "
        "{\"removeCharacters\": {\"_0\": CHARACTERS}}, "
        "{\"removeFirst\": {\"_0\": COUNT}}, "
        "{\"removeLast\": {\"_0\": COUNT}}. "
        "Positions are before and after; dates created, modified and photoTaken; styles lower, "
        "upper, title and sentence. Dates are formatted by patterns such as yyyy-MM-dd.",
    .completes = Completes::files,
    .fewest = 1,
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
