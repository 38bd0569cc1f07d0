#include "Tarn/ui/window/BrowserWindow.h"

#include <QtCore/QUrl>
#include <QtGui/QActionGroup>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QMenu>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QToolButton>

#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/SidebarModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/ui/drag/FileDrop.h"
#include "Tarn/ui/pane/NewFileMenu.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/pane/PaneWidget.h"
#include "Tarn/ui/path/PathBar.h"
#include "Tarn/ui/rename/RenameSheet.h"
#include "Tarn/ui/search/BusyLine.h"
#include "Tarn/ui/search/ChipRow.h"
#include "Tarn/ui/search/SearchField.h"
#include "Tarn/ui/settings/SettingsSheet.h"
#include "Tarn/ui/sidebar/Sidebar.h"
#include "Tarn/ui/tags/NewTagSheet.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/transfers/TransfersButton.h"
#include "Tarn/ui/trash/TrashBar.h"
#include "Tarn/ui/window/WindowChanges.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

constexpr QSize firstSize(1180, 760);

QString qstring(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

const struct {
    Theme::Mode mode;
    const char* title;
} appearances[] = {
    {Theme::Mode::system, QT_TRANSLATE_NOOP("tarn::BrowserWindow", "Follow the System")},
    {Theme::Mode::light, QT_TRANSLATE_NOOP("tarn::BrowserWindow", "Light")},
    {Theme::Mode::dark, QT_TRANSLATE_NOOP("tarn::BrowserWindow", "Dark")},
};

}  // namespace

BrowserWindow::BrowserWindow(std::unique_ptr<WindowModel> model)
    : model_(std::move(model)),
      sidebarModel_(new SidebarModel(this)),
      sidebar_(new Sidebar(this)),
      splitter_(new QSplitter(Qt::Horizontal, this)),
      trashBar_(new TrashBar(*model_, *this)),
      path_(new PathBar(this)),
      search_(new SearchField(this)),
      chips_(new ChipRow(this)),
      busy_(new BusyLine(this)),
      pane_(new PaneWidget(*model_, model_->active(), this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setMinimumSize(Metrics::contentMinimum, Metrics::contentMinimum);
    resize(firstSize);
    sidebar_->setModel(sidebarModel_);
    makeActions();

    auto* content = new QWidget(this);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeToolbar());
    column->addWidget(makeSearchRow());
    column->addWidget(trashBar_);
    column->addWidget(busy_);
    column->addWidget(pane_, 1);

    splitter_->setChildrenCollapsible(false);
    splitter_->setHandleWidth(Metrics::hairline);
    splitter_->addWidget(sidebar_);
    splitter_->addWidget(content);
    splitter_->setStretchFactor(1, 1);
    splitter_->setSizes({Metrics::sidebarDefault, width() - Metrics::sidebarDefault});
    sidebar_->setMinimumWidth(Metrics::sidebarMinimum);
    sidebar_->setMaximumWidth(Metrics::sidebarMaximum);
    content->setMinimumWidth(Metrics::contentMinimum);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(splitter_);

    changes_ = new WindowChanges(*model_, *this, *pane_, *transfersButton_);
    connectParts();
    showLocation();
    showSearch();
    updateSidebar();
    updateUndo();
    pane_->view()->setFocus();
}

BrowserWindow::~BrowserWindow() {
    // The views let go of the pane before the model takes it along.
    delete changes_;
    delete pane_;
}

// --- Parts

