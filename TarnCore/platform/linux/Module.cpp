#include "TarnCore/platform/linux/Module.h"

#include <array>

#include <dlfcn.h>
#include <unistd.h>

#include "TarnCore/base/URL.h"

namespace tarn {

void* loadModuleSymbol(const std::string& name, const char* symbol) {
    std::array<char, 4096> program{};
    const ssize_t length = readlink("/proc/self/exe", program.data(), program.size() - 1);
    if (length <= 0) return nullptr;
    const URL beside = URL::fromPath(program.data()).parent();
    for (const char* folder : {"../lib/tarn", "../" TARN_LIBDIR "/tarn"}) {
        const URL file = beside.appending(folder).appending(name + ".so");
        if (void* module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL))
            return dlsym(module, symbol);
    }
    return nullptr;
}

}  // namespace tarn
