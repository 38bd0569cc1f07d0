#pragma once

#include <QtCore/QMargins>

namespace tarn::Margins {

/// Layouts mirror what is in them where one reads from right to left, but not their margins: these
/// have `leading` at the edge where one begins to read. In logical pixels. Main thread only.
QMargins directed(int leading, int top, int trailing, int bottom);

}  // namespace tarn::Margins