void BrowserWindow::makeActions() {
    const AppSettings& settings = model_->app().settings();
    for (const TarnCommand& command : CommandRegistry::all()) {
        auto* action = new QAction(
            Icons::symbol(command.symbol),
            QCoreApplication::translate("tarn::CommandRegistry", command.title.data()), this);
        QList<QKeySequence> keys;
        if (const auto shortcut = CommandRegistry::shortcut(command.id, settings))
            keys.append(
                QKeySequence(QString::fromStdString(CommandRegistry::portableText(*shortcut)),
                             QKeySequence::PortableText));
        for (const std::string_view key : CommandRegistry::desktopKeys(command.id))
            keys.append(QKeySequence(qstring(key), QKeySequence::PortableText));
        action->setShortcuts(keys);
        action->setIconVisibleInMenu(false);
        // What is done to the selection is done where it can be seen: a key that is pressed in the
        // sidebar or in a field means something else.
        if (command.needsSelection) action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(action, &QAction::triggered, this, [this, &command] {
            if (CommandRegistry::isEnabled(command, model_.get())) command.run(*model_);
        });
        (command.needsSelection ? static_cast<QWidget*>(pane_) : this)->addAction(action);
        actions_.emplace(command.id, action);
    }
    const auto addWindowAction = [this](const char* id, const QString& title,
                                        const QList<QKeySequence>& keys, auto run) {
        auto* action = new QAction(title, this);
        action->setShortcuts(keys);
        connect(action, &QAction::triggered, this, run);
        addAction(action);
        actions_.emplace(id, action);
    };
    addWindowAction("window.new", tr("New Window"), {QKeySequence(Qt::CTRL | Qt::Key_N)},
                    [this] { openWindow(model_->active().location()); });
    addWindowAction("window.close", tr("Close Window"), {QKeySequence(Qt::CTRL | Qt::Key_W)},
                    [this] { close(); });
    addWindowAction("quit", tr("Quit"), {QKeySequence(Qt::CTRL | Qt::Key_Q)},
                    [this] { changes_->quit(); });
    addWindowAction("settings", tr("Settings…"), {QKeySequence(Qt::CTRL | Qt::Key_Comma)}, [this] {
        if (settings_ && settings_->isVisible()) return;
        settings_ = new SettingsSheet(*model_, *this);
        settings_->open();
    });
    addWindowAction("sidebar", tr("Show Sidebar"), {QKeySequence(Qt::Key_F9)}, [this] {
        if (width() < Metrics::sidebarFolds)
            isUnfolded_ = !isUnfolded_;
        else
            model_->setSidebarVisible(!model_->sidebarVisible());
        updateSidebar();
    });
    addWindowAction("undo", tr("Undo"), QKeySequence::keyBindings(QKeySequence::Undo),
                    [this] { model_->operations().undo(); });
    addWindowAction(
        "redo", tr("Redo"),
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)},
        [this] { model_->operations().redo(); });
    actions_["sidebar"]->setIcon(Icons::symbol("sidebar.left"));
    actions_["sidebar"]->setIconVisibleInMenu(false);
    for (const char* id : {"view.grid", "view.list", "hidden"}) actions_[id]->setCheckable(true);
    auto* modes = new QActionGroup(this);
    modes->addAction(actions_["view.grid"]);
    modes->addAction(actions_["view.list"]);
}

QToolButton* BrowserWindow::makeButton(const char* commandID) {
    auto* button = new QToolButton(this);
    QAction* action = actions_.find(commandID)->second;
    button->setAutoRaise(true);
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
    button->setAccessibleName(action->text());
    button->setFixedSize(Metrics::controlHeight, Metrics::controlHeight);
    button->setIconSize({Metrics::iconToolbar, Metrics::iconToolbar});
    return button;
}

QWidget* BrowserWindow::makeToolbar() {
    auto* toolbar = new QWidget(this);
    toolbar->setObjectName(QStringLiteral("toolbar"));
    auto* row = new QHBoxLayout(toolbar);
    row->setContentsMargins(Metrics::space8, Metrics::space8, Metrics::space8, Metrics::space8);
    row->setSpacing(Metrics::space4);
    sidebarButton_ = makeButton("sidebar");
    menuButton_ = new QToolButton(this);
    menuButton_->setAutoRaise(true);
    menuButton_->setIcon(Icons::symbol("line.3.horizontal"));
    menuButton_->setAccessibleName(tr("Menu"));
    menuButton_->setToolTip(tr("Menu"));
    menuButton_->setFixedSize(Metrics::controlHeight, Metrics::controlHeight);
    menuButton_->setIconSize({Metrics::iconToolbar, Metrics::iconToolbar});
    menuButton_->setShortcut(QKeySequence(Qt::Key_F10));
    fillMenu();
    row->addWidget(sidebarButton_);
    row->addWidget(makeButton("go.back"));
    forwardButton_ = makeButton("go.forward");
    upButton_ = makeButton("go.up");
    row->addWidget(forwardButton_);
    row->addWidget(upButton_);
    row->addSpacing(Metrics::space4);
    row->addWidget(path_, 1);
    row->addSpacing(Metrics::space4);
    row->addWidget(search_);
    transfersButton_ =
        new TransfersButton(model_->app().transfers(), model_->app().activities(), this);
    row->addWidget(transfersButton_);
    row->addWidget(menuButton_);
    return toolbar;
}

