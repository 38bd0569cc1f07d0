#include "Tarn/commands/CommandActions.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <QtCore/QCoreApplication>
#include <QtCore/QMimeData>
#include <QtCore/QPointer>

#include "Tarn/commands/PictureTexts.h"
#include "Tarn/commands/Programs.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/SavedSearch.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/ops/Templates.h"

namespace tarn::CommandActions {
namespace {

using Action = std::function<void(WindowModel&)>;

// ---- Kinds of actions

Action going(URL (*folder)()) {
    return [folder](WindowModel& window) { window.active().navigate(Location::folder(folder())); };
}

Action going(Location (*place)()) {
    return [place](WindowModel& window) { window.active().navigate(place()); };
}

Action doing(void (PaneModel::*move)()) {
    return [move](WindowModel& window) { (window.active().*move)(); };
}

Action operating(void (WindowOperations::*operation)()) {
    return [operation](WindowModel& window) { (window.operations().*operation)(); };
}

Action editing(void (WindowEdits::*edit)()) {
    return [edit](WindowModel& window) { (window.edits().*edit)(); };
}

Action toggling(bool (WindowModel::*isOn)() const, void (WindowModel::*set)(bool)) {
    return [isOn, set](WindowModel& window) { (window.*set)(!(window.*isOn)()); };
}

Action viewing(ViewMode mode) {
    return [mode](WindowModel& window) { window.active().setViewMode(mode); };
}

Action asking(WindowSheet::Which which) {
    return [which](WindowModel& window) {
        WindowSheet sheet;
        sheet.which = which;
        window.showSheet(std::move(sheet));
    };
}

// ---- What commands are about

/// The files that are selected, or the place that is shown when there are none; of an archive, the
/// archive.
std::vector<URL> subjects(const PaneModel& pane) {
    std::vector<URL> urls;
    if (!pane.showsMembers())
        for (const FileItem& item : pane.selectedItems()) urls.push_back(item.url);
    if (urls.empty() && (pane.location().isFolder() || pane.location().isArchive()))
        urls.push_back(pane.location().url);
    return urls;
}

/// A folder that is selected alone, the one that is shown, or the one that holds what is selected.
URL folderAtHand(const PaneModel& pane) {
    if (pane.location().isArchive()) return pane.location().url.parent();
    const std::vector<FileItem> selected = pane.selectedItems();
    if (selected.size() == 1 && selected.front().isDirectory) return selected.front().url;
    if (pane.location().isFolder() && !pane.showsResults()) return pane.location().url;
    if (!selected.empty()) return selected.front().url.parent();
    return pane.location().isFolder() ? pane.location().url : Paths::home();
}

void complain(WindowModel& window, const QString& sentence) {
    Toast toast;
    toast.message = sentence;
    toast.symbol = "exclamationmark.triangle";
    toast.isError = true;
    window.showToast(std::move(toast));
}

// ---- Single actions

Action copyingPaths(CopyPathFormat format) {
    return [format](WindowModel& window) { copyPaths(window, format); };
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

/// Finds the program off the main thread and starts it; `sentence` when there is none.
void startProgram(WindowModel& window, std::function<std::optional<Programs::Call>()> find,
                  const QString& sentence) {
    window.app().pool().run([find = std::move(find), sentence, self = QPointer(&window)] {
        const auto call = find();
        if (call && Programs::start(*call)) return;
        MainThread::post(self, [sentence](WindowModel& target) { complain(target, sentence); });
    });
}

void openTerminal(WindowModel& window) {
    startProgram(
        window,
        [setting = window.app().settings().terminalApp, folder = folderAtHand(window.active())] {
            return Programs::terminal(setting, folder);
        },
        QCoreApplication::translate(
            "tarn::CommandRegistry",
            "No terminal could be opened. Name the one that you use in the settings."));
}

void openEditor(WindowModel& window) {
    const AppSettings& settings = window.app().settings();
    startProgram(
        window,
        [editor = settings.editorApp, terminal = settings.terminalApp,
         files = subjects(window.active()), folder = folderAtHand(window.active())] {
            return Programs::editor(editor, terminal, files, folder);
        },
        QCoreApplication::translate(
            "tarn::CommandRegistry",
            "No editor could be opened. Name the one that you use in the settings."));
}

void saveSearch(WindowModel& window) {
    const SavedSearch saved = SavedSearch::of(window.active());
    WindowSheet sheet;
    sheet.which = WindowSheet::Which::newSmartFolder;
    sheet.text = saved.text;
    sheet.scope = saved.scope;
    window.showSheet(std::move(sheet));
}

Action sending(void (WindowOperations::*send)(std::vector<URL>, const URL&)) {
    return [send](WindowModel& window) {
        const PaneModel* target = targetPane(window);
        if (!target) return;
        const URL folder = target->location().url;
        if (!window.active().showsMembers())
            return (window.operations().*send)(subjects(window.active()), folder);
        // What lies in an archive is unpacked first; it can only be copied.
        window.edits().takeMembers(
            window.active().selectedMembers(), false,
            [folder, self = QPointer(&window)](const std::vector<URL>& taken) {
                if (self) self->operations().copyTo(taken, folder);
            });
    };
}

void newTab(WindowModel& window) {
    if (!window.group()) return;
    // A tab begins where its neighbour is, with one pane.
    WindowSnapshot snapshot;
    snapshot.panes = {{window.active().location(), std::nullopt}};
    snapshot.showSidebar = window.sidebarVisible();
    snapshot.showInspector = window.showsInspector();
    window.group()->open(snapshot);
}

void reopenTab(WindowModel& window) {
    if (!window.group()) return;
    if (const auto snapshot = window.app().takeClosedTab()) window.group()->open(*snapshot);
}

Action inGroup(void (TabGroup::*show)()) {
    return [show](WindowModel& window) {
        if (window.group()) (window.group()->*show)();
    };
}

std::unordered_map<std::string_view, Action> makeActions() {
    using Which = WindowSheet::Which;
    return {
        {"home", going(Paths::home)},
        {"go.back", doing(&PaneModel::goBack)},
        {"go.forward", doing(&PaneModel::goForward)},
        {"go.up", doing(&PaneModel::goUp)},
        {"editPath", [](WindowModel& window) { window.editPath(); }},
        {"goToFolder", asking(Which::goToFolder)},
        {"desktop", going(Paths::desktop)},
        {"documents", going(Paths::documents)},
        {"downloads", going(Paths::downloads)},
        {"applications", going(Paths::applications)},
        {"sources", going(Location::sources)},
        {"tags", going(Location::tags)},
        {"connect", asking(Which::connectServer)},
        {"view.grid", viewing(ViewMode::grid)},
        {"view.list", viewing(ViewMode::list)},
        {"inspector", toggling(&WindowModel::showsInspector, &WindowModel::setShowsInspector)},
        {"hidden", toggling(&WindowModel::showHidden, &WindowModel::setShowHidden)},
        {"split", toggling(&WindowModel::isSplit, &WindowModel::setSplit)},
        {"refresh", [](WindowModel& window) { window.active().reload(true); }},
        {"transfers", toggling(&WindowModel::showsTransfers, &WindowModel::setShowsTransfers)},
        {"history", toggling(&WindowModel::showsHistory, &WindowModel::setShowsHistory)},
        {"search", [](WindowModel& window) { window.focusSearch(); }},
        {"palette", toggling(&WindowModel::showsPalette, &WindowModel::setShowsPalette)},
        {"open", [](WindowModel& window) { window.openSelection(); }},
        {"quicklook", toggling(&WindowModel::showsQuickLook, &WindowModel::setShowsQuickLook)},
        {"reveal",
         [](WindowModel& window) { emit window.revealRequested(subjects(window.active())); }},
        {"newFolder", editing(&WindowEdits::newFolder)},
        {"newFolderSelection", editing(&WindowEdits::newFolderWithSelection)},
        {"newFile",
         [](WindowModel& window) { window.edits().newFile(Templates::builtIn().front()); }},
        {"rename", editing(&WindowEdits::renameSelection)},
        {"duplicate", operating(&WindowOperations::duplicateSelection)},
        {"copy", copy},
        {"cut", operating(&WindowOperations::cutSelection)},
        {"paste", operating(&WindowOperations::paste)},
        {"moveHere", operating(&WindowOperations::pasteMoving)},
        // In the format that the person prefers; the menu has all of them.
        {"copyPath",
         [](WindowModel& window) { copyPaths(window, window.app().settings().copyPathFormat); }},
        {"copyPath.tilde", copyingPaths(CopyPathFormat::tilde)},
        {"copyPath.quoted", copyingPaths(CopyPathFormat::quoted)},
        {"copyPath.url", copyingPaths(CopyPathFormat::fileURL)},
        {"compress", editing(&WindowEdits::compressSelection)},
        {"extract", editing(&WindowEdits::extractSelection)},
        {"terminal", openTerminal},
        {"editor", openEditor},
        {"trash", operating(&WindowOperations::trashSelection)},
        {"copyText", PictureTexts::copy},
        {"otherPane.copy", sending(&WindowOperations::copyTo)},
        {"otherPane.move", sending(&WindowOperations::moveTo)},
        {"selectAll", selectAll},
        {"saveSearch", saveSearch},
        {"workspace.save", asking(Which::saveWorkspace)},
        {"tab.new", newTab},
        {"tab.reopen", reopenTab},
        {"tab.next", inGroup(&TabGroup::showNext)},
        {"tab.previous", inGroup(&TabGroup::showPrevious)},
    };
}

}  // namespace

std::function<void(WindowModel&)> action(std::string_view id) {
    static const auto actions = makeActions();
    const auto found = actions.find(id);
    return found == actions.end() ? Action() : found->second;
}

void copyPaths(WindowModel& window, CopyPathFormat format) {
    const PaneModel& pane = window.active();
    std::vector<std::string> paths;
    // Members of an archive have paths, too: through the archive.
    for (const FileItem& item : pane.selectedItems())
        paths.push_back(Paths::format(item.url, format));
    if (paths.empty())
        for (const URL& url : subjects(pane)) paths.push_back(Paths::format(url, format));
    if (paths.empty()) return;
    auto data = std::make_unique<QMimeData>();
    data->setText(QString::fromStdString(Text::join(paths, "\n")));
    window.app().clipboard().set(std::move(data));
}

const PaneModel* targetPane(const WindowModel& window) {
    for (const auto& pane : window.panes()) {
        if (pane.get() == &window.active()) continue;
        if (pane->location().isFolder() && !pane->showsResults()) return pane.get();
    }
    return nullptr;
}

}  // namespace tarn::CommandActions
