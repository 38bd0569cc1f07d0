#include "Tarn/ui/menus/WorkspaceActions.h"

#include <utility>

#include <QtCore/QCoreApplication>
#include <QtGui/QAction>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/UserLists.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/sheets/RenameWorkspaceSheet.h"
#include "Tarn/ui/theme/Icons.h"

namespace tarn::WorkspaceActions {
namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(tarn::WorkspaceActions)
};

/// Over which the sheets open; a menu is a window itself.
QWidget& windowOf(QWidget& target) {
    QWidget* shown = &target;
    while (qobject_cast<QMenu*>(shown) && shown->parentWidget()) shown = shown->parentWidget();
    return *shown->window();
}

void rename(UserLists& lists, const UUID& id, QWidget& window) {
    const Workspace* workspace = lists.workspace(id);
    if (!workspace) return;
    auto* sheet = new RenameWorkspaceSheet(window, lists, *workspace);
    sheet->open(sheet->firstField());
}

void remove(UserLists& lists, const UUID& id, QWidget& window) {
    const Workspace* workspace = lists.workspace(id);
    if (!workspace) return;
    auto* question = new QuestionSheet(
        {Words::tr("Delete the workspace “%1”?").arg(displayText(workspace->name)),
         Words::tr("The folders that its tabs show stay as they are."), Words::tr("Delete"),
         Words::tr("Cancel")},
        window);
    QObject::connect(question, &QuestionSheet::accepted, &lists,
                     [&lists, id] { lists.removeWorkspace(id); });
    question->open(question->no());
}

}  // namespace

void addTo(QWidget& target, WindowModel& tab, std::function<UUID()> workspace) {
    const bool hasKeys = !qobject_cast<QMenu*>(&target);
    UserLists& lists = tab.app().lists();
    const auto add = [&](const char* symbol, const QString& title, const QKeySequence& key,
                         std::function<void()> run) {
        auto* action = new QAction(Icons::symbol(symbol), title, &target);
        action->setShortcutContext(Qt::WidgetShortcut);
        if (hasKeys) action->setShortcut(key);
        QObject::connect(action, &QAction::triggered, &target, std::move(run));
        target.addAction(action);
    };
    add("arrow.up.forward.app", Words::tr("Open"), {}, [&tab, workspace] {
        if (TabGroup* group = tab.group()) group->openWorkspace(workspace());
    });
    add("pencil", Words::tr("Rename…"), Qt::Key_F2,
        [&target, &lists, workspace] { rename(lists, workspace(), windowOf(target)); });
    add("trash", Words::tr("Delete…"), Qt::Key_Delete,
        [&target, &lists, workspace] { remove(lists, workspace(), windowOf(target)); });
    if (hasKeys) target.setContextMenuPolicy(Qt::ActionsContextMenu);
}

}  // namespace tarn::WorkspaceActions
