#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Tarn/model/records/ListError.h"
#include "Tarn/model/records/NamedRecords.h"
#include "Tarn/model/records/SmartFolders.h"
#include "Tarn/model/records/UserStores.h"
#include "TarnCore/base/JSON.h"
#include "cli/Arguments.h"
#include "cli/Columns.h"
#include "cli/Command.h"
#include "cli/Session.h"
#include "cli/Stores.h"

namespace tarn::cli {
namespace {

using List = StoredList<SmartFolder>;

int runList(const Arguments& arguments, Session& session) {
    const auto store = UserStores::smartFolders();
    Stores::warnIfUnreadable(store);
    const std::vector<SmartFolder> folders = SmartFolders::merged(store.value().records);
    if (arguments.has("json")) {
        session.out() << JSONText::pretty(JSON(folders)) << '\n';
        return ExitStatus::done;
    }
    std::vector<std::vector<std::string>> lines;
    for (const SmartFolder& folder : folders)
        lines.push_back(
            {folder.name, std::string(SearchScopes::rawValue(folder.scope)), folder.query});
    appendColumns(session.out().buffer(), lines);
    return ExitStatus::done;
}

void printIfWanted(const Arguments& arguments, Session& session, const SmartFolder& folder) {
    if (arguments.has("json")) session.out() << JSONText::pretty(JSON(folder)) << '\n';
}

int runAdd(const Arguments& arguments, Session& session) {
    std::string query;
    for (std::size_t i = 1; i < arguments.rest().size(); ++i)
        query += (i > 1 ? " " : "") + std::string(arguments.rest()[i]);
    const auto scope = SearchScopes::fromRawValue(arguments.value("scope").value_or("home"));
    auto store = UserStores::smartFolders();
    Stores::warnIfUnreadable(store);
    const SmartFolder folder =
        SmartFolders::make(SmartFolders::merged(store.value().records), arguments.rest()[0], query,
                           scope.value_or(SearchScopeSetting::home));
    store.update([folder](List& list) { SmartFolders::add(list.records, folder); });
    Stores::save(store);
    printIfWanted(arguments, session, folder);
    return ExitStatus::done;
}

int runRemove(const Arguments& arguments, Session& session) {
    auto store = UserStores::smartFolders();
    Stores::warnIfUnreadable(store);
    const auto folder =
        SmartFolders::require(SmartFolders::merged(store.value().records), arguments.rest()[0]);
    if (folder.builtIn) throw ListError::builtIn(folder.name);
    store.update([id = folder.id](List& list) { SmartFolders::remove(list.records, id); });
    Stores::save(store);
    printIfWanted(arguments, session, folder);
    return ExitStatus::done;
}

constexpr Option listOptions[] = {CommonOptions::json};
constexpr Option addOptions[] = {
    {.name = "scope",
     .letter = 's',
     .value = "currentFolder|home|thisMac",
     .help = "Where it looks: in the folder that is shown, the home folder (unless given) or the "
             "whole computer"},
    CommonOptions::json,
};

constexpr Example addExamples[] = {
    {"tarn smart-folders add Invoices pdfs containing invoice", "Looks in the home folder"},
    {"tarn smart-folders add --scope thisMac Huge over 5 gb", "Looks everywhere"},
};
constexpr Example removeExamples[] = {
    {"tarn smart-folders remove Invoices", "The files that it shows stay"}};

constexpr Command addCommand = {
    .name = "smart-folders add",
    .section = Section::settings,
    .summary = "Keeps a search as a smart folder",
    .arguments = "NAME QUERY…",
    .description = "No two have the same name. “tarn parse” shows how QUERY is understood.",
    .fewest = 2,
    .options = addOptions,
    .examples = addExamples,
    .run = runAdd,
};
constexpr Command removeCommand = {
    .name = "smart-folders remove",
    .section = Section::settings,
    .summary = "Forgets a smart folder",
    .arguments = "NAME|ID",
    .description = "The three that belong to Tarn stay.",
    .fewest = 1,
    .most = 1,
    .options = listOptions,
    .examples = removeExamples,
    .run = runRemove,
};

constexpr const Command* commands[] = {&addCommand, &removeCommand};

constexpr Example examples[] = {
    {"tarn smart-folders", "Their names, where they look and what for"},
    {"tarn search --smart-folder Screenshots", "What one of them shows"},
};

}  // namespace

extern const Command smartFoldersCommand;
const Command smartFoldersCommand = {
    .name = "smart-folders",
    .section = Section::settings,
    .summary = "Shows and changes the smart folders",
    .description =
        "Alone it lists them. A smart folder is a search that is kept under a name and "
        "shows what it finds at the moment.",
    .options = listOptions,
    .examples = examples,
    .run = runList,
    .commands = commands,
};

}  // namespace tarn::cli
