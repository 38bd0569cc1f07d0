#include "Tarn/commands/DesktopFiles.h"

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

namespace fs = std::filesystem;

/// The largest file that is taken for a desktop entry or a list of defaults, in bytes.
constexpr std::uintmax_t largestFile = 1 << 20;

}  // namespace

std::string DesktopFiles::contents(const fs::path& file) {
    std::error_code error;
    if (!fs::is_regular_file(file, error) || fs::file_size(file, error) > largestFile) return {};
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::vector<fs::path> DesktopFiles::folders(const char* variable, std::string_view fallback) {
    const char* set = std::getenv(variable);
    std::vector<fs::path> all;
    for (const std::string_view piece : Text::split(set && *set ? set : fallback, ':'))
        if (piece.starts_with('/')) all.emplace_back(piece);
    return all;
}

std::vector<fs::path> DesktopFiles::entryFolders() {
    std::vector<fs::path> all = {fs::path(Paths::dataHome().path()) / "applications"};
    for (const fs::path& folder : folders("XDG_DATA_DIRS", "/usr/local/share:/usr/share"))
        all.push_back(folder / "applications");
    return all;
}

std::vector<fs::path> DesktopFiles::mimeAppsLists() {
    std::vector<fs::path> all;
    const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
    const auto add = [&](const fs::path& folder) {
        for (const std::string_view piece : Text::split(desktop ? desktop : "", ':'))
            if (!piece.empty())
                all.push_back(folder / (Text::lowercased(piece) + "-mimeapps.list"));
        all.push_back(folder / "mimeapps.list");
    };
    add(Paths::configHome().path());
    for (const fs::path& folder : folders("XDG_CONFIG_DIRS", "/etc/xdg")) add(folder);
    for (const fs::path& folder : entryFolders()) add(folder);
    return all;
}

}  // namespace tarn
