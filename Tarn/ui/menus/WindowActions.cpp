#include "Tarn/ui/menus/WindowActions.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include <QtDBus/QDBusConnection>
#include <QtGui/QAction>
#include <QtGui/QActionGroup>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QTextEdit>

#include "Tarn/commands/CommandActions.h"
#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/UserLists.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/menus/FileManagerCall.h"
#include "Tarn/ui/menus/KeyText.h"
#include "Tarn/ui/palette/CommandPalette.h"
#include "Tarn/ui/text/PlainTitle.h"
#include "Tarn/ui/theme/Icons.h"

namespace tarn {
namespace {

QString qstring(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The formats of “Copy Path”, as its menu calls them.
const struct {
    std::string_view id;
    const char* title;
    CopyPathFormat format;
} pathFormats[] = {
    {"copyPath", QT_TRANSLATE_NOOP("tarn::WindowActions", "Full Path"), CopyPathFormat::full},
    {"copyPath.tilde", QT_TRANSLATE_NOOP("tarn::WindowActions", "Path with ~"),
     CopyPathFormat::tilde},
    {"copyPath.quoted", QT_TRANSLATE_NOOP("tarn::WindowActions", "Quoted for Terminal"),
     CopyPathFormat::quoted},
    {"copyPath.url", QT_TRANSLATE_NOOP("tarn::WindowActions", "File URL"), CopyPathFormat::fileURL},
};

/// What a line stands above in the menus: the beginnings of what belongs together.
constexpr std::string_view beginnings[] = {
    "desktop",  "cleanup",   "connect",    "inspector", "refresh",     "transfers", "search",
    "reveal",   "rename",    "copy",       "copyPath",  "compress",    "terminal",  "trash",
    "copyText", "selectAll", "saveSearch", "tab.new",   "music.toggle"};

bool isText(const QWidget* widget) {
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QTextEdit*>(widget) ||
           qobject_cast<const QPlainTextEdit*>(widget);
}

/// A key that moves in the text or changes it, whatever it does elsewhere.
bool isForText(const QKeyEvent& key, const QWidget& field) {
    for (const auto standard : {QKeySequence::Copy, QKeySequence::Cut, QKeySequence::Paste,
                                QKeySequence::Undo, QKeySequence::Redo, QKeySequence::SelectAll})
        if (key.matches(standard)) return true;
    if (key.modifiers() & (Qt::AltModifier | Qt::MetaModifier)) return false;
    switch (key.key()) {
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_Backspace:
        case Qt::Key_Delete:
            return true;
        case Qt::Key_Up:
        case Qt::Key_Down:
            return !qobject_cast<const QLineEdit*>(&field);
        default:
            return false;
    }
}

}  // namespace

WindowActions::WindowActions(AppModel& app, QWidget& window)
    : QObject(&window), app_(app), window_(window) {
    updateTimer_.setSingleShot(true);
    updateTimer_.setInterval(0);
    connect(&updateTimer_, &QTimer::timeout, this, &WindowActions::update);
    makeCommands();
    setKeys();
    window.installEventFilter(this);
    connect(&app, &AppModel::settingsChanged, this, &WindowActions::setKeys);
    connect(&app.history(), &HistoryModel::changed, this, &WindowActions::updateSoon);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now && isText(now) && window_.isAncestorOf(now)) now->installEventFilter(this);
    });
}

WindowActions::~WindowActions() { delete connections_; }

void WindowActions::makeCommands() {
    for (const TarnCommand& command : CommandRegistry::all()) {
        auto* action =
            new QAction(Icons::symbol(command.symbol), CommandRegistry::title(command), this);
        action->setObjectName(qstring(command.id));
        action->setIconVisibleInMenu(false);
        action->setEnabled(false);
        if (command.needsSelection) action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(action, &QAction::triggered, this, [this, &command] {
            if (model_) CommandRegistry::run(command, *model_);
            // One that can be checked and did nothing must not look as if it had.
            updateSoon();
        });
        if (!command.needsSelection) window_.addAction(action);
        actions_.emplace(command.id, action);
    }
    for (const char* id : {"view.grid", "view.list", "hidden", "split", "inspector"})
        action(id)->setCheckable(true);
    auto* modes = new QActionGroup(this);
    modes->addAction(action("view.grid"));
    modes->addAction(action("view.list"));
}

