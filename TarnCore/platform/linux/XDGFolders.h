#pragma once

#include <string>

#include "TarnCore/base/URL.h"

/// The desktop's folders for programs' data. With TARN_ISOLATED_ROOT set and not empty, all lie in
/// "Home" inside that root and the rest of the environment does not count. The environment is read
/// at every call.
namespace tarn::XDGFolders {
URL home();
URL dataHome();    ///< $XDG_DATA_HOME, else ~/.local/share.
URL configHome();  ///< $XDG_CONFIG_HOME, else ~/.config.
URL cacheHome();   ///< $XDG_CACHE_HOME, else ~/.cache.
}  // namespace tarn::XDGFolders
