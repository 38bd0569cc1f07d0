#include "TarnCore/platform/Platform.h"

#include <cassert>
#include <utility>

namespace tarn {
namespace {

Platform& instance() {
    static Platform platform;
    return platform;
}

}  // namespace

const Platform& Platform::current() {
    assert(instance().files && "Platform::setCurrent was not called");
    return instance();
}

void Platform::setCurrent(Platform platform) { instance() = std::move(platform); }

}  // namespace tarn
