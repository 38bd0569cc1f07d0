#pragma once

#include <cstdint>
#include <deque>
#include <utility>

namespace tarn {

/// Bytes per second over the last three seconds. Times are seconds of any steady clock.
class SpeedMeter {
public:
    static constexpr double window = 3.0;
    /// With less behind it, a speed would only jump.
    static constexpr double shortest = 0.3;

    /// Takes one more sample and returns the speed, which stays as it was while there is too little
    /// to tell.
    double add(double now, std::int64_t doneBytes);

private:
    std::deque<std::pair<double, std::int64_t>> samples_;
    double speed_ = 0;
};

}  // namespace tarn
