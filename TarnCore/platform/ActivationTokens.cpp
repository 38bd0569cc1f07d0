#include "TarnCore/platform/ActivationTokens.h"

#include <utility>

namespace tarn {
namespace {

std::shared_ptr<const ActivationTokens>& ofThisProcess() {
    static std::shared_ptr<const ActivationTokens> tokens;
    return tokens;
}

}  // namespace

const ActivationTokens* ActivationTokens::current() { return ofThisProcess().get(); }
void ActivationTokens::setCurrent(std::shared_ptr<const ActivationTokens> tokens) {
    ofThisProcess() = std::move(tokens);
}

}  // namespace tarn
