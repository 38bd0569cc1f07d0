#pragma once

namespace tarn {

class PaneView;

/// What screen readers are told of a pane's rows: a list whose items read "NAME, KIND", whether
/// they are selected, and where they are. Main thread only.
namespace PaneAccessibility {

/// Once per process, before the first view is asked for; further calls do nothing.
void install();

/// The keyboard has moved to another row.
void tellFocus(PaneView& view, int row);

}  // namespace PaneAccessibility

}  // namespace tarn
