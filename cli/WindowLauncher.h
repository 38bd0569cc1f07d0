#pragma once

#include <string>
#include <vector>

#include "TarnCore/base/URL.h"

/// Starts the window program, which `tarn` becomes.
namespace tarn::cli::WindowLauncher {

/// Replaces this process by tarn-window, which is given these options ("--workspace=NAME") and
/// opens these paths: the one beside this program, else the one installed with it in lib/tarn, else
/// on PATH. Returns only by throwing tarn::Error, when there is none or it cannot be started.
[[noreturn]] void start(const std::vector<std::string>& options, const std::vector<URL>& paths);

}  // namespace tarn::cli::WindowLauncher