QAction* WindowActions::action(std::string_view id) const {
    const auto found = actions_.find(id);
    Q_ASSERT(found != actions_.end());
    return found->second;
}

QAction* WindowActions::add(std::string_view id, const QString& title,
                            const QList<QKeySequence>& keys, std::function<void()> run,
                            std::string_view symbol) {
    auto* action = new QAction(title, this);
    action->setObjectName(qstring(id));
    if (!symbol.empty()) action->setIcon(Icons::symbol(symbol));
    action->setIconVisibleInMenu(false);
    connect(action, &QAction::triggered, this, std::move(run));
    window_.addAction(action);
    actions_.insert_or_assign(std::string(id), action);
    own_.push_back({action, keys, std::string(symbol)});
    setKeys();
    return action;
}

void WindowActions::addPane(QWidget& pane) {
    for (const TarnCommand& command : CommandRegistry::all())
        if (command.needsSelection) pane.addAction(action(command.id));
}

void WindowActions::setKeys() {
    const auto keys = CommandRegistry::keys(app_.settings());
    std::set<QKeySequence> taken;
    for (const TarnCommand& command : CommandRegistry::all()) {
        QList<QKeySequence> sequences;
        if (const auto found = keys.find(command.id); found != keys.end())
            for (const std::string& key : found->second) sequences.append(KeyText::sequence(key));
        taken.insert(sequences.begin(), sequences.end());
        action(command.id)->setShortcuts(sequences);
    }
    for (const Own& own : own_) {
        QList<QKeySequence> left;
        for (const QKeySequence& key : own.keys)
            if (!taken.contains(key)) left.append(key);
        own.action->setShortcuts(left);
    }
    update();
}

// --- What is shown

void WindowActions::setWindow(WindowModel* model) {
    if (model == model_) return;
    delete std::exchange(connections_, nullptr);
    if (palette_) palette_->finish();
    model_ = model;
    if (!model) return update();
    connections_ = new QObject;
    for (const auto changed :
         {&WindowModel::showHiddenChanged, &WindowModel::showsInspectorChanged,
          &WindowModel::showsQuickLookChanged, &WindowModel::activePaneChanged})
        connect(model, changed, connections_, [this] { updateSoon(); });
    connect(model, &WindowModel::panesChanged, connections_, [this] { followPanes(); });
    connect(model, &WindowModel::showsPaletteChanged, connections_, [this] { showPalette(); });
    connect(model, &WindowModel::revealRequested, connections_,
            [this](const std::vector<URL>& urls) {
                FileManagerCall::showItems(
                    QDBusConnection::sessionBus(), urls, *connections_, [this, urls] {
                        // There is no other file manager: then it is shown here.
                        if (model_ && !urls.empty())
                            model_->active().navigate(Location::folder(urls.front().parent()), true,
                                                      urls);
                    });
            });
    if (TabGroup* group = model->group()) {
        for (const auto changed : {&TabGroup::tabOpened})
            connect(group, changed, connections_, [this] { updateSoon(); });
        connect(group, &TabGroup::tabClosing, connections_, [this] { updateSoon(); });
    }
    followPanes();
    showPalette();
}

void WindowActions::followPanes() {
    if (!model_) return;
    for (const auto& pane : model_->panes()) {
        // Each is told of once, however often it is seen here.
        pane->disconnect(this);
        for (const auto changed :
             {&PaneModel::locationChanged, &PaneModel::stateChanged, &PaneModel::searchChanged,
              &PaneModel::viewModeChanged, &PaneModel::rowsChanged})
            connect(pane.get(), changed, this, &WindowActions::updateSoon);
        pane->selection().disconnect(this);
        connect(&pane->selection(), &QItemSelectionModel::selectionChanged, this,
                &WindowActions::updateSoon);
    }
    update();
}

void WindowActions::update() {
    updateTimer_.stop();
    for (const TarnCommand& command : CommandRegistry::all()) {
        QAction* action = this->action(command.id);
        const QString obstacle = CommandRegistry::obstacle(command, model_);
        action->setEnabled(obstacle.isEmpty());
        QString tip = action->text();
        if (!action->shortcut().isEmpty())
            tip = tr("%1 (%2)").arg(tip, action->shortcut().toString(QKeySequence::NativeText));
        if (!obstacle.isEmpty()) tip += u'\n' + obstacle;
        action->setToolTip(tip);
    }
    if (!model_) return;
    action("hidden")->setChecked(model_->showHidden());
    action("split")->setChecked(model_->isSplit());
    action("inspector")->setChecked(model_->showsInspector());
    action("view.grid")->setChecked(model_->active().viewMode() == ViewMode::grid);
    action("view.list")->setChecked(model_->active().viewMode() == ViewMode::list);
}

