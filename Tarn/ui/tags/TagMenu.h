#pragma once

class QMenu;

namespace tarn {

class WindowModel;

/// The tags of what is selected in a window, in menus.
namespace TagMenu {

/// A row with the seven standard tags as dots; a click gives or takes one.
void addDots(QMenu& menu, WindowModel& window);
/// Every tag by its name, a new one, and the way to be rid of all.
void addNames(QMenu& menu, WindowModel& window);

}  // namespace TagMenu

}  // namespace tarn
