#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/platform/Shell.h"

namespace tarn {

/// Running tools of the system whose words we read: they speak English in UTF-8, whatever the
/// user's language. Callable from any thread.
namespace PlainTool {

/// The environment of this process with that language, as "NAME=value".
std::vector<std::string> environment();

/// Runs the tool of that name, which is looked for as findProgram() does; absent when it is not
/// installed. Otherwise as Shell::run.
std::optional<Shell::Output> run(std::string_view name, std::vector<std::string> arguments,
                                 double timeout);

}  // namespace PlainTool

}  // namespace tarn
