#include "TarnCore/platform/ProgramPath.h"

#include <cstdlib>
#include <string>

#include <sys/stat.h>

#include <unistd.h>

#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

constexpr std::string_view usualFolders = "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin";

bool isProgram(const URL& file) {
    struct stat facts {};
    return stat(file.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) &&
           access(file.c_str(), X_OK) == 0;
}

}  // namespace

std::optional<URL> findProgram(std::string_view name) {
    const char* set = std::getenv("PATH");
    const std::string folders = (set ? std::string(set) + ":" : std::string()).append(usualFolders);
    for (const std::string_view folder : Text::split(folders, ':')) {
        // An empty piece would mean the current folder, where no program of ours lies.
        if (!folder.starts_with('/')) continue;
        URL file = URL::fromPath(folder).appending(name);
        if (isProgram(file)) return file;
    }
    return std::nullopt;
}

}  // namespace tarn
