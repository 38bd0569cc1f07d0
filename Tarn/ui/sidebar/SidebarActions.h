#pragma once

#include <vector>

#include <QtCore/QObject>
#include <QtCore/QPointer>

#include "Tarn/ui/sidebar/Sidebar.h"

class QMenu;

namespace tarn {

class QuestionSheet;
class TabGroup;
class WindowModel;

/// What is done with the rows of a window's sidebar: their menus and keys, and what is dropped on
/// them. Main thread only; a part of the window.
class SidebarActions final : public QObject {
    Q_OBJECT
public:
    /// For the tab of `group` that is in front; sheets open over `window`.
    SidebarActions(Sidebar& sidebar, TabGroup& group, QWidget& window);

    /// What can be done with a row.
    void fillMenu(QMenu& menu, const SidebarRow& row);
    void perform(SidebarAction action, const SidebarRow& row);

    /// Those of them that are folders become favourites, in their order, in front of the one at
    /// `index`. Looked up on the pool.
    static void addFavorites(WindowModel& window, const std::vector<URL>& urls,
                             std::optional<std::size_t> index = {});
    /// The folder that is selected alone, else the one that is shown.
    static void addFavorite(WindowModel& window);
    /// Absent where there is none, or where it is a favourite already.
    static std::optional<URL> favoriteAtHand(const WindowModel& window);

signals:
    void windowWanted(const tarn::Location& location);
    void emptyTrashWanted();

private:
    void addOpening(QMenu& menu, const SidebarRow& row);
    void addFolding(QMenu& menu, const SidebarRow& row);
    void addMoving(QMenu& menu, const SidebarRow& row);
    void fillForHeading(QMenu& menu, const SidebarRow& row);
    void fillForVolume(QMenu& menu, const SidebarRow& row);
    void fillForTrash(QMenu& menu);
    void rename(const SidebarRow& row);
    void remove(const SidebarRow& row);
    void move(const SidebarRow& row, std::size_t index);
    void connectTo(const std::string& address);
    void askToDelete(const SidebarRow& row);
    WindowModel& tab() const;

    Sidebar& sidebar_;
    TabGroup& group_;
    QWidget& window_;
    QPointer<QuestionSheet> question_;
};

}  // namespace tarn
