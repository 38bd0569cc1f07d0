#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtGui/QKeySequence>

#include "Tarn/commands/PaletteEntries.h"

class QAction;
class QMenu;
class QWidget;

namespace tarn {

class AppModel;
class CommandPalette;
class WindowModel;

/// What a browser window can do, as actions: every command of the registry, and what only a window
/// knows of ("window.new"). Menus, buttons and shortcuts all use these.
///
/// The commands run in the tab that setWindow() names. The keys follow the settings; those that a
/// person gave to a command are taken from whatever had them, so that no key is ambiguous. Main
/// thread only; a part of the window.
class WindowActions final : public QObject {
    Q_OBJECT
public:
    /// Adds the actions to `window`. `app` outlives it.
    WindowActions(AppModel& app, QWidget& window);
    ~WindowActions() override;

    /// The tab that is in front; null while there is none.
    void setWindow(WindowModel* model);

    /// What is done to the selection is done where it can be seen: the keys of these commands work
    /// while the keyboard is in one of the panes, and mean something else in a field or a sidebar.
    void addPane(QWidget& pane);

    /// An action of the window itself. Its keys give way to shortcuts that a person gave away. The
    /// palette offers it unless its priority is low.
    QAction* add(std::string_view id, const QString& title, const QList<QKeySequence>& keys,
                 std::function<void()> run, std::string_view symbol = {});
    /// By the id of a command or of add(); it exists.
    QAction* action(std::string_view id) const;

    /// All commands of a group, in the order of the registry; "Copy Path" in a menu of its own.
    void fillGroup(QMenu& menu, std::string_view group);
    /// The same as a menu of its own, which belongs to `parent`: for a menu bar, or in another
    /// menu.
    QMenu* makeGroup(std::string_view group, QWidget* parent);

    /// Looks again whether commands are enabled and checked, before the next event.
    void updateSoon() { updateTimer_.start(); }
    /// At once: for menus that are about to be shown.
    void update();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeCommands();
    void follow(QObject& pane);
    void followPanes();
    void setKeys();
    void showPalette();
    /// What add() brought, for the palette.
    std::vector<PaletteEntry> ownEntries() const;
    /// The menu that opens one of them.
    void addWorkspaces(QMenu& menu);

    struct Own {
        QAction* action;
        QList<QKeySequence> keys;
        std::string symbol;
    };

    AppModel& app_;
    QWidget& window_;
    QPointer<WindowModel> model_;
    QObject* connections_ = nullptr;  ///< What is connected to `model_`.
    std::map<std::string, QAction*, std::less<>> actions_;
    std::vector<Own> own_;
    QTimer updateTimer_;
    QPointer<CommandPalette> palette_;
};

}  // namespace tarn
