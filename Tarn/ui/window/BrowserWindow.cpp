#include "Tarn/ui/window/BrowserWindow.h"

#include <algorithm>
#include <functional>
#include <vector>

#include <QtGui/QContextMenuEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QToolButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/SidebarModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/ui/desktop/FileOpener.h"
#include "Tarn/ui/drag/FileDrop.h"
#include "Tarn/ui/focus/FocusRing.h"
#include "Tarn/ui/inspector/Inspector.h"
#include "Tarn/ui/menus/WindowActions.h"
#include "Tarn/ui/pane/PaneWidget.h"
#include "Tarn/ui/path/PathBar.h"
#include "Tarn/ui/quicklook/QuickLook.h"
#include "Tarn/ui/search/ChipRow.h"
#include "Tarn/ui/search/SearchField.h"
#include "Tarn/ui/settings/SettingsSheet.h"
#include "Tarn/ui/sidebar/Sidebar.h"
#include "Tarn/ui/sidebar/SidebarActions.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/trash/TrashBar.h"
#include "Tarn/ui/window/BrowserToolbar.h"
#include "Tarn/ui/window/PaneFrame.h"
#include "Tarn/ui/window/SearchRow.h"
#include "Tarn/ui/window/TabPage.h"
#include "Tarn/ui/window/TabStrip.h"
#include "Tarn/ui/window/WindowChanges.h"
#include "Tarn/ui/window/WindowMenu.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

constexpr QSize firstSize(1180, 760);
/// Alt and a digit go to one of these.
constexpr int mostTabKeys = 9;
/// Milliseconds from the last change of a size until it is remembered.
constexpr int layoutDelay = 500;

std::unique_ptr<TabGroup> groupOf(std::unique_ptr<WindowModel> tab) {
    auto group = std::make_unique<TabGroup>(tab->app());
    group->add(std::move(tab));
    return group;
}

}  // namespace

BrowserWindow::BrowserWindow(std::unique_ptr<WindowModel> tab)
    : BrowserWindow(groupOf(std::move(tab))) {}

