#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// Where the desktop keeps what it knows of programs. Reads the disk and the environment; any
/// thread.
namespace tarn::DesktopFiles {

/// Empty for what is no file, or too large for one of these.
std::string contents(const std::filesystem::path& file);
/// The absolute paths in a variable of the environment, or in `fallback` where it is not set.
std::vector<std::filesystem::path> folders(const char* variable, std::string_view fallback);
/// Of desktop entries, the user's own first.
std::vector<std::filesystem::path> entryFolders();
/// The lists of who opens what, the user's own first; most are not there.
std::vector<std::filesystem::path> mimeAppsLists();

}  // namespace tarn::DesktopFiles
