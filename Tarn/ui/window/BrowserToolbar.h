#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include "Tarn/model/PaneModel.h"

class QAction;
class QMenu;
class QToolButton;

namespace tarn {

class AppModel;
class PathBar;
class SearchField;
class TransfersButton;
class WindowModel;

/// The one row of tools of a window: where one can go, where one is, what one searches, what is
/// being transferred, and the menu. It follows one pane at a time.
class BrowserToolbar final : public QWidget {
    Q_OBJECT
public:
    /// `action` gives the action of a command id; it is asked in the constructor only.
    BrowserToolbar(AppModel& app, const std::function<QAction*(std::string_view)>& action,
                   QWidget* parent);
    ~BrowserToolbar() override;

    /// Shows where this pane is from now on, and steers it; null lets go of the last one.
    void follow(WindowModel* tab, PaneModel* pane);

    PathBar& path() { return *path_; }
    SearchField& search() { return *search_; }
    TransfersButton& transfers() { return *transfers_; }
    QToolButton& sidebarButton() { return *sidebarButton_; }

    /// The menu opens below its button.
    void setMenu(QMenu* menu);

signals:
    /// A place was chosen: the keyboard belongs to the rows again.
    void wentSomewhere();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    /// Shows what there is room for.
    void fold();
    void showLocation();
    void showSearchText();

    QPointer<WindowModel> tab_;
    QPointer<PaneModel> pane_;
    std::unique_ptr<QObject> following_;  ///< Ends the connections to what is followed.
    QToolButton* sidebarButton_;
    QToolButton* forwardButton_;
    QToolButton* upButton_;
    QToolButton* menuButton_;
    PathBar* path_;
    SearchField* search_;
    TransfersButton* transfers_;
};

}  // namespace tarn
