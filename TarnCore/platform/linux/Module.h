#pragma once

#include <string>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// Loads the program's own loadable module `name` ("tarn-desktop") and returns the address of
/// `symbol` in it; null when either is missing. Modules stay loaded.
void* loadModuleSymbol(const std::string& name, const char* symbol);

/// Where modules are looked for: in lib/tarn beside the folder of the program, and in that folder
/// itself, where the helper programs lie among them.
std::vector<URL> moduleFolders();

}  // namespace tarn
