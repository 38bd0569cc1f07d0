#pragma once

#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// Running an external tool.
namespace Shell {

/// Seconds; for tools that may work for hours.
inline constexpr double longJob = 21600;

struct Output {
    int status = 0;  ///< The tool's exit status; 128 + the signal's number when one ended it.
    std::string standardOutput;
    std::string standardError;
};

/// Runs the program at an absolute path and waits for its end, at most `timeout` seconds. Its
/// standard input is the open file `input`, from where that stands, and empty for -1. A status that
/// is not zero is for the caller to judge. Throws tarn::Error: “Timed out”, or why the tool could
/// not be started.
Output run(const URL& tool, const std::vector<std::string>& arguments,
           const std::optional<URL>& folder = std::nullopt, double timeout = 60, int input = -1);

}  // namespace Shell

}  // namespace tarn
