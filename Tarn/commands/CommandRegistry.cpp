#include "Tarn/commands/CommandRegistry.h"

#include <algorithm>

#include "Tarn/model/WindowModel.h"
#include "Tarn/model/records/AppSettings.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

std::function<void(WindowModel&)> going(URL (*folder)()) {
    return [folder](WindowModel& window) { window.active().navigate(Location::folder(folder())); };
}

std::vector<TarnCommand> makeCommands() {
    return {
        {"home", "Go to Home", "house", "Go", false, false, going(Paths::home)},
        {"go.back", "Back", "chevron.left", "Go", false, false,
         [](WindowModel& window) { window.active().goBack(); }},
        {"go.forward", "Forward", "chevron.right", "Go", false, false,
         [](WindowModel& window) { window.active().goForward(); }},
        {"go.up", "Enclosing Folder", "arrow.up", "Go", false, false,
         [](WindowModel& window) { window.active().goUp(); }},
        {"editPath", "Edit Path", "character.cursor.ibeam", "Go", false, false,
         [](WindowModel& window) { window.editPath(); }},
        {"desktop", "Go to Desktop", "menubar.dock.rectangle", "Go", false, false,
         going(Paths::desktop)},
        {"documents", "Go to Documents", "doc", "Go", false, false, going(Paths::documents)},
        {"downloads", "Go to Downloads", "arrow.down.circle", "Go", false, false,
         going(Paths::downloads)},
        {"view.grid", "View as Grid", "square.grid.2x2", "View", false, false,
         [](WindowModel& window) { window.active().setViewMode(ViewMode::grid); }},
        {"view.list", "View as List", "list.bullet", "View", false, false,
         [](WindowModel& window) { window.active().setViewMode(ViewMode::list); }},
        {"hidden", "Show or Hide Hidden Files", "eye", "View", false, false,
         [](WindowModel& window) { window.setShowHidden(!window.showHidden()); }},
        {"refresh", "Refresh", "arrow.clockwise", "View", false, false,
         [](WindowModel& window) { window.active().reload(); }},
        {"search", "Search", "magnifyingglass", "View", false, false,
         [](WindowModel& window) { window.focusSearch(); }},
        {"open", "Open", "arrow.up.forward.app", "File", true, false,
         [](WindowModel& window) { window.openSelection(); }},
    };
}

Shortcut keys(std::string key, bool shift = false, bool option = false) {
    return {std::move(key), true, shift, option, false};
}

}  // namespace

const std::vector<TarnCommand>& CommandRegistry::all() {
    static const std::vector<TarnCommand> commands = makeCommands();
    return commands;
}

const TarnCommand* CommandRegistry::command(std::string_view id) {
    const auto found = std::find_if(all().begin(), all().end(),
                                    [id](const TarnCommand& command) { return command.id == id; });
    return found == all().end() ? nullptr : &*found;
}

bool CommandRegistry::isEnabled(const TarnCommand& command, const WindowModel* window) {
    if (!window) return false;
    const PaneModel& pane = window->active();
    if (command.needsSelection && !pane.hasSelection()) return false;
    if (command.needsFolder && !pane.location().isFolder()) return false;
    if (command.id == "go.back") return pane.canGoBack();
    if (command.id == "go.forward") return pane.canGoForward();
    if (command.id == "go.up") return pane.canGoUp();
    return true;
}

const std::map<std::string, Shortcut, std::less<>>& CommandRegistry::defaults() {
    static const std::map<std::string, Shortcut, std::less<>> shortcuts = {
        {"home", keys("h", true)},      {"go.back", keys("[")},
        {"go.forward", keys("]")},      {"go.up", keys("up")},
        {"editPath", keys("l")},        {"desktop", keys("e", true)},
        {"documents", keys("o", true)}, {"downloads", keys("l", false, true)},
        {"view.grid", keys("1")},       {"view.list", keys("2")},
        {"hidden", keys(".", true)},    {"refresh", keys("r")},
        {"search", keys("f")},          {"open", keys("down")},
    };
    return shortcuts;
}

std::vector<std::string_view> CommandRegistry::desktopKeys(std::string_view id) {
    if (id == "home") return {"Alt+Home"};
    if (id == "go.back") return {"Alt+Left", "Back"};
    if (id == "go.forward") return {"Alt+Right", "Forward"};
    if (id == "go.up") return {"Alt+Up"};
    if (id == "hidden") return {"Ctrl+H"};
    if (id == "refresh") return {"F5"};
    if (id == "open") return {"Alt+Down"};
    return {};
}

std::optional<Shortcut> CommandRegistry::shortcut(std::string_view id,
                                                  const AppSettings& settings) {
    if (const auto found = settings.shortcutOverrides.find(std::string(id));
        found != settings.shortcutOverrides.end()) {
        if (found->second.key.empty()) return std::nullopt;
        return found->second;
    }
    const auto found = defaults().find(id);
    if (found == defaults().end()) return std::nullopt;
    return found->second;
}

std::string CommandRegistry::portableText(const Shortcut& shortcut) {
    if (shortcut.key.empty()) return {};
    std::string text;
    if (shortcut.command) text += "Ctrl+";
    if (shortcut.control) text += "Meta+";
    if (shortcut.option) text += "Alt+";
    if (shortcut.shift) text += "Shift+";
    std::string key = shortcut.key;
    key.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(key.front())));
    return text + key;
}

}  // namespace tarn
