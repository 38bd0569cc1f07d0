#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "Tarn/model/records/SettingsKeys.h"
#include "Tarn/model/records/UserStores.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"
#include "cli/Arguments.h"
#include "cli/Columns.h"
#include "cli/Command.h"
#include "cli/Session.h"
#include "cli/Stores.h"
#include "cli/UsageError.h"

namespace tarn::cli {
namespace {

std::string requireKey(std::string_view key) {
    if (SettingsKeys::exists(key)) return std::string(key);
    std::string sentence = "There is no setting " + Text::quoted(Terminal::escaped(key)) + ".";
    const std::vector<std::string> keys = AppSettings::keys();
    const std::vector<std::string_view> candidates(keys.begin(), keys.end());
    if (const auto near = nearest(key, candidates))
        sentence += " Did you mean " + Text::quoted(*near) + "?";
    throw UsageError(sentence);
}

/// A word that is no JSON stands for itself.
JSON requireValue(std::string_view word) {
    if (!Text::isValidUTF8(word)) throw UsageError("A setting is text in UTF-8.");
    if (auto json = JSONText::parse(word)) return *std::move(json);
    return std::string(word);
}

/// A text stands bare.
std::string shown(const JSON& value) {
    return value.is_string() ? value.get<std::string>() : JSONText::compact(value);
}

void print(Session& session, const JSON& value, bool asJSON) {
    session.out() << (asJSON ? JSONText::pretty(value) : shown(value)) << '\n';
}

int runList(const Arguments& arguments, Session& session) {
    const auto store = UserStores::settings();
    Stores::warnIfUnreadable(store);
    const AppSettings settings = store.value();
    if (arguments.has("json")) {
        session.out() << JSONText::pretty(JSON(settings)) << '\n';
        return ExitStatus::done;
    }
    std::vector<std::vector<std::string>> lines;
    for (const std::string& key : AppSettings::keys())
        if (const auto value = SettingsKeys::value(settings, key))
            lines.push_back({key, shown(*value)});
    appendColumns(session.out().buffer(), lines);
    return ExitStatus::done;
}

int runGet(const Arguments& arguments, Session& session) {
    const std::string key = requireKey(arguments.rest()[0]);
    const auto store = UserStores::settings();
    Stores::warnIfUnreadable(store);
    const auto value = SettingsKeys::value(store.value(), key);
    if (!value) return ExitStatus::nothingFound;
    print(session, *value, arguments.has("json"));
    return ExitStatus::done;
}

int runSet(const Arguments& arguments, Session& session) {
    const std::string key = requireKey(arguments.rest()[0]);
    const JSON value = requireValue(arguments.rest()[1]);
    auto store = UserStores::settings();
    AppSettings changed = store.value();
    if (!SettingsKeys::set(changed, key, value)) {
        throw UsageError("The setting " + Text::quoted(key) + " takes " + SettingsKeys::form(key) +
                         ", not " + Text::quoted(Terminal::escaped(arguments.rest()[1])) + ".");
    }
    Stores::warnIfUnreadable(store);
    store.update([key, value](AppSettings& settings) { SettingsKeys::set(settings, key, value); });
    Stores::save(store);
    if (arguments.has("json"))
        print(session, SettingsKeys::value(store.value(), key).value_or(JSON()), true);
    return ExitStatus::done;
}

int runReset(const Arguments& arguments, Session& session) {
    const bool everything = arguments.has("all");
    if (everything != arguments.rest().empty()) {
        throw UsageError(everything ? "“--all” and a key exclude each other."
                                    : "Something is missing after “tarn settings reset”: a key, "
                                      "or “--all”.");
    }
    const std::string key = everything ? std::string() : requireKey(arguments.rest()[0]);
    auto store = UserStores::settings();
    Stores::warnIfUnreadable(store);
    store.update([key, everything](AppSettings& settings) {
        if (everything)
            settings = AppSettings();
        else
            SettingsKeys::reset(settings, key);
    });
    Stores::save(store);
    if (arguments.has("json")) {
        const AppSettings now = store.value();
        print(session, everything ? JSON(now) : SettingsKeys::value(now, key).value_or(JSON()),
              true);
    }
    return ExitStatus::done;
}

constexpr Option listOptions[] = {CommonOptions::json};
constexpr Option resetOptions[] = {
    {.name = "all", .help = "Resets every setting"},
    CommonOptions::json,
};

constexpr Example getExamples[] = {
    {"tarn settings get defaultView", "grid or list"},
    {"tarn settings get --json cleanup", "All members of a group"},
};
constexpr Example setExamples[] = {
    {"tarn settings set defaultView list", "Folders open as lists"},
    {"tarn settings set cleanup.installerDays 14", "A member of a group"},
    {"tarn settings set indexFolders '[\"~/Documents\"]'", "A list"},
};
constexpr Example resetExamples[] = {{"tarn settings reset defaultView", "Back to the default"}};

constexpr Command getCommand = {
    .name = "settings get",
    .section = Section::settings,
    .summary = "Shows one setting",
    .arguments = "KEY",
    .description =
        "A text stands bare, anything else is JSON. With the exit status 1 the setting "
        "has no value.",
    .fewest = 1,
    .most = 1,
    .options = listOptions,
    .examples = getExamples,
    .run = runGet,
};
constexpr Command setCommand = {
    .name = "settings set",
    .section = Section::settings,
    .summary = "Changes one setting",
    .arguments = "KEY VALUE",
    .description =
        "VALUE is JSON or a bare word; “null” takes an optional value away. An open "
        "window follows at once.",
    .fewest = 2,
    .most = 2,
    .options = listOptions,
    .examples = setExamples,
    .run = runSet,
};
constexpr Command resetCommand = {
    .name = "settings reset",
    .section = Section::settings,
    .summary = "Takes a setting back to its default",
    .arguments = "[KEY]",
    .most = 1,
    .options = resetOptions,
    .examples = resetExamples,
    .run = runReset,
};

constexpr const Command* commands[] = {&getCommand, &setCommand, &resetCommand};

constexpr Example examples[] = {
    {"tarn settings", "Every setting with its value"},
    {"tarn settings set foldersFirst false", "Changes one"},
    {"tarn settings reset --all", "Everything back to the defaults"},
};

}  // namespace

extern const Command settingsCommand;
const Command settingsCommand = {
    .name = "settings",
    .section = Section::settings,
    .summary = "Shows and changes the settings",
    .description = "Alone it lists them all. Keys of other versions of Tarn are kept in the file.",
    .options = listOptions,
    .examples = examples,
    .run = runList,
    .commands = commands,
};

}  // namespace tarn::cli
