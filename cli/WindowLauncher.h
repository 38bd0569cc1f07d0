#pragma once

#include <string_view>
#include <vector>

/// Starts the window program, which `tarn` becomes.
namespace tarn::cli::WindowLauncher {

/// Replaces this process by tarn-window with these arguments: the one beside this program, else in
/// its libexec folder, else on PATH. Returns only by throwing tarn::Error, when there is none or
/// it cannot be started.
[[noreturn]] void start(const std::vector<std::string_view>& arguments);

}  // namespace tarn::cli::WindowLauncher
