#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "TarnCore/base/URL.h"

namespace tarn {

/// The user's well-known folders as the desktop keeps them in "user-dirs.dirs": lines of the form
/// XDG_DOWNLOAD_DIR="$HOME/Downloads", the value absolute or below $HOME, in double quotes with
/// backslash escapes.
struct UserDirs {
    /// By the part of the key between "XDG_" and "_DIR" ("DOWNLOAD").
    std::unordered_map<std::string, URL> folders;

    /// Lines that do not have this form are passed over. Any bytes.
    static UserDirs parse(std::string_view text, const URL& home);
};

}  // namespace tarn
