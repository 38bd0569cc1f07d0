#include "Tarn/model/records/CommandList.h"

#include <unordered_map>
#include <utility>
#include <vector>

// The mark by which the translators' tools find a text; this file is free of Qt.
#define QT_TRANSLATE_NOOP(context, text) text

namespace tarn {
namespace {

/// Where a command can be used.
enum Needs { anywhere, selection, folder, selectionInFolder };

const Shortcut none;

Shortcut command(const char* key) { return {key, true, false, false, false}; }
Shortcut commandShift(const char* key) { return {key, true, true, false, false}; }
Shortcut commandOption(const char* key) { return {key, true, false, true, false}; }
Shortcut commandShiftOption(const char* key) { return {key, true, true, true, false}; }

CommandRecord make(std::string_view id, std::string_view title, std::string_view group,
                   std::string_view symbol, Needs needs, Shortcut shortcut) {
    return {id,
            title,
            group,
            symbol,
            needs == selection || needs == selectionInFolder,
            needs == folder || needs == selectionInFolder,
            std::move(shortcut)};
}

const std::vector<CommandRecord>& records() {
    static const std::vector<CommandRecord> list = {
        make("home", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Go to Home"), "Go", "house",
             anywhere, commandShift("h")),
        make("go.back", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Back"), "Go", "chevron.left",
             anywhere, command("[")),
        make("go.forward", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Forward"), "Go",
             "chevron.right", anywhere, command("]")),
        make("go.up", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Enclosing Folder"), "Go",
             "arrow.up", anywhere, command("up")),
        make("editPath", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Edit Path"), "Go",
             "character.cursor.ibeam", anywhere, command("l")),
        make("goToFolder", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Go to Folder…"), "Go",
             "arrow.right.circle", anywhere, commandShift("g")),
        make("desktop", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Go to Desktop"), "Go",
             "menubar.dock.rectangle", anywhere, commandShift("e")),
        make("documents", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Go to Documents"), "Go",
             "doc", anywhere, commandShift("o")),
        make("downloads", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Go to Downloads"), "Go",
             "arrow.down.circle", anywhere, commandOption("l")),
        make("applications", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Go to Applications"), "Go",
             "square.grid.3x3", anywhere, commandShift("a")),
        make("cleanup", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Cleanup"), "Go", "sparkles",
             anywhere, commandShift("k")),
        make("duplicates", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Duplicates"), "Go",
             "doc.on.doc", anywhere, commandShift("d")),
        make("sources", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Downloaded From"), "Go",
             "arrow.down.circle", anywhere, commandShift("j")),
        make("tags", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Tags"), "Go", "tag", anywhere,
             none),
        make("connect", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Connect to Server…"), "Go",
             "server.rack", anywhere, none),
        make("view.grid", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "View as Grid"), "View",
             "square.grid.2x2", anywhere, command("1")),
        make("view.list", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "View as List"), "View",
             "list.bullet", anywhere, command("2")),
        make("inspector", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Show or Hide Inspector"),
             "View", "sidebar.right", anywhere, command("i")),
        make("hidden", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Show or Hide Hidden Files"),
             "View", "eye", anywhere, commandShift(".")),
        make("split", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Split View"), "View",
             "rectangle.split.2x1", anywhere, command("\\")),
        make("refresh", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Refresh"), "View",
             "arrow.clockwise", anywhere, command("r")),
        make("transfers", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Show Transfers"), "View",
             "arrow.up.arrow.down.circle", anywhere, commandOption("t")),
        make("history", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Undo History"), "View",
             "clock.arrow.circlepath", anywhere, commandOption("z")),
        make("search", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Search"), "View",
             "magnifyingglass", anywhere, command("f")),
        make("palette", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Command Palette"), "View",
             "command", anywhere, command("k")),
        make("open", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Open"), "File",
             "arrow.up.forward.app", selection, command("down")),
        make("quicklook", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Quick Look"), "File", "eye",
             selection, command("y")),
        make("reveal", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Show in Finder"), "File",
             "macwindow", anywhere, none),
        make("newFolder", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "New Folder"), "File",
             "folder.badge.plus", folder, commandShift("n")),
        make("newFolderSelection",
             QT_TRANSLATE_NOOP("tarn::CommandRegistry", "New Folder with Selection"), "File",
             "folder.badge.plus", selectionInFolder, none),
        make("newFile", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "New Text File"), "File",
             "doc.badge.plus", folder, commandOption("n")),
        make("rename", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Rename"), "File", "pencil",
             selection, none),
        make("smartRename", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Smart Rename"), "File",
             "sparkles", selection, none),
        make("duplicate", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Duplicate"), "File",
             "plus.square.on.square", selection, command("d")),
        make("copy", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Copy"), "File", "doc.on.doc",
             selection, none),
        make("cut", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Cut"), "File", "scissors",
             selection, none),
        make("paste", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Paste"), "File",
             "doc.on.clipboard", folder, none),
        make("moveHere", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Move Item Here"), "File",
             "arrow.right.doc.on.clipboard", folder, commandOption("v")),
        make("copyPath", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Copy Path"), "File", "link",
             anywhere, commandOption("c")),
        make("copyPath.tilde", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Copy Path with ~"),
             "File", "link", anywhere, none),
        make("copyPath.quoted",
             QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Copy Path for Terminal"), "File",
             "terminal", anywhere, none),
        make("copyPath.url", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Copy File URL"), "File",
             "link", anywhere, none),
        make("compress", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Compress"), "File",
             "archivebox", selection, none),
        make("extract", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Extract Archive"), "File",
             "shippingbox.and.arrow.backward", selection, none),
        make("terminal", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Open in Terminal"), "File",
             "terminal", anywhere, none),
        make("editor", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Open in Editor"), "File",
             "chevron.left.forwardslash.chevron.right", anywhere, none),
        make("trash", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Move to Trash"), "File", "trash",
             selection, command("delete")),
        make("copyText", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Copy Text from Images"),
             "File", "text.viewfinder", selection, commandShift("c")),
        make("otherPane.copy", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Copy to Other Pane"),
             "File", "rectangle.righthalf.inset.filled.arrow.right", selection,
             commandShiftOption("c")),
        make("otherPane.move", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Move to Other Pane"),
             "File", "arrow.right.square", selection, commandShiftOption("m")),
        make("selectAll", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Select All"), "File",
             "checkmark.circle", anywhere, none),
        make("keepDownloaded", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Keep Downloaded"),
             "File", "icloud.and.arrow.down", selection, none),
        make("removeDownload", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Remove Download"),
             "File", "icloud", selection, none),
        make("saveSearch",
             QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Save Search as Smart Folder"), "File",
             "gearshape.2", anywhere, none),
        make("workspace.save", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Save Workspace…"),
             "Window", "rectangle.stack.badge.plus", anywhere, none),
        make("tab.new", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "New Tab"), "Window",
             "plus.square.on.square", anywhere, none),
        make("tab.reopen", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Reopen Closed Tab"),
             "Window", "arrow.uturn.backward.square", anywhere, commandShift("t")),
        make("tab.next", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Show Next Tab"), "Window",
             "chevron.right.square", anywhere, commandShift("]")),
        make("tab.previous", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Show Previous Tab"),
             "Window", "chevron.left.square", anywhere, commandShift("[")),
        make("music.toggle", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Play or Pause Music"),
             "Window", "playpause", anywhere, commandOption("p")),
        make("music.next", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Next Song"), "Window",
             "forward.fill", anywhere, command("right")),
        make("music.previous", QT_TRANSLATE_NOOP("tarn::CommandRegistry", "Previous Song"),
             "Window", "backward.fill", anywhere, command("left")),
    };
    return list;
}

}  // namespace

std::span<const CommandRecord> CommandList::all() { return records(); }

const CommandRecord* CommandList::find(std::string_view id) {
    static const auto byID = [] {
        std::unordered_map<std::string_view, const CommandRecord*> found;
        for (const CommandRecord& record : records()) found.emplace(record.id, &record);
        return found;
    }();
    const auto found = byID.find(id);
    return found == byID.end() ? nullptr : found->second;
}

const std::map<std::string, Shortcut, std::less<>>& CommandList::finderPreset() {
    static const std::map<std::string, Shortcut, std::less<>> preset = {
        {"inspector", command("i")}, {"quicklook", command("y")},
        {"go.up", command("up")},    {"goToFolder", commandShift("g")},
        {"editPath", command("l")},  {"desktop", commandShift("d")},
        {"duplicates", none},        {"search", command("f")},
        {"palette", none},
    };
    return preset;
}

}  // namespace tarn
