#pragma once

#include <optional>
#include <string_view>

#include "TarnCore/base/URL.h"

namespace tarn {

/// The program of that name in the folders of $PATH, then in the usual ones, among them those of
/// the system's administrator, which are not in every user's $PATH. Absent when there is none.
/// Callable from any thread.
std::optional<URL> findProgram(std::string_view name);

}  // namespace tarn
