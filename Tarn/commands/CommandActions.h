#pragma once

#include <functional>
#include <string_view>

#include "TarnCore/files/Paths.h"

namespace tarn {

class PaneModel;
class WindowModel;

/// What each command does. Main thread only.
namespace CommandActions {

/// By the id of the command; empty for one that cannot be run yet.
std::function<void(WindowModel&)> action(std::string_view id);

/// Puts the paths of what is selected on the clipboard, one a line; that of the place when nothing
/// is.
void copyPaths(WindowModel& window, CopyPathFormat format);

/// Where the other pane of a split window takes files; null when it does not show a folder.
const PaneModel* targetPane(const WindowModel& window);

}  // namespace CommandActions

}  // namespace tarn
