#include "Tarn/ui/pane/PaneMenu.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <vector>

#include <QtCore/QCoreApplication>
#include <QtGui/QActionGroup>
#include <QtGui/QKeySequence>
#include <QtWidgets/QMenu>

#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/ui/menus/OpenWithMenu.h"
#include "Tarn/ui/pane/ColumnMenu.h"
#include "Tarn/ui/pane/NewFileMenu.h"
#include "Tarn/ui/tags/TagMenu.h"
#include "Tarn/ui/theme/Icons.h"
#include "TarnCore/files/FileGrouping.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/Paths.h"

namespace tarn::PaneMenu {
namespace {

/// Whose texts they are.
struct Words {
    Q_DECLARE_TR_FUNCTIONS(tarn::PaneMenu)
};

/// The key that is shown beside a command: the one that people know, else its shortcut.
QString keys(const TarnCommand& command, const AppSettings& settings) {
    QString portable;
    if (const auto known = CommandRegistry::desktopKeys(command.id); !known.empty())
        portable =
            QString::fromUtf8(known.front().data(), static_cast<qsizetype>(known.front().size()));
    else if (const auto shortcut = CommandRegistry::shortcut(command.id, settings))
        portable = QString::fromStdString(CommandRegistry::portableText(*shortcut));
    return QKeySequence(portable, QKeySequence::PortableText).toString(QKeySequence::NativeText);
}

class Builder {
public:
    Builder(QMenu& menu, WindowModel& window) : menu_(menu), window_(window) {}

