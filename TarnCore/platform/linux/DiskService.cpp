#include "TarnCore/platform/linux/DiskService.h"

#include "TarnCore/platform/linux/Module.h"

namespace tarn {

const DiskService* loadDiskService() {
    static const DiskService* const service = []() -> const DiskService* {
        void* symbol = loadModuleSymbol("tarn-drives", diskServiceSymbol);
        if (!symbol) return nullptr;
        return reinterpret_cast<DiskServiceEntry*>(symbol)(diskServiceVersion);
    }();
    return service;
}

}  // namespace tarn
