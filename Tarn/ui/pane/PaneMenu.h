#pragma once

#include <memory>

class QMenu;
class QWidget;

namespace tarn {

class WindowModel;

/// What can be done with what is under the pointer, from the table of commands.
namespace PaneMenu {

/// For the selected rows, or for the place itself when none is selected.
std::unique_ptr<QMenu> make(WindowModel& window, QWidget* parent);

}  // namespace PaneMenu

}  // namespace tarn
