#include "Tarn/ui/window/WindowMenu.h"

#include <utility>
#include <vector>

#include <QtGui/QActionGroup>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/menus/WindowActions.h"
#include "Tarn/ui/pane/NewFileMenu.h"

namespace tarn {
namespace {

const struct {
    Appearance appearance;
    const char* title;
} appearances[] = {
    {Appearance::system, QT_TRANSLATE_NOOP("tarn::WindowMenu", "Follow the System")},
    {Appearance::light, QT_TRANSLATE_NOOP("tarn::WindowMenu", "Light")},
    {Appearance::dark, QT_TRANSLATE_NOOP("tarn::WindowMenu", "Dark")},
};

}  // namespace

WindowMenu::WindowMenu(WindowActions& actions, WindowModel& tab, QWidget* window)
    : QMenu(window), tab_(&tab), newFile_(new NewFileMenu(tab, this)) {
    connect(this, &QMenu::aboutToShow, &actions, &WindowActions::update);
    const auto add = [this, &actions](std::initializer_list<const char*> ids) {
        for (const char* id : ids) addAction(actions.action(id));
    };
    add({"window.new", "tab.new", "newFolder"});
    addMenu(newFile_)->setIconVisibleInMenu(false);
    addSeparator();
    add({"undo", "redo"});
    addSeparator();
    add({"view.grid", "view.list"});
    addSorting();
    add({"split", "sidebar", "inspector", "hidden", "refresh", "fullScreen"});
    addSeparator();
    // The commands of a group, and below them what the window adds to it.
    const std::pair<const char*, std::vector<const char*>> groups[] = {
        {"Go", {"go.start", "go.trash"}}, {"View", {}}, {"File", {"permissions"}}, {"Window", {}}};
    for (const auto& [group, more] : groups) {
        QMenu* menu = addMenu(actions.makeGroup(group, this))->menu();
        if (!more.empty()) menu->addSeparator();
        for (const char* id : more) menu->addAction(actions.action(id));
    }
    addSeparator();
    add({"palette"});
    addAppearance();
    add({"settings"});
    addSeparator();
    add({"tab.close", "window.close", "quit"});
}

void WindowMenu::follow(WindowModel& tab) {
    tab_ = &tab;
    newFile_->follow(tab);
}

void WindowMenu::addSorting() {
    QMenu* sorting = addMenu(tr("Sort By"));
    auto* fields = new QActionGroup(sorting);
    for (const SortField field : allSortFields) {
        QAction* action =
            sorting->addAction(coreText(SortFields::title(field)), this, [this, field] {
                if (tab_) tab_->active().sortBy(field);
            });
        action->setCheckable(true);
        fields->addAction(action);
        connect(sorting, &QMenu::aboutToShow, action, [this, action, field] {
            action->setChecked(tab_ && tab_->active().sort().field == field);
        });
    }
}

void WindowMenu::addAppearance() {
    QMenu* appearance = addMenu(tr("Appearance"));
    auto* modes = new QActionGroup(appearance);
    for (const auto& choice : appearances) {
        QAction* action =
            appearance->addAction(tr(choice.title), this, [this, wanted = choice.appearance] {
                if (!tab_) return;
                AppSettings settings = tab_->app().settings();
                settings.appearance = wanted;
                tab_->app().setSettings(settings);
            });
        action->setCheckable(true);
        modes->addAction(action);
        connect(appearance, &QMenu::aboutToShow, action, [this, action, shown = choice.appearance] {
            action->setChecked(tab_ && tab_->app().settings().appearance == shown);
        });
    }
}

}  // namespace tarn