    /// One of the commands, under its own title or another.
    void add(std::string_view id, const QString& title = {}) {
        const TarnCommand* command = CommandRegistry::command(id);
        if (!command) return;
        const QString key = keys(*command, window_.app().settings());
        QString shown = title.isEmpty() ? QCoreApplication::translate("tarn::CommandRegistry",
                                                                      command->title.data())
                                        : title;
        if (!key.isEmpty()) shown += u'\t' + key;
        QAction* action = menu_.addAction(Icons::symbol(command->symbol), shown, &menu_,
                                          [command, &window = window_] {
                                              if (CommandRegistry::isEnabled(*command, &window))
                                                  command->run(window);
                                          });
        action->setObjectName(QString::fromUtf8(id.data(), static_cast<qsizetype>(id.size())));
        action->setEnabled(CommandRegistry::isEnabled(*command, &window_));
    }
    void add(std::initializer_list<std::string_view> ids) {
        for (const std::string_view id : ids) add(id);
    }
    void separate() { menu_.addSeparator(); }

private:
    QMenu& menu_;
    WindowModel& window_;
};

void addTags(QMenu& menu, WindowModel& window) {
    TagMenu::addDots(menu, window);
    QMenu* names = menu.addMenu(Icons::symbol("tag"), Words::tr("Tags"));
    TagMenu::addNames(*names, window);
}

/// A folder that is selected alone, or the one that is shown.
void addFavorite(QMenu& menu, WindowModel& window, const URL& folder) {
    if (window.app().lists().favorite(folder)) return;
    menu.addAction(Icons::symbol("star"), Words::tr("Add to Favourites"), &menu,
                   [&window, folder] { window.app().lists().addFavorite(folder); });
}

/// What can be looked into opens in tabs of its own, too.
void addOpeningAside(QMenu& menu, WindowModel& window, const std::vector<FileItem>& items) {
    std::vector<Location> places;
    for (const FileItem& item : items)
        if (const auto place = window.active().inside(item)) places.push_back(*place);
    if (places.size() != items.size()) return;
    const auto inTabs = [&window, places] {
        for (const Location& place : places) window.openAside(place);
    };
    const QString keys = QKeySequence(Qt::CTRL | Qt::Key_Return).toString(QKeySequence::NativeText);
    menu.addAction(
        Icons::symbol("plus.square.on.square"),
        (places.size() > 1 ? Words::tr("Open in New Tabs") : Words::tr("Open in New Tab")) + u'\t' +
            keys,
        &menu, inTabs);
    if (places.size() > 1 || !places.front().isFolder()) return;
    menu.addAction(
        Icons::symbol("rectangle.on.rectangle"), Words::tr("Open in New Window"), &menu,
        [&window, folder = places.front().url] { emit window.openWindowRequested(folder); });
}

/// The rows of a folder or of results.
void fillForFiles(QMenu& menu, WindowModel& window, const std::vector<FileItem>& items,
                  QWidget& parent) {
    Builder builder(menu, window);
    const bool isTrashed = std::all_of(items.begin(), items.end(), [](const FileItem& item) {
        return Paths::isInTrash(item.url);
    });
    if (isTrashed) {
        menu.addAction(Icons::symbol("arrow.uturn.backward"), Words::tr("Put Back"), &menu,
                       [&window] { window.operations().putBackSelection(); });
        builder.separate();
    }
    builder.add("open");
    addOpeningAside(menu, window, items);
    std::vector<URL> files;
    for (const FileItem& item : items)
        if (!item.isDirectory) files.push_back(item.url);
    if (!files.empty() && files.size() == items.size())
        menu.addMenu(new OpenWithMenu(window, std::move(files), *parent.window(), &menu));
    const bool isGathered = window.active().showsResults() || window.active().location().isQuery();
    if (isGathered && items.size() == 1) {
        menu.addAction(Icons::symbol("folder"), Words::tr("Show in Folder"), &menu,
                       [&window, url = items.front().url] {
                           window.active().navigate(Location::folder(url.parent()), true, {url});
                       });
    }
    builder.separate();
    builder.add({"cut", "copy", "copyPath"});
    builder.separate();
    const QString count = Counts::itemsInTitle(static_cast<std::int64_t>(items.size()));
    builder.add("rename", items.size() > 1 ? Words::tr("Rename %1…").arg(count) : QString());
    builder.add("duplicate");
    if (items.size() > 1 && window.active().location().isFolder())
        builder.add("newFolderSelection");
    if (CommandRegistry::isEnabled(*CommandRegistry::command("extract"), &window))
        builder.add("extract");
    else
        builder.add("compress");
    if (items.size() == 1 && items.front().isDirectory)
        addFavorite(menu, window, items.front().url);
    builder.separate();
    addTags(menu, window);
    menu.addAction(Icons::symbol("lock"), Words::tr("Permissions…"), &menu,
                   [&window] { window.edits().askPermissions(); });
    if (isTrashed) return;
    builder.separate();
    builder.add("trash");
}

void fillForMembers(QMenu& menu, WindowModel& window) {
    Builder builder(menu, window);
    builder.add("open");
    addOpeningAside(menu, window, window.active().selectedItems());
    builder.add("copy");
    builder.separate();
    builder.add("extract", Words::tr("Extract Here"));
    menu.addAction(Icons::symbol("archivebox"), Words::tr("Extract Everything"), &menu,
                   [&window] { window.edits().extractMembers(false); });
}

/// A submenu of things of which one is chosen.
class Choices {
public:
    Choices(QMenu& menu, const char* symbol, const QString& title)
        : menu_(menu.addMenu(Icons::symbol(symbol), title)), group_(new QActionGroup(menu_)) {}
    template <class Pick>
    void add(std::string_view title, bool isChosen, Pick pick) {
        QAction* action =
            menu_->addAction(coreText(title), menu_, [pick = std::move(pick)] { pick(); });
        action->setCheckable(true);
        action->setChecked(isChosen);
        group_->addAction(action);
    }
    QMenu& menu() { return *menu_; }

private:
    QMenu* menu_;
    QActionGroup* group_;
};

void addGroupFolding(QMenu& menu, PaneModel& pane) {
    const auto foldAll = [&pane](bool isFolded) {
        const std::vector<RowGroup> groups = pane.groups();
        for (const RowGroup& group : groups) pane.setGroupFolded(group.title, isFolded);
    };
    menu.addSeparator();
    menu.addAction(Words::tr("Fold All Groups"), &menu, [foldAll] { foldAll(true); });
    menu.addAction(Words::tr("Unfold All Groups"), &menu, [foldAll] { foldAll(false); });
}

/// How the rows of the place are ordered, grouped and filtered.
void addArrangement(QMenu& menu, PaneModel& pane) {
    Choices order(menu, "arrow.up.arrow.down", Words::tr("Sort By"));
    for (const SortField field : allSortFields) {
        order.add(SortFields::title(field), pane.sort().field == field, [&pane, field] {
            if (pane.sort().field != field) pane.sortBy(field);
        });
    }
    order.menu().addSeparator();
    for (const bool ascending : {true, false}) {
        QAction* action = order.menu().addAction(
            coreText(SortFields::directionTitle(pane.sort().field, ascending)), &order.menu(),
            [&pane, ascending] {
                if (pane.sort().ascending != ascending) pane.sortBy(pane.sort().field);
            });
        action->setCheckable(true);
        action->setChecked(pane.sort().ascending == ascending);
    }
    if (pane.viewMode() == ViewMode::list)
        ColumnMenu::fill(*menu.addMenu(Icons::symbol("tablecells"), Words::tr("Columns")),
                         pane.columns());
    Choices groups(menu, "square.grid.2x2", Words::tr("Group By"));
    for (const GroupField field : allGroupFields)
        groups.add(FileGrouping::title(field), pane.groupBy() == field,
                   [&pane, field] { pane.setGroupBy(field); });
    if (!pane.groups().empty()) addGroupFolding(groups.menu(), pane);
    if (!pane.location().isFolder() || !FileItem::isCloudPath(pane.location().url)) return;
    Choices cloud(menu, "icloud", Words::tr("Show"));
    const std::pair<CloudFilter, const char*> filters[] = {
        {CloudFilter::all, "Everything"},
        {CloudFilter::cloudOnly, "Only in the Cloud"},
        {CloudFilter::onThisMac, "On This Computer"}};
    for (const auto& [filter, title] : filters)
        cloud.add(title, pane.cloudFilter() == filter,
                  [&pane, filter = filter] { pane.setCloudFilter(filter); });
}

void fillForPlace(QMenu& menu, WindowModel& window) {
    Builder builder(menu, window);
    PaneModel& pane = window.active();
    if (pane.showsMembers()) {
        menu.addAction(Icons::symbol("shippingbox.and.arrow.backward"),
                       Words::tr("Extract Everything"), &menu,
                       [&window] { window.edits().extractMembers(false); });
        builder.separate();
    } else if (pane.location().isFolder() && !pane.showsResults()) {
        builder.add("newFolder");
        menu.addMenu(new NewFileMenu(window, &menu));
        builder.separate();
        builder.add("paste");
        addFavorite(menu, window, pane.location().url);
        builder.separate();
    }
    addArrangement(menu, window.active());
    builder.separate();
    builder.add({"selectAll", "refresh", "copyPath"});
}

}  // namespace

std::unique_ptr<QMenu> make(WindowModel& window, QWidget* parent) {
    auto menu = std::make_unique<QMenu>(parent);
    const std::vector<FileItem> items = window.active().selectedItems();
    if (items.empty())
        fillForPlace(*menu, window);
    else if (window.active().showsMembers())
        fillForMembers(*menu, window);
    else
        fillForFiles(*menu, window, items, *parent);
    return menu;
}

}  // namespace tarn::PaneMenu
