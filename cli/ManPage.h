#pragma once

#include <string>

namespace tarn::cli {

/// tarn(1), in the man macros, from the command table. The same bytes every time.
std::string manPage();

}  // namespace tarn::cli