void WindowActions::fillGroup(QMenu& menu, std::string_view group) {
    menu.setToolTipsVisible(true);
    connect(&menu, &QMenu::aboutToShow, this, &WindowActions::update);
    for (const TarnCommand& command : CommandRegistry::all()) {
        if (command.group != group) continue;
        if (std::ranges::find(beginnings, command.id) != std::end(beginnings)) menu.addSeparator();
        if (!command.id.starts_with("copyPath")) {
            menu.addAction(action(command.id));
            if (command.id == "workspace.save") addWorkspaces(menu);
            continue;
        }
        if (command.id != "copyPath") continue;
        QMenu* formats = menu.addMenu(tr("Copy Path"));
        for (const auto& format : pathFormats) {
            // Not the action of the command: that has its own title, and that of “Copy Path” copies
            // in the format of the settings.
            QAction* shown =
                formats->addAction(tr(format.title), this, [this, wanted = format.format] {
                    if (model_) CommandActions::copyPaths(*model_, wanted);
                });
            shown->setObjectName(qstring(format.id));
            connect(formats, &QMenu::aboutToShow, shown, [this, shown, id = format.id] {
                const QAction* source = action(id);
                shown->setEnabled(source->isEnabled());
                // Seen here, and pressed on the command itself.
                const QString key = source->shortcut().toString(QKeySequence::NativeText);
                shown->setText(shown->text().section(u'\t', 0, 0) +
                               (key.isEmpty() ? QString() : u'\t' + key));
            });
        }
    }
}

void WindowActions::addWorkspaces(QMenu& menu) {
    QMenu* all = menu.addMenu(tr("Open Workspace"));
    connect(&menu, &QMenu::aboutToShow, all, [this, all] {
        all->clear();
        for (const Workspace& workspace : app_.lists().workspaces()) {
            const QString name = plainTitle(displayText(workspace.name));
            all->addAction(name, this, [this, id = workspace.id] {
                if (model_ && model_->group()) model_->group()->openWorkspace(id);
            });
        }
        all->setEnabled(!all->isEmpty());
    });
}

QMenu* WindowActions::makeGroup(std::string_view group, QWidget* parent) {
    auto* menu = new QMenu(CommandRegistry::groupTitle(group), parent);
    menu->setObjectName(qstring(group));
    fillGroup(*menu, group);
    return menu;
}

std::vector<PaletteEntry> WindowActions::ownEntries() const {
    std::vector<PaletteEntry> entries;
    for (const Own& own : own_) {
        if (own.action->priority() == QAction::LowPriority) continue;
        PaletteEntry entry;
        entry.action = own.action->objectName().toStdString();
        entry.perform = [action = QPointer(own.action)] {
            if (action) action->trigger();
        };
        entry.title = own.action->text();
        entry.symbol = own.symbol;
        entry.keys = own.action->shortcut().toString(QKeySequence::PortableText).toStdString();
        entry.isEnabled = own.action->isEnabled();
        entries.push_back(std::move(entry));
    }
    return entries;
}

void WindowActions::showPalette() {
    const bool isWanted = model_ && model_->showsPalette();
    if (isWanted == (palette_ != nullptr)) return;
    if (!isWanted) return palette_->finish();
    palette_ = new CommandPalette(*model_, ownEntries(), window_);
    connect(palette_, &CommandPalette::finished, this, [this, model = model_] {
        palette_.clear();
        if (model) model->setShowsPalette(false);
    });
    palette_->open();
}

bool WindowActions::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &window_) {
        // Comes before the key is looked up among the actions, which must be up to date by then.
        if (event->type() == QEvent::ShortcutOverride && updateTimer_.isActive()) update();
        return QObject::eventFilter(watched, event);
    }
    if (event->type() == QEvent::ShortcutOverride) {
        const auto& field = *static_cast<QWidget*>(watched);
        if (isForText(*static_cast<QKeyEvent*>(event), field)) {
            event->accept();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace tarn
