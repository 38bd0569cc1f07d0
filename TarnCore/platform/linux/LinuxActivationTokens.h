#pragma once

#include "TarnCore/platform/ActivationTokens.h"

namespace tarn {

/// Through a module that speaks the protocol, loaded with the first question. Without the module
/// there are no tokens.
class LinuxActivationTokens final : public ActivationTokens {
public:
    bool prepare(wl_display* display, std::chrono::milliseconds patience) const override;
    std::unique_ptr<Request> ask(const Origin& origin,
                                 const std::string& desktopEntry) const override;
};

/// The module exports one function of this type and name, which returns null when the module was
/// built for another version of the interface. What it returns lives as long as the process.
using ActivationTokensEntry = const ActivationTokens*(int version);
inline constexpr int activationTokensVersion = 1;
inline constexpr const char* activationTokensSymbol = "tarnActivationTokens";

}  // namespace tarn
