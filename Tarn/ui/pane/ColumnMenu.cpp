#include "Tarn/ui/pane/ColumnMenu.h"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QMenu>

#include "Tarn/model/PaneItems.h"

namespace tarn {
namespace {

QString text(const char* source) { return QCoreApplication::translate("tarn::ColumnMenu", source); }

QString title(PaneColumn column) {
    const auto field = PaneItems::sortField(column);
    return text(field ? std::string(SortFields::title(*field)).c_str() : "Folder");
}

}  // namespace

void ColumnMenu::fill(QMenu& menu, ListColumns& columns) {
    for (const PaneColumn which :
         {PaneColumn::modified, PaneColumn::created, PaneColumn::added, PaneColumn::size,
          PaneColumn::kind, PaneColumn::tags, PaneColumn::source, PaneColumn::folder}) {
        QAction* action = menu.addAction(
            which == PaneColumn::folder ? text("Folder, in Results") : title(which), &menu,
            [&columns, which](bool isShown) { columns.setShown(which, isShown); });
        action->setCheckable(true);
        action->setChecked(columns.column(which).isShown);
    }
    menu.addSeparator();
    QAction* reset =
        menu.addAction(text("Standard Columns"), &menu, [&columns] { columns.reset(); });
    reset->setEnabled(columns.columns() != ListColumns::standard());
}

}  // namespace tarn