void BrowserWindow::fillMenu() {
    auto* menu = new QMenu(menuButton_);
    menu->addAction(actions_["window.new"]);
    menu->addAction(actions_["newFolder"]);
    menu->addMenu(new NewFileMenu(*model_, menu))->setIconVisibleInMenu(false);
    menu->addSeparator();
    menu->addAction(actions_["undo"]);
    menu->addAction(actions_["redo"]);
    menu->addSeparator();
    menu->addAction(actions_["view.grid"]);
    menu->addAction(actions_["view.list"]);
    QMenu* sorting = menu->addMenu(tr("Sort By"));
    auto* fields = new QActionGroup(sorting);
    for (const SortField field : allSortFields) {
        QAction* action = sorting->addAction(qstring(SortFields::title(field)), this,
                                             [this, field] { model_->active().sortBy(field); });
        action->setCheckable(true);
        fields->addAction(action);
        connect(sorting, &QMenu::aboutToShow, action, [this, action, field] {
            action->setChecked(model_->active().sort().field == field);
        });
    }
    menu->addAction(actions_["sidebar"]);
    menu->addAction(actions_["hidden"]);
    menu->addAction(actions_["refresh"]);
    menu->addSeparator();
    for (const TarnCommand& command : CommandRegistry::all()) {
        if (command.group == "Go" && command.needsFolder == false)
            menu->addAction(actions_.find(command.id)->second);
    }
    menu->addSeparator();
    QMenu* appearance = menu->addMenu(tr("Appearance"));
    auto* modes = new QActionGroup(appearance);
    for (const auto& choice : appearances) {
        QAction* action = appearance->addAction(
            tr(choice.title), this, [mode = choice.mode] { Theme::shared().setMode(mode); });
        action->setCheckable(true);
        action->setChecked(Theme::shared().mode() == choice.mode);
        modes->addAction(action);
        connect(appearance, &QMenu::aboutToShow, action, [action, mode = choice.mode] {
            action->setChecked(Theme::shared().mode() == mode);
        });
    }
    menu->addAction(actions_["settings"]);
    menu->addSeparator();
    menu->addAction(actions_["window.close"]);
    menu->addAction(actions_["quit"]);
    connect(menuButton_, &QToolButton::clicked, menu, [this, menu] {
        const QPoint corner = menuButton_->mapToGlobal(menuButton_->rect().bottomRight());
        menu->popup(corner - QPoint(menu->sizeHint().width(), -Metrics::space4));
    });
}

QWidget* BrowserWindow::makeSearchRow() {
    searchRow_ = new QWidget(this);
    auto* row = new QHBoxLayout(searchRow_);
    row->setContentsMargins(Metrics::space16, 0, Metrics::space12, Metrics::space8);
    row->setSpacing(Metrics::space8);
    scope_ = new QToolButton(searchRow_);
    scope_->setAutoRaise(true);
    scope_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    scope_->setIcon(Icons::symbol("chevron.down", Icons::Tint::secondary));
    scope_->setIconSize({Metrics::space12, Metrics::space12});
    // The arrow stands behind the text, as one reads.
    scope_->setLayoutDirection(isRightToLeft() ? Qt::LeftToRight : Qt::RightToLeft);
    scope_->setMinimumHeight(Metrics::chipHeight);
    scope_->setToolTip(tr("Where to search"));
    auto* menu = new QMenu(searchRow_);
    scopeMenu_ = menu;
    auto* scopes = new QActionGroup(menu);
    for (const auto scope : {SearchScopeSetting::currentFolder, SearchScopeSetting::home,
                             SearchScopeSetting::thisMac}) {
        QAction* action =
            menu->addAction(QString(), this, [this, scope] { model_->active().setScope(scope); });
        action->setCheckable(true);
        action->setData(static_cast<int>(scope));
        scopes->addAction(action);
    }
    connect(scope_, &QToolButton::clicked, menu, [this, menu] {
        const QPoint corner = scope_->mapToGlobal(scope_->rect().bottomRight());
        menu->popup(corner - QPoint(menu->sizeHint().width(), -Metrics::space4));
    });
    row->addWidget(chips_, 1);
    // Keeps the scope at the right while there are no chips.
    row->addStretch();
    row->addWidget(scope_, 0, Qt::AlignTop);
    return searchRow_;
}

