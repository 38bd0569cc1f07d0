#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QMenu>

namespace tarn {

class NewFileMenu;
class WindowActions;
class WindowModel;

/// The menu of a window: what is used most, and below it every command in the menu of its group.
class WindowMenu final : public QMenu {
    Q_OBJECT
public:
    WindowMenu(WindowActions& actions, WindowModel& tab, QWidget* window);

    /// What is chosen is done in this tab from now on.
    void follow(WindowModel& tab);

private:
    void addSorting();
    void addAppearance();

    QPointer<WindowModel> tab_;
    NewFileMenu* newFile_;
};

}  // namespace tarn
