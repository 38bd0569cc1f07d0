#include "Tarn/ui/sidebar/SidebarActions.h"

#include <algorithm>
#include <utility>

#include <QtGui/QKeySequence>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/VolumeEjector.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/ui/drag/FileDrop.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/trash/TrashBar.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// The keys work in the sidebar, so the menu only shows them.
QString withKey(const QString& title, const QKeySequence& key) {
    return title + u'\t' + key.toString(QKeySequence::NativeText);
}

WindowSnapshot showing(const Location& location) {
    return {{{location, std::nullopt}}, 0, true, false};
}

}  // namespace

SidebarActions::SidebarActions(Sidebar& sidebar, TabGroup& group, QWidget& window)
    : QObject(&window), sidebar_(sidebar), group_(group), window_(window) {
    connect(&sidebar, &Sidebar::actionWanted, this, &SidebarActions::perform);
    connect(&sidebar, &Sidebar::chosenAside, this,
            [this](const Location& place) { tab().openAside(place); });
    connect(&sidebar, &Sidebar::serverChosen, this, &SidebarActions::connectTo);
    connect(&sidebar, &Sidebar::moved, this, &SidebarActions::move);
    connect(&sidebar, &Sidebar::dropped, this,
            [this](const FileDrop& drop) { drop.perform(tab().operations()); });
    connect(&sidebar, &Sidebar::tagged, this,
            [this](const std::vector<URL>& files, const FinderTag& tag) {
                tab().edits().addTagTo(files, tag);
            });
    connect(&sidebar, &Sidebar::favoritesDropped, this,
            [this](const std::vector<URL>& urls, std::size_t index) {
                addFavorites(tab(), urls, index);
            });
    connect(&sidebar, &Sidebar::menuRequested, this,
            [this](const SidebarRow& row, const QPoint& globalPosition) {
                QMenu menu(&window_);
                fillMenu(menu, row);
                if (!menu.isEmpty()) menu.exec(globalPosition);
            });
}

WindowModel& SidebarActions::tab() const { return *group_.current(); }

// --- Menus

void SidebarActions::fillMenu(QMenu& menu, const SidebarRow& row) {
    switch (row.kind) {
        case SidebarRow::Kind::heading:
            return fillForHeading(menu, row);
        case SidebarRow::Kind::volume:
            return fillForVolume(menu, row);
        case SidebarRow::Kind::server:
            menu.addAction(Icons::symbol("server.rack"), tr("Connect"), this,
                           [this, row] { connectTo(row.address); });
            menu.addAction(Icons::symbol("xmark"), withKey(tr("Forget"), Qt::Key_Delete), this,
                           [this, row] { remove(row); });
            return;
        case SidebarRow::Kind::connect:
            menu.addAction(Icons::symbol("server.rack"), row.title, this,
                           [this] { connectTo({}); });
            return;
        default:
            break;
    }
    addOpening(menu, row);
    if (row.kind == SidebarRow::Kind::trash) return fillForTrash(menu);
    if (!row.isMovable()) return;
    const bool isFavorite = row.kind == SidebarRow::Kind::favorite;
    menu.addSeparator();
    menu.addAction(Icons::symbol("pencil"),
                   withKey(isFavorite ? tr("Rename…") : tr("Edit…"), Qt::Key_F2), this,
                   [this, row] { rename(row); });
    addMoving(menu, row);
    menu.addSeparator();
    menu.addAction(
        Icons::symbol(isFavorite ? "minus" : "trash"),
        withKey(isFavorite ? tr("Remove from Favourites") : tr("Delete…"), Qt::Key_Delete), this,
        [this, row] { remove(row); });
}

void SidebarActions::addOpening(QMenu& menu, const SidebarRow& row) {
    const Location place = row.location;
    menu.addAction(Icons::symbol("arrow.up.forward.app"), tr("Open"), this,
                   [this, place] { emit sidebar_.chosen(place); });
    menu.addAction(Icons::symbol("plus.square.on.square"), tr("Open in New Tab"), this,
                   [this, place] { group_.open(showing(place)); });
    menu.addAction(Icons::symbol("rectangle.on.rectangle"), tr("Open in New Window"), this,
                   [this, place] { emit windowWanted(place); });
}

