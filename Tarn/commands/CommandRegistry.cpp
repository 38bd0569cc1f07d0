#include "Tarn/commands/CommandRegistry.h"

#include <algorithm>
#include <memory>

#include <QtCore/QMimeData>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/model/records/AppSettings.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/ops/Templates.h"

namespace tarn {
namespace {

std::function<void(WindowModel&)> going(URL (*folder)()) {
    return [folder](WindowModel& window) { window.active().navigate(Location::folder(folder())); };
}

using Action = std::function<void(WindowModel&)>;

Action operating(void (WindowOperations::*operation)()) {
    return [operation](WindowModel& window) { (window.operations().*operation)(); };
}

Action editing(void (WindowEdits::*edit)()) {
    return [edit](WindowModel& window) { (window.edits().*edit)(); };
}

Action copyingPaths(CopyPathFormat format) {
    return [format](WindowModel& window) {
        const PaneModel& pane = window.active();
        std::vector<std::string> paths;
        for (const FileItem& item : pane.selectedItems())
            paths.push_back(Paths::format(item.url, format));
        if (paths.empty() && (pane.location().isFolder() || pane.location().isArchive()))
            paths.push_back(Paths::format(pane.location().url, format));
        if (paths.empty()) return;
        auto data = std::make_unique<QMimeData>();
        data->setText(QString::fromStdString(Text::join(paths, "\n")));
        window.app().clipboard().set(std::move(data));
    };
}

void selectAll(WindowModel& window) {
    PaneModel& pane = window.active();
    if (pane.items().isEmpty()) return;
    pane.selection().select(
        QItemSelection(pane.items().index(0, 0),
                       pane.items().index(pane.items().count() - 1, paneColumnCount - 1)),
        QItemSelectionModel::ClearAndSelect);
}

void copy(WindowModel& window) {
    if (window.active().showsMembers())
        window.edits().copyMembers();
    else
        window.operations().copySelection();
}

bool hasArchive(const PaneModel& pane) {
    for (const QItemSelectionRange& range : pane.selection().selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            const FileItem& item = pane.items().item(row);
            if (!item.isDirectory && item.isBrowsable()) return true;
        }
    }
    return false;
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
        {"transfers", "Show Transfers", "arrow.up.arrow.down.circle", "View", false, false,
         [](WindowModel& window) { window.setShowsTransfers(!window.showsTransfers()); }},
        {"history", "Undo History", "clock.arrow.circlepath", "View", false, false,
         [](WindowModel& window) { window.setShowsHistory(!window.showsHistory()); }},
        {"search", "Search", "magnifyingglass", "View", false, false,
         [](WindowModel& window) { window.focusSearch(); }},
        {"open", "Open", "arrow.up.forward.app", "File", true, false,
         [](WindowModel& window) { window.openSelection(); }},
        {"newFolder", "New Folder", "folder.badge.plus", "File", false, true,
         editing(&WindowEdits::newFolder)},
        {"newFolderSelection", "New Folder with Selection", "folder.badge.plus", "File", true, true,
         editing(&WindowEdits::newFolderWithSelection)},
        {"newFile", "New Text File", "doc.badge.plus", "File", false, true,
         [](WindowModel& window) { window.edits().newFile(Templates::builtIn().front()); }},
        {"rename", "Rename", "pencil", "File", true, false, editing(&WindowEdits::renameSelection)},
        {"duplicate", "Duplicate", "plus.square.on.square", "File", true, false,
         operating(&WindowOperations::duplicateSelection)},
        {"copy", "Copy", "doc.on.doc", "File", true, false, copy},
        {"cut", "Cut", "scissors", "File", true, false, operating(&WindowOperations::cutSelection)},
        {"paste", "Paste", "doc.on.clipboard", "File", false, true,
         operating(&WindowOperations::paste)},
        {"moveHere", "Move Item Here", "arrow.right.doc.on.clipboard", "File", false, true,
         operating(&WindowOperations::pasteMoving)},
        {"copyPath", "Copy Path", "link", "File", false, false, copyingPaths(CopyPathFormat::full)},
        {"copyPath.tilde", "Copy Path with ~", "link", "File", false, false,
         copyingPaths(CopyPathFormat::tilde)},
        {"copyPath.quoted", "Copy Path for Terminal", "terminal", "File", false, false,
         copyingPaths(CopyPathFormat::quoted)},
        {"copyPath.url", "Copy File URL", "link", "File", false, false,
         copyingPaths(CopyPathFormat::fileURL)},
        {"compress", "Compress", "archivebox", "File", true, false,
         editing(&WindowEdits::compressSelection)},
        {"extract", "Extract Archive", "shippingbox.and.arrow.backward", "File", true, false,
         editing(&WindowEdits::extractSelection)},
        {"trash", "Move to Trash", "trash", "File", true, false,
         operating(&WindowOperations::trashSelection)},
        {"selectAll", "Select All", "checkmark.circle", "File", false, false, selectAll},
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
    // Results lie in many folders.
    const bool showsFolder = pane.location().isFolder() && !pane.showsResults();
    if (command.needsFolder && !showsFolder) return false;
    // What lies in an archive can be looked at and taken out, and nothing else.
    constexpr std::string_view forFiles[] = {"rename", "duplicate", "cut", "compress", "trash"};
    if (pane.showsMembers() &&
        std::find(std::begin(forFiles), std::end(forFiles), command.id) != std::end(forFiles))
        return false;
    if (command.id == "extract") return pane.showsMembers() || hasArchive(pane);
    if (command.id == "go.back") return pane.canGoBack();
    if (command.id == "go.forward") return pane.canGoForward();
    if (command.id == "go.up") return pane.canGoUp();
    return true;
}

const std::map<std::string, Shortcut, std::less<>>& CommandRegistry::defaults() {
    static const std::map<std::string, Shortcut, std::less<>> shortcuts = {
        {"home", keys("h", true)},
        {"go.back", keys("[")},
        {"go.forward", keys("]")},
        {"go.up", keys("up")},
        {"editPath", keys("l")},
        {"desktop", keys("e", true)},
        {"documents", keys("o", true)},
        {"downloads", keys("l", false, true)},
        {"view.grid", keys("1")},
        {"view.list", keys("2")},
        {"hidden", keys(".", true)},
        {"refresh", keys("r")},
        {"search", keys("f")},
        {"open", keys("down")},
        {"transfers", keys("t", false, true)},
        {"history", keys("z", false, true)},
        {"newFolder", keys("n", true)},
        {"newFile", keys("n", false, true)},
        {"duplicate", keys("d")},
        {"moveHere", keys("v", false, true)},
        {"copyPath", keys("c", false, true)},
        {"trash", keys("delete")},
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
    if (id == "rename") return {"F2"};
    if (id == "copy") return {"Ctrl+C"};
    if (id == "cut") return {"Ctrl+X"};
    if (id == "paste") return {"Ctrl+V"};
    if (id == "trash") return {"Delete"};
    if (id == "selectAll") return {"Ctrl+A"};
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
