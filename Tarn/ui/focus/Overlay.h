#pragma once

class QEvent;

/// What lies over a window and takes its place for a while.
namespace tarn::Overlay {

/// Accepts the event when it is one that would otherwise do something in the window below: a key of
/// a command, the wheel, a menu, files that are dragged. True when it was.
bool keeps(QEvent& event);

}  // namespace tarn::Overlay
