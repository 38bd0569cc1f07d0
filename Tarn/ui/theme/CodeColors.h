#pragma once

#include <QtGui/QColor>

#include "TarnCore/preview/CodeTokens.h"

namespace tarn::CodeColors {

/// The colour of code on the ground of lists and fields (`Colors::base`), 4.5:1 at least, in the
/// appearance that is shown now. Main thread only.
QColor of(CodeToken token);

}  // namespace tarn::CodeColors
