#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Tarn/model/records/UserStores.h"
#include "Tarn/model/records/Workspaces.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/files/Format.h"
#include "cli/Arguments.h"
#include "cli/Columns.h"
#include "cli/Command.h"
#include "cli/Session.h"
#include "cli/Stores.h"

namespace tarn::cli {
namespace {

using List = StoredList<Workspace>;

int runList(const Arguments& arguments, Session& session) {
    const auto store = UserStores::workspaces();
    Stores::warnIfUnreadable(store);
    const std::vector<Workspace> workspaces = store.value().records;
    if (arguments.has("json")) {
        session.out() << JSONText::pretty(JSON(workspaces)) << '\n';
        return ExitStatus::done;
    }
    session.useLocaleForFormats();
    std::vector<std::vector<std::string>> lines;
    for (const Workspace& workspace : workspaces)
        lines.push_back({workspace.name,
                         Format::count(static_cast<std::int64_t>(workspace.tabs.size()), "tab"),
                         Format::date(workspace.savedAt)});
    appendColumns(session.out().buffer(), lines);
    return ExitStatus::done;
}

void printIfWanted(const Arguments& arguments, Session& session, const Workspace& workspace) {
    if (arguments.has("json")) session.out() << JSONText::pretty(JSON(workspace)) << '\n';
}

int runSave(const Arguments& arguments, Session& session) {
    std::vector<WindowSnapshot> tabs;
    for (std::size_t i = 1; i < arguments.rest().size(); ++i) {
        const URL folder = session.requireFolder(arguments.rest()[i]);
        tabs.push_back({{{Location::folder(folder), std::nullopt}}, 0, true, false});
    }
    auto store = UserStores::workspaces();
    Stores::warnIfUnreadable(store);
    const Workspace workspace =
        Workspaces::make(arguments.rest()[0], std::move(tabs), session.now());
    store.update([workspace](List& list) { Workspaces::save(list.records, workspace); });
    Stores::save(store);
    printIfWanted(arguments, session, Workspaces::require(store.value().records, workspace.name));
    return ExitStatus::done;
}

int runRemove(const Arguments& arguments, Session& session) {
    auto store = UserStores::workspaces();
    Stores::warnIfUnreadable(store);
    const Workspace workspace = Workspaces::require(store.value().records, arguments.rest()[0]);
    store.update([id = workspace.id](List& list) { Workspaces::remove(list.records, id); });
    Stores::save(store);
    printIfWanted(arguments, session, workspace);
    return ExitStatus::done;
}

constexpr Option listOptions[] = {CommonOptions::json};

constexpr Example saveExamples[] = {
    {"tarn workspaces save Taxes ~/Documents/Taxes ~/Downloads", "A window with two tabs"}};
constexpr Example removeExamples[] = {
    {"tarn workspaces remove Taxes", "The folders of its tabs stay"}};

constexpr Command saveCommand = {
    .name = "workspaces save",
    .section = Section::settings,
    .summary = "Keeps folders as the tabs of a workspace",
    .arguments = "NAME DIR…",
    .description = "One tab for each DIR. A workspace of this name is replaced.",
    .completes = Completes::folders,
    .fewest = 2,
    .options = listOptions,
    .examples = saveExamples,
    .run = runSave,
};
constexpr Command removeCommand = {
    .name = "workspaces remove",
    .section = Section::settings,
    .summary = "Forgets a workspace",
    .arguments = "NAME|ID",
    .fewest = 1,
    .most = 1,
    .options = listOptions,
    .examples = removeExamples,
    .run = runRemove,
};

constexpr const Command* commands[] = {&saveCommand, &removeCommand};

constexpr Example examples[] = {
    {"tarn workspaces", "Their names, how many tabs they have and when they were saved"},
    {"tarn --workspace Taxes", "Opens one"},
};

}  // namespace

extern const Command workspacesCommand;
const Command workspacesCommand = {
    .name = "workspaces",
    .section = Section::settings,
    .summary = "Shows and changes the workspaces",
    .description = "Alone it lists them. A workspace is a window with its tabs, kept under a name.",
    .options = listOptions,
    .examples = examples,
    .run = runList,
    .commands = commands,
};

}  // namespace tarn::cli
