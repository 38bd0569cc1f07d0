#include "Tarn/commands/CommandRegistry.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <unordered_map>

#include <QtCore/QCoreApplication>

#include "Tarn/commands/CommandActions.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/records/AppSettings.h"
#include "Tarn/model/records/CommandList.h"
#include "Tarn/model/records/Shortcuts.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/FileItem.h"

namespace tarn::CommandRegistry {
namespace {

QString translated(std::string_view text) {
    return QCoreApplication::translate("tarn::CommandRegistry", std::string(text).c_str());
}

/// What no window can do yet, and why.
std::string_view unavailable(std::string_view id) {
    static const std::unordered_map<std::string_view, const char*> reasons = {
        {"cleanup", QT_TRANSLATE_NOOP("tarn::CommandRegistry",
                                      "Finding what can be cleaned up is not built in yet.")},
        {"duplicates",
         QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Finding duplicates is not built in yet.")},
        {"smartRename", QT_TRANSLATE_NOOP("tarn::CommandRegistry",
                                          "Suggesting names for files is not built in yet.")},
        {"keepDownloaded",
         QT_TRANSLATE_NOOP("tarn::CommandRegistry",
                           "No cloud service on this computer tells which files are downloaded.")},
        {"removeDownload",
         QT_TRANSLATE_NOOP("tarn::CommandRegistry",
                           "No cloud service on this computer tells which files are downloaded.")},
        {"music.toggle",
         QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Playing music is not built in yet.")},
        {"music.next", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "No music is playing.")},
        {"music.previous", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "No music is playing.")},
    };
    const auto found = reasons.find(id);
    return found == reasons.end() ? std::string_view() : std::string_view(found->second);
}

std::vector<TarnCommand> makeCommands() {
    std::vector<TarnCommand> commands;
    for (const CommandRecord& record : CommandList::all()) {
        commands.push_back({record.id, record.title, record.symbol, record.group,
                            record.needsSelection, record.needsFolder,
                            CommandActions::action(record.id), unavailable(record.id)});
    }
    return commands;
}

template <class Fits>
bool selectionHas(const PaneModel& pane, const Fits& fits) {
    for (const QItemSelectionRange& range : pane.selection().selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            if (fits(pane.items().item(row))) return true;
    }
    return false;
}

bool isArchive(const FileItem& item) { return !item.isDirectory && item.isBrowsable(); }

bool isPicture(const FileItem& item) { return item.kind == FileKind::image; }

/// Beside what commands say of themselves; null for nothing.
const char* particularObstacle(std::string_view id, const WindowModel& window) {
    const PaneModel& pane = window.active();
    const bool isPlaceOnDisk = pane.location().isFolder() || pane.location().isArchive();
    constexpr std::string_view forFiles[] = {"rename", "duplicate",   "cut",   "compress",
                                             "trash",  "smartRename", "editor"};
    if (pane.showsMembers() &&
        std::find(std::begin(forFiles), std::end(forFiles), id) != std::end(forFiles))
        return QT_TRANSLATE_NOOP("tarn::CommandRegistry",
                                 "What lies in an archive can only be looked at and taken out.");
    if (id == "extract" && !pane.showsMembers() && !selectionHas(pane, isArchive))
        return QT_TRANSLATE_NOOP("tarn::CommandRegistry", "No archive is selected.");
    if (id == "copyText" && (pane.showsMembers() || !selectionHas(pane, isPicture)))
        return QT_TRANSLATE_NOOP("tarn::CommandRegistry", "No picture is selected.");
    if (id == "go.back" && !pane.canGoBack())
        return QT_TRANSLATE_NOOP("tarn::CommandRegistry", "There is nothing to go back to.");
    if (id == "go.forward" && !pane.canGoForward())
        return QT_TRANSLATE_NOOP("tarn::CommandRegistry", "There is nothing to go forward to.");
    if (id == "go.up" && !pane.canGoUp())
        return QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Nothing encloses this place.");
    if ((id == "reveal" || id == "terminal" || id == "editor" || id.starts_with("copyPath")) &&
        !isPlaceOnDisk && !pane.hasSelection())
        return QT_TRANSLATE_NOOP("tarn::CommandRegistry", "This place is not a folder.");
    if (id == "saveSearch" && !pane.query())
        return QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Nothing is being searched for.");
    if (id.starts_with("otherPane.")) {
        if (!window.isSplit())
            return QT_TRANSLATE_NOOP("tarn::CommandRegistry",
                                     "There is one pane only; Split View adds the other.");
        if (!CommandActions::targetPane(window))
            return QT_TRANSLATE_NOOP("tarn::CommandRegistry", "The other pane shows no folder.");
        if (id == "otherPane.move" && pane.showsMembers())
            return QT_TRANSLATE_NOOP(
                "tarn::CommandRegistry",
                "What lies in an archive can only be looked at and taken out.");
    }
    if (id == "tab.reopen" && window.app().closedTabs().empty())
        return QT_TRANSLATE_NOOP("tarn::CommandRegistry", "No tab was closed.");
    if ((id == "tab.next" || id == "tab.previous") &&
        (!window.group() || window.group()->count() < 2))
        return QT_TRANSLATE_NOOP("tarn::CommandRegistry", "There is no other tab.");
    return nullptr;
}

}  // namespace

const std::vector<TarnCommand>& all() {
    static const std::vector<TarnCommand> commands = makeCommands();
    return commands;
}

const TarnCommand* command(std::string_view id) {
    static const auto byID = [] {
        std::unordered_map<std::string_view, const TarnCommand*> found;
        for (const TarnCommand& each : all()) found.emplace(each.id, &each);
        return found;
    }();
    const auto found = byID.find(id);
    return found == byID.end() ? nullptr : found->second;
}

QString title(const TarnCommand& command) { return translated(command.title); }

QString groupTitle(std::string_view group) {
    // In the order of the enumeration of menus, for the translators.
    static constexpr const char* groups[] = {QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Go"),
                                             QT_TRANSLATE_NOOP("tarn::CommandRegistry", "View"),
                                             QT_TRANSLATE_NOOP("tarn::CommandRegistry", "File"),
                                             QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Window")};
    for (const char* each : groups)
        if (group == each) return translated(each);
    return {};
}

QString obstacle(const TarnCommand& command, const WindowModel* window) {
    if (!window)
        return translated(QT_TRANSLATE_NOOP("tarn::CommandRegistry", "No window is open."));
    if (!command.unavailable.empty()) return translated(command.unavailable);
    const PaneModel& pane = window->active();
    if (command.needsSelection && !pane.hasSelection())
        return translated(QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Nothing is selected."));
    // Results lie in many folders.
    const bool showsFolder = pane.location().isFolder() && !pane.showsResults();
    if (command.needsFolder && !showsFolder)
        return translated(
            QT_TRANSLATE_NOOP("tarn::CommandRegistry", "This works where a folder is shown."));
    if (const char* reason = particularObstacle(command.id, *window)) return translated(reason);
    return {};
}

bool isEnabled(const TarnCommand& command, const WindowModel* window) {
    return obstacle(command, window).isEmpty();
}

bool run(const TarnCommand& command, WindowModel& window) {
    if (!isEnabled(command, &window) || !command.run) return false;
    command.run(window);
    return true;
}

const std::map<std::string, Shortcut, std::less<>>& defaults() {
    static const auto shortcuts = Shortcuts::effective({});
    return shortcuts;
}

const std::map<std::string, Shortcut, std::less<>>& finderPreset() {
    return CommandList::finderPreset();
}

std::vector<std::string_view> desktopKeys(std::string_view id) {
    static const std::unordered_map<std::string_view, std::vector<std::string_view>> table = {
        {"home", {"Alt+Home"}},
        {"go.back", {"Alt+Left", "Back"}},
        {"go.forward", {"Alt+Right", "Forward"}},
        {"go.up", {"Alt+Up"}},
        {"hidden", {"Ctrl+H"}},
        {"inspector", {"Alt+Return"}},
        {"split", {"F3"}},
        {"refresh", {"F5"}},
        {"palette", {"Ctrl+Shift+P"}},
        {"open", {"Alt+Down"}},
        {"quicklook", {"Space"}},
        {"rename", {"F2"}},
        {"copy", {"Ctrl+C"}},
        {"cut", {"Ctrl+X"}},
        {"paste", {"Ctrl+V"}},
        {"terminal", {"Shift+F4"}},
        {"trash", {"Del"}},
        {"selectAll", {"Ctrl+A"}},
        {"tab.new", {"Ctrl+T"}},
        {"tab.next", {"Ctrl+PgDown", "Ctrl+Tab"}},
        {"tab.previous", {"Ctrl+PgUp", "Ctrl+Shift+Tab"}},
    };
    const auto found = table.find(id);
    return found == table.end() ? std::vector<std::string_view>() : found->second;
}

std::optional<Shortcut> shortcut(std::string_view id, const AppSettings& settings) {
    return Shortcuts::effective(settings.shortcutOverrides, id);
}

std::map<std::string, std::vector<std::string>, std::less<>> keys(const AppSettings& settings) {
    std::map<std::string, std::vector<std::string>, std::less<>> all;
    std::set<std::string, std::less<>> taken;
    for (const auto& [id, shortcut] : Shortcuts::effective(settings.shortcutOverrides)) {
        all[id] = portableTexts(shortcut);
        taken.insert(all[id].begin(), all[id].end());
    }
    for (const TarnCommand& command : CommandRegistry::all()) {
        for (const std::string_view key : desktopKeys(command.id))
            if (!taken.contains(key)) all[std::string(command.id)].emplace_back(key);
    }
    return all;
}

std::string portableText(const Shortcut& shortcut) {
    const auto texts = portableTexts(shortcut);
    return texts.empty() ? std::string() : texts.front();
}

std::vector<std::string> portableTexts(const Shortcut& shortcut) {
    if (shortcut.key.empty()) return {};
    std::string held;
    if (shortcut.command) held += "Ctrl+";
    if (shortcut.control) held += "Meta+";
    if (shortcut.option) held += "Alt+";
    if (shortcut.shift) held += "Shift+";
    if (shortcut.key == "delete") return {held + "Del", held + "Backspace"};
    if (Shortcuts::isNamedKey(shortcut.key)) return {held + Text::withFirstRaised(shortcut.key)};
    const QString raised = QString::fromStdString(shortcut.key).toUpper();
    // "ß" has no capital of one letter.
    return {held + (raised.size() == 1 ? raised.toStdString() : shortcut.key)};
}

}  // namespace tarn::CommandRegistry
