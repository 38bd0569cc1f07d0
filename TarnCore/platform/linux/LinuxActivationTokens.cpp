#include "TarnCore/platform/linux/LinuxActivationTokens.h"

#include "TarnCore/platform/linux/Module.h"

namespace tarn {
namespace {

const ActivationTokens* module() {
    static const ActivationTokens* const tokens = [] {
        auto* entry = reinterpret_cast<ActivationTokensEntry*>(
            loadModuleSymbol("tarn-wayland", activationTokensSymbol));
        return entry ? entry(activationTokensVersion) : nullptr;
    }();
    return tokens;
}

}  // namespace

bool LinuxActivationTokens::prepare(wl_display* display, std::chrono::milliseconds patience) const {
    return module() && module()->prepare(display, patience);
}

std::unique_ptr<ActivationTokens::Request> LinuxActivationTokens::ask(
    const Origin& origin, const std::string& desktopEntry) const {
    return module() ? module()->ask(origin, desktopEntry) : nullptr;
}

}  // namespace tarn
