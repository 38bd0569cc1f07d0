#include "Tarn/ui/pane/ColumnMenu.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QMenu>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/model/PaneItems.h"

namespace tarn {
namespace {

/// Whose texts they are.
struct Words {
    Q_DECLARE_TR_FUNCTIONS(tarn::ColumnMenu)
};

QString title(PaneColumn column) {
    const auto field = PaneItems::sortField(column);
    return coreText(field ? SortFields::title(*field) : "Folder");
}

}  // namespace

void ColumnMenu::fill(QMenu& menu, ListColumns& columns) {
    for (const PaneColumn which :
         {PaneColumn::modified, PaneColumn::created, PaneColumn::added, PaneColumn::size,
          PaneColumn::kind, PaneColumn::tags, PaneColumn::source, PaneColumn::folder}) {
        QAction* action = menu.addAction(
            which == PaneColumn::folder ? Words::tr("Folder, in Results") : title(which), &menu,
            [&columns, which](bool isShown) { columns.setShown(which, isShown); });
        action->setCheckable(true);
        action->setChecked(columns.column(which).isShown);
    }
    menu.addSeparator();
    QAction* reset =
        menu.addAction(Words::tr("Standard Columns"), &menu, [&columns] { columns.reset(); });
    reset->setEnabled(columns.columns() != ListColumns::standard());
}

}  // namespace tarn
