#pragma once

#include <string>

namespace tarn {

/// Loads the program's own loadable module `name` ("tarn-desktop") and returns the address of
/// `symbol` in it; null when either is missing. Modules lie in lib/tarn beside the folder of the
/// program. They stay loaded.
void* loadModuleSymbol(const std::string& name, const char* symbol);

}  // namespace tarn
