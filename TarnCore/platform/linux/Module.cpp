#include "TarnCore/platform/linux/Module.h"

#include <array>

#include <dlfcn.h>
#include <unistd.h>

namespace tarn {

std::vector<URL> moduleFolders() {
    std::array<char, 4096> program{};
    const ssize_t length = readlink("/proc/self/exe", program.data(), program.size() - 1);
    if (length <= 0) return {};
    const URL beside = URL::fromPath(program.data()).parent();
    return {beside.appending("../lib/tarn"), beside.appending("../" TARN_LIBDIR "/tarn"), beside};
}

void* loadModuleSymbol(const std::string& name, const char* symbol) {
    for (const URL& folder : moduleFolders()) {
        const URL file = folder.appending(name + ".so");
        if (void* module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL))
            return dlsym(module, symbol);
    }
    return nullptr;
}

}  // namespace tarn
