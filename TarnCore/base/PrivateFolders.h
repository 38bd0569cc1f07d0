#pragma once

#include "TarnCore/base/URL.h"

namespace tarn::PrivateFolders {

/// Makes a folder that only its owner may enter, and those above it that are missing, as the rules
/// of the desktop for caches and settings want them. False where one of them can’t be made; what is
/// there stays as it is. Callable from any thread.
bool make(const URL& folder);

}  // namespace tarn::PrivateFolders
