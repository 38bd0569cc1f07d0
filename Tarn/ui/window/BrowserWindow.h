#pragma once

#include <memory>

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QWidget>

class QSplitter;
class QStackedWidget;

namespace tarn {

class BrowserToolbar;
class Inspector;
class QuickLook;
class SearchRow;
class SettingsSheet;
class Sidebar;
class SidebarActions;
class SidebarModel;
class TabGroup;
class TabPage;
class TabStrip;
class WindowActions;
class WindowChanges;
class WindowMenu;
class WindowModel;
struct Location;

/// One browser window: the sidebar, one row of tools, the tabs, the chips of a search, the panes of
/// the tab in front, and the inspector. Whatever stands around the panes follows the active one.
///
/// Deletes itself when it is closed. Everything it shows comes from its tabs, which it owns.
class BrowserWindow final : public QWidget {
    Q_OBJECT
public:
    /// With at least one tab.
    explicit BrowserWindow(std::unique_ptr<TabGroup> group);
    /// With this tab.
    explicit BrowserWindow(std::unique_ptr<WindowModel> tab);
    ~BrowserWindow() override;

    TabGroup& group() { return *group_; }
    /// The tab in front.
    WindowModel& model();
    /// What the tab in front shows.
    TabPage& page();

    /// Another window as large as this one.
    BrowserWindow& openWindow(const Location& location);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void makeActions();
    QWidget* makeContent();
    void connectParts();
    void addPage(int index);
    void removePage(WindowModel& tab);
    TabPage* pageOf(const WindowModel& tab) const;
    /// Turns everything to the tab that is in front now.
    void followTab();
    /// Turns everything to the pane that is active in it now.
    void followPane();
    void showLocation();
    bool hasRoomForInspector() const;
    /// There is no room for the sidebar unless it is asked for.
    bool isSidebarFolded() const;
    /// Shows the sidebar and the inspector as the tab in front and the room say.
    void updateSides();
    void updateUndo();
    /// Takes the sizes that were remembered.
    void restoreLayout();
    void rememberLayout();
    /// Gives the keyboard to the next part of the window, or to the one before: the sidebar, the
    /// search, a pane, the inspector.
    void stepPart(bool next);
    /// Of what has the keyboard.
    void openContextMenu();
    void closeTab(int index);
    BrowserWindow* detachTab(int index);
    /// Into the window at that place, else into one of its own there.
    void tearTab(int index, const QPoint& globalPosition);

    std::unique_ptr<TabGroup> group_;
    WindowActions* actions_;
    WindowMenu* menu_ = nullptr;
    SidebarModel* sidebarModel_;
    Sidebar* sidebar_;
    SidebarActions* sidebarActions_ = nullptr;
    QSplitter* splitter_;
    QStackedWidget* pages_;
    Inspector* inspector_;
    QuickLook* quickLook_ = nullptr;
    BrowserToolbar* toolbar_ = nullptr;
    TabStrip* tabs_ = nullptr;
    SearchRow* searchRow_ = nullptr;
    WindowChanges* changes_ = nullptr;
    QPointer<SettingsSheet> settings_;
    std::unique_ptr<QObject> tabFollowing_;   ///< Ends the connections to the tab in front.
    std::unique_ptr<QObject> paneFollowing_;  ///< Ends the connections to its active pane.
    QTimer layoutTimer_;                      ///< Until sizes have come to rest.
    bool isUnfolded_ = false;  ///< The sidebar is wanted although the window is narrow.
};

}  // namespace tarn
