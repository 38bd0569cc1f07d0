#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Tarn/model/records/Favorites.h"
#include "Tarn/model/records/UserStores.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "cli/Arguments.h"
#include "cli/Columns.h"
#include "cli/Command.h"
#include "cli/Session.h"
#include "cli/Stores.h"

namespace tarn::cli {
namespace {

using List = StoredList<Favorite>;

int runList(const Arguments& arguments, Session& session) {
    const auto store = UserStores::favorites();
    Stores::warnIfUnreadable(store);
    const std::vector<Favorite> favorites = store.value().records;
    if (arguments.has("json")) {
        session.out() << JSONText::pretty(JSON(favorites)) << '\n';
        return ExitStatus::done;
    }
    std::vector<std::vector<std::string>> lines;
    for (const Favorite& favorite : favorites)
        lines.push_back(
            {Favorites::title(favorite), Paths::abbreviate(Favorites::folder(favorite))});
    appendColumns(session.out().buffer(), lines);
    return ExitStatus::done;
}

void printIfWanted(const Arguments& arguments, Session& session, const Favorite& favorite) {
    if (arguments.has("json")) session.out() << JSONText::pretty(JSON(favorite)) << '\n';
}

/// The one for this folder; throws when it is none.
Favorite require(const JSONStore<List>& store, const URL& folder) {
    const std::vector<Favorite> favorites = store.value().records;
    if (const Favorite* found = Favorites::find(favorites, folder)) return *found;
    throw Error(Text::quoted(folder.name()) + " isn’t a favourite.");
}

int runAdd(const Arguments& arguments, Session& session) {
    const URL folder = session.requireFolder(arguments.rest()[0]);
    auto store = UserStores::favorites();
    Stores::warnIfUnreadable(store);
    const Favorite favorite = Favorites::make(folder, arguments.value("name").value_or(""));
    store.update([favorite](List& list) { Favorites::insert(list.records, favorite); });
    Stores::save(store);
    printIfWanted(arguments, session, require(store, folder));
    return ExitStatus::done;
}

int runRemove(const Arguments& arguments, Session& session) {
    auto store = UserStores::favorites();
    Stores::warnIfUnreadable(store);
    const Favorite favorite = require(store, session.url(arguments.rest()[0]));
    store.update([id = favorite.id](List& list) { Favorites::remove(list.records, id); });
    Stores::save(store);
    printIfWanted(arguments, session, favorite);
    return ExitStatus::done;
}

int runRename(const Arguments& arguments, Session& session) {
    const URL folder = session.url(arguments.rest()[0]);
    auto store = UserStores::favorites();
    Stores::warnIfUnreadable(store);
    store.update([id = require(store, folder).id, name = std::string(arguments.rest()[1])](
                     List& list) { Favorites::rename(list.records, id, name); });
    Stores::save(store);
    printIfWanted(arguments, session, require(store, folder));
    return ExitStatus::done;
}

constexpr Option listOptions[] = {CommonOptions::json};
constexpr Option addOptions[] = {
    {.name = "name", .letter = 'n', .value = "NAME", .help = "Calls it so instead of its own name"},
    CommonOptions::json,
};

constexpr Example addExamples[] = {
    {"tarn favorites add ~/Projects", "Puts a folder into the sidebar"},
    {"tarn favorites add /srv/shared --name Team", "Under another name"},
};
constexpr Example removeExamples[] = {
    {"tarn favorites remove ~/Projects", "Takes it out of the sidebar; the folder stays"}};
constexpr Example renameExamples[] = {
    {"tarn favorites rename ~/Projects Work", "Only the sidebar calls it so"},
    {"tarn favorites rename ~/Projects ''", "Back to the folder’s own name"},
};

constexpr Command addCommand = {
    .name = "favorites add",
    .section = Section::settings,
    .summary = "Adds a folder to the favourites",
    .arguments = "PATH",
    .description = "It comes last. One that is a favourite already stays where it is.",
    .completes = Completes::folders,
    .fewest = 1,
    .most = 1,
    .options = addOptions,
    .examples = addExamples,
    .run = runAdd,
};
constexpr Command removeCommand = {
    .name = "favorites remove",
    .section = Section::settings,
    .summary = "Takes a folder off the favourites",
    .arguments = "PATH",
    .completes = Completes::folders,
    .fewest = 1,
    .most = 1,
    .options = listOptions,
    .examples = removeExamples,
    .run = runRemove,
};
constexpr Command renameCommand = {
    .name = "favorites rename",
    .section = Section::settings,
    .summary = "Gives a favourite another name",
    .arguments = "PATH NAME",
    .description = "The folder keeps its own. An empty NAME shows that again.",
    .completes = Completes::folders,
    .fewest = 2,
    .most = 2,
    .options = listOptions,
    .examples = renameExamples,
    .run = runRename,
};

constexpr const Command* commands[] = {&addCommand, &removeCommand, &renameCommand};

constexpr Example examples[] = {
    {"tarn favorites", "The folders that the sidebar keeps at hand"},
    {"tarn favorites add ~/Projects", "Adds one"},
};

}  // namespace

extern const Command favoritesCommand;
const Command favoritesCommand = {
    .name = "favorites",
    .section = Section::settings,
    .summary = "Shows and changes the favourites of the sidebar",
    .description = "Alone it lists them in their order.",
    .options = listOptions,
    .examples = examples,
    .run = runList,
    .commands = commands,
};

}  // namespace tarn::cli