void BrowserWindow::connectParts() {
    PaneModel& pane = model_->active();
    connect(model_.get(), &WindowModel::titleChanged, this, &BrowserWindow::showLocation);
    connect(model_.get(), &WindowModel::showHiddenChanged, this, &BrowserWindow::updateActions);
    connect(model_.get(), &WindowModel::sidebarVisibleChanged, this, &BrowserWindow::updateSidebar);
    connect(model_.get(), &WindowModel::sheetChanged, this, &BrowserWindow::showSheet);
    connect(model_.get(), &WindowModel::editPathRequested, path_, &PathBar::beginEditing);
    connect(model_.get(), &WindowModel::focusSearchRequested, search_, &SearchField::beginEditing);
    connect(model_.get(), &WindowModel::openFilesRequested, this,
            [](const std::vector<URL>& files) {
                for (const URL& file : files)
                    QDesktopServices::openUrl(
                        QUrl::fromEncoded(QByteArray::fromStdString(file.string())));
            });
    connect(model_.get(), &WindowModel::openWindowRequested, this,
            [this](const URL& folder) { openWindow(Location::folder(folder)); });

    connect(&pane, &PaneModel::locationChanged, this, &BrowserWindow::showLocation);
    connect(&pane, &PaneModel::searchChanged, this, &BrowserWindow::showSearch);
    connect(&pane, &PaneModel::viewModeChanged, this, &BrowserWindow::updateActions);
    connect(&pane, &PaneModel::stateChanged, this, [this, &pane] {
        busy_->setBusy(pane.isSearching());
        updateActions();
    });
    connect(&pane.selection(), &QItemSelectionModel::selectionChanged, this,
            &BrowserWindow::updateActions);

    connect(sidebar_, &Sidebar::chosen, this, [this, &pane](const Location& location) {
        pane.navigate(location);
        if (width() < Metrics::sidebarFolds) {
            isUnfolded_ = false;
            updateSidebar();
        }
        pane_->view()->setFocus();
    });
    const auto drop = [this](const FileDrop& dropped) { dropped.perform(model_->operations()); };
    connect(sidebar_, &Sidebar::dropped, this, drop);
    connect(sidebar_, &Sidebar::menuRequested, this, &BrowserWindow::openPlaceMenu);
    connect(path_, &PathBar::dropped, this, drop);
    connect(&model_->app().history(), &HistoryModel::changed, this, &BrowserWindow::updateUndo);
    connect(path_, &PathBar::folderChosen, this, [this, &pane](const URL& folder) {
        pane.navigate(Location::folder(folder));
        pane_->view()->setFocus();
    });
    connect(path_, &PathBar::archiveChosen, this,
            [this, &pane](const URL& archive, const std::string& inside) {
                pane.navigate(Location::archive(archive, inside));
                pane_->view()->setFocus();
            });
    connect(path_, &PathBar::fileChosen, this, [this, &pane](const URL& file) {
        pane.navigate(Location::folder(file.parent()), true, {file});
        pane_->view()->setFocus();
    });
    connect(search_, &SearchField::textChanged, this,
            [&pane](const QString& text) { pane.searchTextChanged(text.toStdString()); });
    connect(search_, &SearchField::downPressed, pane_, &PaneWidget::enter);
    connect(search_, &SearchField::escaped, pane_, &PaneWidget::enter);
    connect(search_, &SearchField::backspaceInEmpty, this, [this] {
        if (!chips_->chips().empty()) chips_->focusLast();
    });
    connect(chips_, &ChipRow::removed, this,
            [&pane](ChipCategory category) { pane.removeChip(category); });
    connect(chips_, &ChipRow::focusLost, search_, &SearchField::beginEditing);
    connect(pane_, &PaneWidget::leftAtTop, this, [this, &pane] {
        if (pane.query()) search_->beginEditing();
    });
}

// --- What is shown

void BrowserWindow::showLocation() {
    const Location& location = model_->active().location();
    setWindowTitle(model_->title());
    if (location.isFolder())
        path_->setLocation(location.url);
    else if (location.isArchive())
        path_->setArchive(location.url, location.text);
    else
        path_->setPlace(location.symbol(), model_->title());
    sidebar_->setCurrent(location);
    search_->setPlaceholder(tr("Search %1").arg(model_->title()));
    updateActions();
}

void BrowserWindow::showSearch() {
    const PaneModel& pane = model_->active();
    const QString text = QString::fromStdString(pane.searchText());
    if (search_->text().toStdString() != pane.searchText()) search_->setText(text);
    chips_->setChips(pane.query() ? pane.query()->chips() : std::vector<SearchChip>());
    searchRow_->setVisible(pane.query().has_value());
    for (QAction* action : scopeMenu_->actions()) {
        const auto scope = static_cast<SearchScopeSetting>(action->data().toInt());
        switch (scope) {
            case SearchScopeSetting::currentFolder:
                action->setText(tr("In “%1”").arg(model_->title()));
                break;
            case SearchScopeSetting::home:
                action->setText(tr("In Home"));
                break;
            case SearchScopeSetting::thisMac:
                action->setText(tr("On This Computer"));
                break;
        }
        action->setChecked(scope == pane.searchScope());
        if (scope == pane.searchScope()) scope_->setText(action->text());
    }
}

