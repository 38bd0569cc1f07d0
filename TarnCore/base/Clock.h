#pragma once

#include "TarnCore/base/Date.h"

namespace tarn {

/// Tells the time, so that a test or `--now` can tell another one. Callable from any thread.
class Clock {
public:
    virtual ~Clock() = default;
    virtual Date now() const = 0;
};

/// Always the same instant.
class FixedClock final : public Clock {
public:
    explicit FixedClock(Date now) : now_(now) {}
    Date now() const override { return now_; }

private:
    Date now_;
};

}  // namespace tarn
