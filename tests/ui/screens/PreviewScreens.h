#pragma once

#include "tests/ui/screens/Screens.h"

namespace tarn {

/// What the space bar shows of each kind of file, for looking at: how long the reading of some
/// takes and what comes of it depends on the machine.
std::span<const Screen> previewScreens();

}  // namespace tarn