BrowserWindow::BrowserWindow(std::unique_ptr<TabGroup> group)
    : group_(std::move(group)),
      actions_(new WindowActions(group_->app(), *this)),
      sidebarModel_(new SidebarModel(group_->app(), this)),
      sidebar_(new Sidebar(this)),
      splitter_(new QSplitter(Qt::Horizontal, this)),
      pages_(new QStackedWidget(this)),
      inspector_(new Inspector(this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setMinimumSize(Metrics::contentMinimum, Metrics::contentMinimum);
    sidebar_->setModel(sidebarModel_);
    makeActions();
    QWidget* content = makeContent();
    splitter_->setChildrenCollapsible(false);
    splitter_->setHandleWidth(Metrics::hairline);
    splitter_->addWidget(sidebar_);
    splitter_->addWidget(content);
    splitter_->addWidget(inspector_);
    splitter_->setStretchFactor(1, 1);
    sidebar_->setMinimumWidth(Metrics::sidebarMinimum);
    sidebar_->setMaximumWidth(Metrics::sidebarMaximum);
    content->setMinimumWidth(Metrics::contentMinimum);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(splitter_);

    quickLook_ = new QuickLook(nullptr, *this);
    changes_ = new WindowChanges(*group_, *this, toolbar_->transfers());
    for (int i = 0; i < group_->count(); ++i) addPage(i);
    restoreLayout();
    connectParts();
    followTab();
    updateUndo();
}

BrowserWindow::~BrowserWindow() {
    // The views let go of the tabs before those go.
    disconnect(group_.get(), nullptr, this, nullptr);
    tabFollowing_.reset();
    paneFollowing_.reset();
    actions_->setWindow(nullptr);
    toolbar_->follow(nullptr, nullptr);
    searchRow_->follow(nullptr, nullptr);
    quickLook_->setWindow(nullptr);
    inspector_->setPane(nullptr, nullptr);
    delete settings_;
    delete changes_;
    delete tabs_;
    while (pages_->count() > 0) delete pages_->widget(0);
}

WindowModel& BrowserWindow::model() { return *group_->current(); }

TabPage& BrowserWindow::page() { return *pageOf(model()); }

// --- Parts

void BrowserWindow::makeActions() {
    const auto add = [this](const char* id, const QString& title, const QList<QKeySequence>& keys,
                            const char* symbol, std::function<void()> run) {
        return actions_->add(id, title, keys, std::move(run), symbol);
    };
    add("window.new", tr("New Window"), {QKeySequence(Qt::CTRL | Qt::Key_N)}, "macwindow",
        [this] { openWindow(model().active().location()); });
    add("tab.close", tr("Close Tab"), {QKeySequence(Qt::CTRL | Qt::Key_W)}, "xmark",
        [this] { closeTab(group_->currentIndex()); });
    for (int i = 0; i < mostTabKeys; ++i)
        add(qPrintable(QStringLiteral("tab.%1").arg(i + 1)), tr("Show Tab %1").arg(i + 1),
            {QKeySequence(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + i))}, "",
            [this, i] { group_->setCurrent(i); })
            ->setPriority(QAction::LowPriority);
    add("window.close", tr("Close Window"), {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_W)},
        "xmark", [this] { close(); });
    add("quit", tr("Quit"), {QKeySequence(Qt::CTRL | Qt::Key_Q)}, "xmark",
        [this] { changes_->quit(); });
    add("settings", tr("Settings…"), {QKeySequence(Qt::CTRL | Qt::Key_Comma)}, "gearshape", [this] {
        if (settings_ && settings_->isVisible()) return;
        settings_ = new SettingsSheet(model(), *this);
        settings_->open();
    });
    add("sidebar", tr("Show Sidebar"), {QKeySequence(Qt::Key_F9)}, "sidebar.left", [this] {
        if (isSidebarFolded())
            isUnfolded_ = !isUnfolded_;
        else
            model().setSidebarVisible(!model().sidebarVisible());
        updateSides();
    });
    add("fullScreen", tr("Full Screen"), {QKeySequence(Qt::Key_F11)},
        "arrow.up.left.and.arrow.down.right",
        [this] { setWindowState(windowState() ^ Qt::WindowFullScreen); });
    for (const bool next : {true, false})
        add(next ? "part.next" : "part.previous", next ? tr("Next Part") : tr("Previous Part"),
            {next ? QKeySequence(Qt::Key_F6) : QKeySequence(Qt::SHIFT | Qt::Key_F6)}, "",
            [this, next] { stepPart(next); })
            ->setPriority(QAction::LowPriority);
    add("menu.context", tr("Menu of What Is Selected"), {QKeySequence(Qt::SHIFT | Qt::Key_F10)}, "",
        [this] { openContextMenu(); })
        ->setPriority(QAction::LowPriority);
    add("favorite.add", tr("Add to Favourites"), {QKeySequence(Qt::CTRL | Qt::Key_B)}, "star",
        [this] { SidebarActions::addFavorite(model()); });
    add("permissions", tr("Permissions…"), {}, "lock",
        [this] { model().edits().askPermissions(); });
    add("go.start", tr("Go to Start"), {}, "house",
        [this] { model().active().navigate(Location::home()); });
    add("go.trash", tr("Go to Trash"), {}, "trash",
        [this] { model().active().navigate(Location::folder(Paths::trash())); });
    add("trash.empty", tr("Empty Trash…"), {}, "trash", [this] { page().active().trash().ask(); });
    add("undo", tr("Undo"), QKeySequence::keyBindings(QKeySequence::Undo), "arrow.uturn.backward",
        [this] { model().operations().undo(); });
    add("redo", tr("Redo"),
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)},
        "arrow.uturn.forward", [this] { model().operations().redo(); });
    actions_->addPane(*pages_);
}

QWidget* BrowserWindow::makeContent() {
    auto* content = new QWidget(this);
    toolbar_ = new BrowserToolbar(
        group_->app(), [this](std::string_view id) { return actions_->action(id); }, content);
    menu_ = new WindowMenu(*actions_, model(), this);
    toolbar_->setMenu(menu_);
    tabs_ = new TabStrip(*group_, actions_->action("tab.new"), content);
    searchRow_ = new SearchRow(content);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(toolbar_);
    column->addWidget(tabs_);
    column->addWidget(searchRow_);
    column->addWidget(pages_, 1);
    return content;
}

