#include "TarnCore/platform/linux/XDGFolders.h"

#include <array>
#include <cstdlib>
#include <string_view>

#include <pwd.h>
#include <unistd.h>

namespace tarn::XDGFolders {
namespace {

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

bool isIsolated() { return !environment("TARN_ISOLATED_ROOT").empty(); }

/// The XDG base directories are absolute paths; a relative one is to be ignored.
URL folder(const char* variable, std::string_view belowHome) {
    const std::string_view given = environment(variable);
    if (!isIsolated() && given.starts_with('/')) return URL::fromPath(given);
    return home().appending(belowHome);
}

}  // namespace

URL home() {
    if (isIsolated()) {
        std::array<char, 4096> here{};
        const URL base = getcwd(here.data(), here.size()) ? URL::fromPath(here.data()) : URL();
        return URL::fromPath(environment("TARN_ISOLATED_ROOT"), base).appending("Home");
    }
    if (const std::string_view given = environment("HOME"); given.starts_with('/'))
        return URL::fromPath(given);
    passwd entry{};
    passwd* found = nullptr;
    std::array<char, 4096> buffer{};
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found)
        return URL::fromPath(entry.pw_dir);
    return URL();
}

URL dataHome() { return folder("XDG_DATA_HOME", ".local/share"); }
URL configHome() { return folder("XDG_CONFIG_HOME", ".config"); }
URL cacheHome() { return folder("XDG_CACHE_HOME", ".cache"); }

}  // namespace tarn::XDGFolders