void SidebarActions::addMoving(QMenu& menu, const SidebarRow& row) {
    SidebarModel& model = sidebar_.model();
    const auto index = model.indexOf(row);
    if (!index) return;
    const bool isLast = *index + 1 >= model.rowCount() || !model.row(*index + 1).isMovable() ||
                        model.row(*index + 1).section != row.section;
    menu.addAction(Icons::symbol("arrow.up"), withKey(tr("Move Up"), Qt::ALT | Qt::Key_Up), this,
                   [this, row] { perform(SidebarAction::moveUp, row); })
        ->setEnabled(model.position(*index) > 0);
    menu.addAction(Icons::symbol("arrow.down"), withKey(tr("Move Down"), Qt::ALT | Qt::Key_Down),
                   this, [this, row] { perform(SidebarAction::moveDown, row); })
        ->setEnabled(!isLast);
}

void SidebarActions::addFolding(QMenu& menu, const SidebarRow& row) {
    menu.addSeparator();
    menu.addAction(row.isFolded ? tr("Unfold") : tr("Fold"), this,
                   [this, row] { sidebar_.model().setFolded(row.section, !row.isFolded); });
}

void SidebarActions::fillForHeading(QMenu& menu, const SidebarRow& row) {
    switch (row.section) {
        case SidebarSection::favorites: {
            const auto folder = favoriteAtHand(tab());
            const QString title = folder
                                      ? tr("Add “%1”").arg(displayText(Paths::displayName(*folder)))
                                      : tr("Add This Folder");
            menu.addAction(Icons::symbol("star"), withKey(title, Qt::CTRL | Qt::Key_B), this,
                           [this] { addFavorite(tab()); })
                ->setEnabled(folder.has_value());
            break;
        }
        case SidebarSection::smartFolders:
            menu.addAction(Icons::symbol("plus"), tr("New Smart Folder…"), this, [this] {
                WindowSheet sheet;
                sheet.which = WindowSheet::Which::newSmartFolder;
                tab().showSheet(std::move(sheet));
            });
            break;
        case SidebarSection::tags:
            menu.addAction(Icons::symbol("tag"), tr("All Tags"), this,
                           [this] { emit sidebar_.chosen(Location::tags()); });
            break;
        default:
            menu.addAction(Icons::symbol("server.rack"), tr("Connect to Server…"), this,
                           [this] { connectTo({}); });
    }
    addFolding(menu, row);
}

void SidebarActions::fillForVolume(QMenu& menu, const SidebarRow& row) {
    addOpening(menu, row);
    if (!row.volume || !row.volume->isEjectable) return;
    menu.addSeparator();
    menu.addAction(Icons::symbol("eject"), withKey(tr("Eject"), Qt::CTRL | Qt::Key_E), this,
                   [this, row] { perform(SidebarAction::eject, row); })
        ->setEnabled(row.isEjectable());
}

void SidebarActions::fillForTrash(QMenu& menu) {
    const TrashService& trash = group_.app().trash();
    menu.addSeparator();
    // The size stands where other entries have their keys.
    QString text = tr("Empty Trash…");
    if (TrashBar::canEmpty(trash) && trash.bytes()) text += u'\t' + Counts::bytes(*trash.bytes());
    menu.addAction(Icons::symbol("trash"), text, this, &SidebarActions::emptyTrashWanted)
        ->setEnabled(TrashBar::canEmpty(trash));
}

// --- What is done

void SidebarActions::perform(SidebarAction action, const SidebarRow& row) {
    switch (action) {
        case SidebarAction::eject:
            if (row.volume) group_.app().ejector().eject(tab(), *row.volume);
            return;
        case SidebarAction::rename:
            return rename(row);
        case SidebarAction::remove:
            return remove(row);
        case SidebarAction::moveUp:
        case SidebarAction::moveDown:
            break;
    }
    const auto index = sidebar_.model().indexOf(row);
    if (!index) return;
    const std::size_t position = sidebar_.model().position(*index);
    if (action == SidebarAction::moveDown)
        move(row, position + 1);
    else if (position > 0)
        move(row, position - 1);
}

