#pragma once

#include <utility>

#include "TarnCore/platform/Platform.h"

namespace tarn {

/// Other services for the length of a scope; tests only, while no other thread asks for them.
class ScopedPlatform {
public:
    explicit ScopedPlatform(Platform platform) : previous_(Platform::current()) {
        Platform::setCurrent(std::move(platform));
    }
    ~ScopedPlatform() { Platform::setCurrent(std::move(previous_)); }
    ScopedPlatform(const ScopedPlatform&) = delete;
    ScopedPlatform& operator=(const ScopedPlatform&) = delete;

private:
    Platform previous_;
};

}  // namespace tarn
