#pragma once

#include "TarnCore/platform/Platform.h"

namespace tarn {

/// The services of this Linux machine. Cheap: nothing is opened before it is asked for.
Platform makeLinuxPlatform();

}  // namespace tarn
