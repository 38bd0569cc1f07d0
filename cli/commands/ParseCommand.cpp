#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/search/QueryParser.h"
#include "cli/Arguments.h"
#include "cli/Command.h"
#include "cli/Session.h"

namespace tarn::cli {
namespace {

constexpr Option options[] = {CommonOptions::json};

constexpr Example examples[] = {
    {"tarn parse pdfs from last week over 5 mb", "The type, date and size that the words mean"},
    {"tarn parse --json 'invoice 2024'", "The query as a record"},
};

std::string_view label(ChipCategory category) {
    switch (category) {
        case ChipCategory::type:
            return "Type";
        case ChipCategory::date:
            return "Date";
        case ChipCategory::size:
            return "Size";
        case ChipCategory::source:
            return "Source";
        case ChipCategory::place:
            return "Place";
        case ChipCategory::camera:
            return "Camera";
        case ChipCategory::text:
            return "Text";
    }
    return {};
}

void printJSON(Output& out, const SearchQuery& query) {
    JSON json = query;
    json["chips"] = JSON::array();
    for (const SearchChip& chip : query.chips()) {
        json["chips"].push_back(
            {{"category", ChipCategories::rawValue(chip.category)}, {"label", chip.label}});
    }
    out << JSONText::pretty(json) << '\n';
}

void printText(Session& session, const SearchQuery& query) {
    std::vector<std::pair<std::string_view, std::string>> rows;
    if (!query.terms.empty()) rows.emplace_back("Name", Text::join(query.terms, ", "));
    for (const SearchChip& chip : query.chips()) {
        rows.emplace_back(label(chip.category), chip.label);
    }
    if (query.filesOnly) rows.emplace_back("Items", "Files only");
    if (rows.empty()) rows.emplace_back("Name", "Anything");
    std::string& out = session.out().buffer();
    for (const auto& [name, value] : rows) {
        std::string padded(name);
        padded.resize(8, ' ');
        session.terminal().append(out, Terminal::Style::dim, padded);
        out += Terminal::escaped(value) + '\n';
    }
}

int run(const Arguments& arguments, Session& session) {
    const QueryParser parser(session.now(), session.calendar(), session.locale());
    const SearchQuery query = parser.parse(arguments.text());
    if (arguments.has("json")) {
        printJSON(session.out(), query);
    } else {
        printText(session, query);
    }
    return ExitStatus::done;
}

}  // namespace

extern const Command parseCommand;
const Command parseCommand = {
    .name = "parse",
    .section = Section::looking,
    .summary = "Shows how a query is understood",
    .arguments = "QUERY…",
    .description = "Nothing is searched. The words of QUERY may be one argument or several.",
    .fewest = 1,
    .options = options,
    .examples = examples,
    .run = run,
};

}  // namespace tarn::cli
