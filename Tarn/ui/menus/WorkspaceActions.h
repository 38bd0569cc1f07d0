#pragma once

#include <functional>

class QWidget;

namespace tarn {

class UUID;
class WindowModel;

/// What can be done with a workspace where the window offers it. Main thread only.
namespace WorkspaceActions {

/// Gives “Open”, “Rename…” and “Delete…” to a menu, or to the widget that stands for the workspace:
/// these are its menu then, and have keys while the keyboard is there. `workspace` is asked when
/// one of them is chosen; nothing is done with one that has gone.
void addTo(QWidget& target, WindowModel& tab, std::function<UUID()> workspace);

}  // namespace WorkspaceActions
}  // namespace tarn