void BrowserWindow::showSheet() {
    const auto& sheet = model_->sheet();
    if (!sheet) return;
    const auto open = [this](auto* shown) {
        connect(shown, &Sheet::finished, model_.get(), &WindowModel::closeSheet);
        shown->open(shown->firstField());
    };
    switch (sheet->which) {
        case WindowSheet::Which::batchRename:
            open(new RenameSheet(*this, *model_, sheet->urls));
            break;
        case WindowSheet::Which::newTag:
            open(new NewTagSheet(*this, *model_));
            break;
        default:  // Their sheets come with what asks for them.
            model_->closeSheet();
    }
}

void BrowserWindow::updateActions() {
    for (const TarnCommand& command : CommandRegistry::all())
        actions_.find(command.id)
            ->second->setEnabled(CommandRegistry::isEnabled(command, model_.get()));
    actions_["hidden"]->setChecked(model_->showHidden());
    path_->setIncludeHidden(model_->showHidden());
    actions_["view.grid"]->setChecked(model_->active().viewMode() == ViewMode::grid);
    actions_["view.list"]->setChecked(model_->active().viewMode() == ViewMode::list);
}

void BrowserWindow::updateUndo() {
    HistoryModel& history = model_->app().history();
    const auto show = [this](const char* id, const QString& verb,
                             const std::optional<QString>& title) {
        QAction* action = actions_.find(id)->second;
        action->setEnabled(title.has_value());
        action->setText(
            title ? tr("%1 %2").arg(verb, fontMetrics().elidedText(*title, Qt::ElideMiddle,
                                                                   Metrics::menuTextWidth))
                  : verb);
    };
    show("undo", tr("Undo"), history.nextUndoTitle());
    show("redo", tr("Redo"), history.nextRedoTitle());
}

void BrowserWindow::closeEvent(QCloseEvent* event) { event->setAccepted(changes_->mayClose()); }

void BrowserWindow::updateSidebar() {
    const bool isNarrow = width() < Metrics::sidebarFolds;
    const bool isShown = isNarrow ? isUnfolded_ : model_->sidebarVisible();
    sidebar_->setVisible(isShown);
    actions_["sidebar"]->setText(isShown ? tr("Hide Sidebar") : tr("Show Sidebar"));
    // In a wide window it is in the menu.
    sidebarButton_->setVisible(isNarrow || !isShown);
}

void BrowserWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (width() >= Metrics::sidebarFolds) isUnfolded_ = false;
    updateSidebar();
    forwardButton_->setVisible(width() >= Metrics::toolbarFolds);
    upButton_->setVisible(width() >= Metrics::toolbarFolds);
}

void BrowserWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && model_->active().query()) {
        model_->active().clearSearch(false);
        pane_->enter();
        return;
    }
    if (event->key() == Qt::Key_Escape && pane_->stopWaiting()) return;
    QWidget::keyPressEvent(event);
}

// --- Going places

void BrowserWindow::openPlaceMenu(const Location& place, const QPoint& globalPosition) {
    QMenu menu(this);
    menu.addAction(Icons::symbol("arrow.up.forward.app"), tr("Open"), this,
                   [this, place] { emit sidebar_->chosen(place); });
    menu.addAction(Icons::symbol("rectangle.on.rectangle"), tr("Open in New Window"), this,
                   [this, place] { openWindow(place); });
    if (TrashBar::isTrash(place)) {
        const TrashService& trash = model_->app().trash();
        menu.addSeparator();
        // The size stands where other entries have their keys.
        QString text = tr("Empty Trash…");
        if (TrashBar::canEmpty(trash) && trash.bytes())
            text += u'\t' + displayText(Format::bytes(*trash.bytes()));
        menu.addAction(Icons::symbol("trash"), text, trashBar_, &TrashBar::ask)
            ->setEnabled(TrashBar::canEmpty(trash));
    }
    menu.exec(globalPosition);
}

void BrowserWindow::openWindow(const Location& location) {
    auto* window = new BrowserWindow(std::make_unique<WindowModel>(model_->app(), location));
    window->resize(size());
    window->show();
}

}  // namespace tarn