void BrowserWindow::connectParts() {
    connect(group_.get(), &TabGroup::tabOpened, this, &BrowserWindow::addPage);
    connect(group_.get(), &TabGroup::tabClosing, this,
            [this](int, WindowModel& tab) { removePage(tab); });
    connect(group_.get(), &TabGroup::currentChanged, this, &BrowserWindow::followTab);
    // The tabs were taken away by another way than the window's own.
    connect(group_.get(), &TabGroup::emptied, this, &QWidget::close);
    connect(tabs_, &TabStrip::closePressed, this, &BrowserWindow::closeTab);
    connect(tabs_, &TabStrip::detachPressed, this, &BrowserWindow::detachTab);
    // Its window may be left without tabs, so the bar that told of it has to be through first.
    connect(tabs_, &TabStrip::tornOff, this, &BrowserWindow::tearTab, Qt::QueuedConnection);
    connect(&group_->app().history(), &HistoryModel::changed, this, &BrowserWindow::updateUndo);
    const auto showTrash = [this] {
        actions_->action("trash.empty")->setEnabled(TrashBar::canEmpty(group_->app().trash()));
    };
    connect(&group_->app().trash(), &TrashService::changed, this, showTrash);
    showTrash();

    connect(sidebar_, &Sidebar::chosen, this, [this](const Location& location) {
        model().active().navigate(location);
        if (isSidebarFolded()) {
            isUnfolded_ = false;
            updateSides();
        }
        page().takeFocus();
    });
    const auto drop = [this](const FileDrop& dropped) { dropped.perform(model().operations()); };
    sidebarActions_ = new SidebarActions(*sidebar_, *group_, *this);
    connect(sidebarActions_, &SidebarActions::windowWanted, this,
            [this](const Location& location) { openWindow(location); });
    connect(sidebarActions_, &SidebarActions::emptyTrashWanted, this,
            [this] { page().active().trash().ask(); });
    connect(&toolbar_->path(), &PathBar::dropped, this, drop);
    connect(&toolbar_->path(), &PathBar::chosenAside, this, [this](const Location& place) {
        if (WindowModel* tab = group_->current()) tab->openAside(place);
    });
    connect(toolbar_, &BrowserToolbar::wentSomewhere, this, [this] { page().takeFocus(); });
    const auto enter = [this] { page().active().enter(); };
    SearchField& search = toolbar_->search();
    connect(&search, &SearchField::downPressed, this, enter);
    connect(&search, &SearchField::escaped, this, enter);
    connect(&search, &SearchField::backspaceInEmpty, this, [this] {
        if (!searchRow_->chips().chips().empty()) searchRow_->chips().focusLast();
    });
    connect(&searchRow_->chips(), &ChipRow::focusLost, &search, &SearchField::beginEditing);
}

// --- Tabs and panes

TabPage* BrowserWindow::pageOf(const WindowModel& tab) const {
    for (int i = 0; i < pages_->count(); ++i) {
        auto* page = static_cast<TabPage*>(pages_->widget(i));
        if (&page->tab() == &tab) return page;
    }
    return nullptr;
}

void BrowserWindow::addPage(int index) {
    WindowModel& tab = group_->tab(index);
    auto* page = new TabPage(tab, *this, *tabs_);
    pages_->addWidget(page);
    connect(page, &TabPage::leftAtTop, this, [this] {
        if (model().active().query()) toolbar_->search().beginEditing();
    });
    connect(page, &TabPage::searchLeftStart, this,
            [this] { toolbar_->search().continueEditing(); });
    connect(&tab, &WindowModel::openWindowRequested, page,
            [this](const URL& folder) { openWindow(Location::folder(folder)); });
    connect(&tab, &WindowModel::openFilesRequested, page,
            [&tab](const std::vector<URL>& files) { FileOpener::open(tab, files); });
}

void BrowserWindow::removePage(WindowModel& tab) {
    // It may have been opened for that tab.
    delete settings_;
    if (!group_->current()) {
        tabFollowing_.reset();
        paneFollowing_.reset();
        actions_->setWindow(nullptr);
        changes_->follow(nullptr);
        quickLook_->setWindow(nullptr);
        inspector_->setPane(nullptr, nullptr);
        toolbar_->follow(nullptr, nullptr);
        searchRow_->follow(nullptr, nullptr);
    }
    delete pageOf(tab);
}

