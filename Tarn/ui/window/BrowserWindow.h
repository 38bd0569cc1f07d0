#pragma once

#include <map>
#include <memory>
#include <string>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class QAction;
class QMenu;
class QSplitter;
class QToolButton;

namespace tarn {

class BusyLine;
class ChipRow;
class PaneWidget;
class PathBar;
class SearchField;
class SettingsSheet;
class Sidebar;
class SidebarModel;
class TransfersButton;
class TrashBar;
class WindowChanges;
class WindowModel;
struct Location;

/// One browser window: the sidebar, one row of tools, the chips of a search, and the pane.
///
/// Deletes itself when it is closed. Everything it shows comes from its model, which it owns.
class BrowserWindow final : public QWidget {
    Q_OBJECT
public:
    explicit BrowserWindow(std::unique_ptr<WindowModel> model);
    ~BrowserWindow() override;

    WindowModel& model() { return *model_; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void makeActions();
    void fillMenu();
    QToolButton* makeButton(const char* commandID);
    QWidget* makeToolbar();
    QWidget* makeSearchRow();
    void connectParts();
    void showLocation();
    void showSearch();
    void showSheet();
    void updateActions();
    void updateSidebar();
    void updateUndo();
    void openWindow(const Location& location);
    void openPlaceMenu(const Location& place, const QPoint& globalPosition);

    std::unique_ptr<WindowModel> model_;
    std::map<std::string, QAction*, std::less<>> actions_;  ///< By command id.
    SidebarModel* sidebarModel_;
    Sidebar* sidebar_;
    QSplitter* splitter_;
    QToolButton* sidebarButton_ = nullptr;
    QToolButton* forwardButton_ = nullptr;
    QToolButton* upButton_ = nullptr;
    QToolButton* menuButton_ = nullptr;
    TransfersButton* transfersButton_ = nullptr;
    TrashBar* trashBar_;
    PathBar* path_;
    QPointer<SettingsSheet> settings_;
    SearchField* search_;
    ChipRow* chips_;
    QToolButton* scope_ = nullptr;
    QMenu* scopeMenu_ = nullptr;
    QWidget* searchRow_ = nullptr;
    BusyLine* busy_;
    PaneWidget* pane_;
    WindowChanges* changes_ = nullptr;
    bool isUnfolded_ = false;  ///< The sidebar is wanted although the window is narrow.
};

}  // namespace tarn
