#include "TarnCore/platform/linux/DesktopServices.h"

#include "TarnCore/platform/linux/Module.h"

namespace tarn {

const DesktopServices* loadDesktopServices() {
    static const DesktopServices* const services = []() -> const DesktopServices* {
        void* symbol = loadModuleSymbol("tarn-desktop", desktopServicesSymbol);
        if (!symbol) return nullptr;
        return reinterpret_cast<DesktopServicesEntry*>(symbol)(desktopServicesVersion);
    }();
    return services;
}

}  // namespace tarn
