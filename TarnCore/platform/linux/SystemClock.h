#pragma once

#include "TarnCore/base/Clock.h"

namespace tarn {

/// The machine's own time.
class SystemClock final : public Clock {
public:
    Date now() const override;
};

}  // namespace tarn
