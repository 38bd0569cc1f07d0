#pragma once

class QWidget;

namespace tarn::FocusRing {

/// Gives the keyboard to the next widget inside `room` that takes it by the Tab key, or to the
/// previous one; after the last comes the first. For what lies over a window and must not let the
/// keyboard out. Main thread only.
void step(QWidget& room, bool next);

}  // namespace tarn::FocusRing
