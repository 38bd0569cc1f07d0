#pragma once

class QMenu;

namespace tarn {

class ListColumns;

/// The choice of columns, for the menu of the list's header and that of the pane.
namespace ColumnMenu {

void fill(QMenu& menu, ListColumns& columns);

}  // namespace ColumnMenu

}  // namespace tarn