void SidebarActions::rename(const SidebarRow& row) {
    UserLists& lists = group_.app().lists();
    WindowSheet sheet;
    if (row.kind == SidebarRow::Kind::favorite) {
        const auto& all = lists.favorites();
        const auto found = std::find_if(all.begin(), all.end(), [&row](const Favorite& favorite) {
            return favorite.id == row.id;
        });
        if (found == all.end()) return;
        sheet.which = WindowSheet::Which::renameFavorite;
        sheet.favorite = *found;
    } else {
        const SmartFolder* folder = lists.smartFolder(row.id);
        if (!folder || folder->builtIn) return;
        sheet.which = WindowSheet::Which::newSmartFolder;
        sheet.smartFolder = *folder;
    }
    tab().showSheet(std::move(sheet));
}

void SidebarActions::remove(const SidebarRow& row) {
    UserLists& lists = group_.app().lists();
    if (row.kind == SidebarRow::Kind::favorite) return lists.removeFavorite(row.id);
    if (row.kind == SidebarRow::Kind::server) return lists.forgetServer(row.address);
    if (row.kind == SidebarRow::Kind::smartFolder && !row.isBuiltIn) askToDelete(row);
}

void SidebarActions::askToDelete(const SidebarRow& row) {
    if (question_ && question_->isVisible()) return;
    question_ = new QuestionSheet(
        {tr("Delete the smart folder “%1”?").arg(row.title),
         tr("The files that it finds stay where they are."), tr("Delete"), tr("Cancel")},
        window_);
    connect(question_, &QuestionSheet::accepted, this,
            [this, id = row.id] { group_.app().lists().removeSmartFolder(id); });
    question_->open(question_->no());
}

void SidebarActions::move(const SidebarRow& row, std::size_t index) {
    UserLists& lists = group_.app().lists();
    if (row.kind == SidebarRow::Kind::favorite)
        lists.moveFavorite(row.id, index);
    else if (row.kind == SidebarRow::Kind::smartFolder)
        lists.moveSmartFolder(row.id, index);
}

void SidebarActions::connectTo(const std::string& address) {
    WindowSheet sheet;
    sheet.which = WindowSheet::Which::connectServer;
    sheet.text = address;
    tab().showSheet(std::move(sheet));
}

// --- Favourites

std::optional<URL> SidebarActions::favoriteAtHand(const WindowModel& window) {
    const PaneModel& pane = window.active();
    std::optional<URL> folder;
    const std::vector<FileItem> selected = pane.selectedItems();
    if (selected.size() == 1 && selected.front().isDirectory && !pane.showsMembers())
        folder = selected.front().url;
    else if (pane.location().isFolder())
        folder = pane.location().url;
    const auto& favorites = window.app().lists();
    if (folder && favorites.favorite(*folder)) return std::nullopt;
    return folder;
}

void SidebarActions::addFavorite(WindowModel& window) {
    if (const auto folder = favoriteAtHand(window)) window.app().lists().addFavorite(*folder);
}

void SidebarActions::addFavorites(WindowModel& window, const std::vector<URL>& urls,
                                  std::optional<std::size_t> index) {
    window.app().pool().run([urls, index, target = QPointer(&window)] {
        std::vector<URL> folders;
        for (const URL& url : urls) {
            const auto facts = Platform::current().files->attributes(url, Links::follow);
            if (facts && facts->type == FileType::directory) folders.push_back(url);
        }
        const bool areAll = folders.size() == urls.size();
        MainThread::post(target, [folders = std::move(folders), index, areAll](WindowModel& shown) {
            UserLists& lists = shown.app().lists();
            for (std::size_t i = 0; i < folders.size(); ++i)
                lists.addFavorite(folders[i], index ? std::optional(*index + i) : std::nullopt);
            if (areAll) return;
            Toast toast;
            toast.message = tr("Only folders can be favourites.");
            toast.symbol = "star";
            toast.isError = true;
            shown.showToast(std::move(toast));
        });
    });
}

}  // namespace tarn