void BrowserWindow::followTab() {
    WindowModel* tab = group_->current();
    if (!tab) return;
    // Whoever goes along the tabs by the arrow keys stays there.
    const bool takesKeyboard = !tabs_->isAncestorOf(focusWidget());
    for (int i = 0; i < pages_->count(); ++i) {
        auto* page = static_cast<TabPage*>(pages_->widget(i));
        if (&page->tab() != tab) page->setInFront(false);
    }
    TabPage& front = page();
    pages_->setCurrentWidget(&front);
    tabFollowing_ = std::make_unique<QObject>();
    QObject* following = tabFollowing_.get();
    connect(tab, &WindowModel::titleChanged, following, [this] { showLocation(); });
    connect(tab, &WindowModel::sidebarVisibleChanged, following, [this] { updateSides(); });
    connect(tab, &WindowModel::showsInspectorChanged, following, [this] { updateSides(); });
    connect(tab, &WindowModel::activePaneChanged, following, [this] { followPane(); });
    connect(tab, &WindowModel::panesChanged, following, [this] { followPane(); });
    menu_->follow(*tab);
    actions_->setWindow(tab);
    changes_->follow(tab);
    quickLook_->setWindow(tab);
    followPane();
    updateSides();
    front.setInFront(true);
    if (takesKeyboard) front.takeFocus();
    // Once the tab that was closed is among those that can be reopened.
    actions_->updateSoon();
}

void BrowserWindow::followPane() {
    PaneModel& pane = model().active();
    paneFollowing_ = std::make_unique<QObject>();
    QObject* following = paneFollowing_.get();
    connect(&pane, &PaneModel::locationChanged, following, [this] {
        showLocation();
        // Who goes somewhere wants to go on there. A button or a field that was used keeps it.
        const QWidget* focus = focusWidget();
        if (!focus || focus == this || focus == sidebar_ || sidebar_->isAncestorOf(focus))
            page().takeFocus();
    });
    toolbar_->follow(&model(), &pane);
    searchRow_->follow(&model(), &pane);
    inspector_->setPane(&model(), &pane);
    showLocation();
}

void BrowserWindow::openContextMenu() {
    QWidget* target = focusWidget();
    if (!target) return;
    // As the toolkit does for the key that has a menu on it.
    const QPoint place = target->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, place, target->mapToGlobal(place));
    QApplication::sendEvent(target, &event);
}

void BrowserWindow::stepPart(bool next) {
    struct Part {
        bool hasKeyboard;
        std::function<void()> enter;
    };
    const QWidget* focus = focusWidget();
    const auto holds = [focus](const QWidget& room) {
        return focus && (focus == &room || room.isAncestorOf(focus));
    };
    std::vector<Part> parts;
    if (sidebar_->isVisible())
        parts.push_back(
            {holds(*sidebar_), [this] { sidebar_->setFocus(Qt::ShortcutFocusReason); }});
    parts.push_back(
        {holds(*toolbar_) || holds(*searchRow_), [this] { toolbar_->search().beginEditing(); }});
    for (int i = 0; i < static_cast<int>(model().panes().size()); ++i)
        parts.push_back({holds(page()) && model().activeIndex() == i, [this, i] {
                             model().setActiveIndex(i);
                             page().takeFocus();
                         }});
    if (inspector_->isVisible())
        parts.push_back({holds(*inspector_), [this] { FocusRing::step(*inspector_, true); }});
    const auto count = parts.size();
    const auto now =
        static_cast<std::size_t>(std::find_if(parts.begin(), parts.end(),
                                              [](const Part& part) { return part.hasKeyboard; }) -
                                 parts.begin());
    // From nowhere to the first pane.
    if (now == count) return page().takeFocus();
    // Where there is nothing that could have the keyboard, it goes on.
    for (std::size_t i = 1; i < count && focusWidget() == focus; ++i)
        parts[(now + (next ? i : count - i)) % count].enter();
}

void BrowserWindow::closeTab(int index) {
    if (group_->count() > 1)
        group_->close(index);
    else
        close();
}

BrowserWindow* BrowserWindow::detachTab(int index) {
    if (group_->count() < 2) return nullptr;
    auto window = new BrowserWindow(group_->take(index));
    window->resize(size());
    window->show();
    return window;
}

void BrowserWindow::tearTab(int index, const QPoint& globalPosition) {
    auto* other = qobject_cast<BrowserWindow*>(QApplication::topLevelAt(globalPosition));
    if (other && other != this) {
        other->group().add(group_->take(index));
        other->activateWindow();
    } else if (BrowserWindow* window = detachTab(index)) {
        const QRect room = window->screen()->availableGeometry();
        const auto within = [](int wanted, int first, int last) {
            return std::max(first, std::min(wanted, last));
        };
        window->move(within(globalPosition.x() - window->width() / 2, room.left(),
                            room.right() + 1 - window->width()),
                     within(globalPosition.y(), room.top(), room.bottom() + 1 - window->height()));
    }
}

// --- What is shown

void BrowserWindow::showLocation() {
    setWindowTitle(model().title());
    sidebar_->setCurrent(model().active().location());
}

void BrowserWindow::updateUndo() {
    HistoryModel& history = group_->app().history();
    const auto show = [this](const char* id, const QString& verb,
                             const std::optional<QString>& title) {
        QAction* action = actions_->action(id);
        action->setEnabled(title.has_value());
        action->setText(
            title ? tr("%1 %2").arg(verb, fontMetrics().elidedText(*title, Qt::ElideMiddle,
                                                                   Metrics::menuTextWidth))
                  : verb);
    };
    show("undo", tr("Undo"), history.nextUndoTitle());
    show("redo", tr("Redo"), history.nextRedoTitle());
}

bool BrowserWindow::hasRoomForInspector() const {
    return width() >= Metrics::contentMinimum + Metrics::inspectorMinimum;
}

bool BrowserWindow::isSidebarFolded() const {
    const bool besideInspector = group_->current()->showsInspector() && hasRoomForInspector();
    return width() < (besideInspector ? Metrics::inspectorFolds : Metrics::sidebarFolds);
}

void BrowserWindow::updateSides() {
    inspector_->setVisible(model().showsInspector() && hasRoomForInspector());
    const bool isNarrow = isSidebarFolded();
    const bool isShown = isNarrow ? isUnfolded_ : model().sidebarVisible();
    sidebar_->setVisible(isShown);
    actions_->action("sidebar")->setText(isShown ? tr("Hide Sidebar") : tr("Show Sidebar"));
    // In a wide window it is in the menu.
    toolbar_->sidebarButton().setVisible(isNarrow || !isShown);
}

// --- Sizes

void BrowserWindow::restoreLayout() {
    WindowLayout layout = group_->layout();
    if (layout.width <= 0) layout = group_->app().lastLayout();
    QSize size = firstSize;
    if (layout.width > 0 && layout.height > 0)
        size = QSize(layout.width, layout.height).boundedTo(screen()->availableSize());
    resize(size.expandedTo(minimumSize()));
    if (layout.isMaximized) setWindowState(Qt::WindowMaximized);
    const int sidebar = layout.sidebarWidth > 0 ? layout.sidebarWidth : Metrics::sidebarDefault;
    const int inspector =
        layout.inspectorWidth > 0 ? layout.inspectorWidth : Metrics::inspectorMinimum;
    splitter_->setSizes({sidebar, width() - sidebar - inspector, inspector});
    sidebarModel_->setFoldedNames(layout.foldedSections);
    connect(sidebarModel_, &SidebarModel::foldedChanged, &layoutTimer_,
            qOverload<>(&QTimer::start));
    layoutTimer_.setSingleShot(true);
    layoutTimer_.setInterval(layoutDelay);
    connect(&layoutTimer_, &QTimer::timeout, this, &BrowserWindow::rememberLayout);
    connect(splitter_, &QSplitter::splitterMoved, &layoutTimer_, qOverload<>(&QTimer::start));
}

void BrowserWindow::rememberLayout() {
    layoutTimer_.stop();
    WindowLayout layout = group_->layout();
    layout.isMaximized = isMaximized();
    // A window as large as the screen keeps the size that it goes back to.
    if (!isMaximized() && !isFullScreen()) {
        layout.width = width();
        layout.height = height();
    }
    if (sidebar_->isVisible()) layout.sidebarWidth = sidebar_->width();
    layout.foldedSections = sidebarModel_->foldedNames();
    if (inspector_->isVisible()) layout.inspectorWidth = inspector_->width();
    group_->setLayout(layout);
}

// --- Events

void BrowserWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(changes_->mayClose());
    if (event->isAccepted() && layoutTimer_.isActive()) rememberLayout();
}

void BrowserWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (!group_->current()) return;
    if (!isSidebarFolded()) isUnfolded_ = false;
    updateSides();
    if (isVisible()) layoutTimer_.start();
}

void BrowserWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && model().active().query()) {
        model().active().clearSearch(false);
        page().active().enter();
        return;
    }
    if (event->key() == Qt::Key_Escape && page().active().rows().stopWaiting()) return;
    QWidget::keyPressEvent(event);
}

// --- Going places

BrowserWindow& BrowserWindow::openWindow(const Location& location) {
    auto* window = new BrowserWindow(
        std::make_unique<WindowModel>(group_->app(), WindowSnapshot::of(location)));
    window->resize(size());
    window->show();
    return *window;
}

}  // namespace tarn
