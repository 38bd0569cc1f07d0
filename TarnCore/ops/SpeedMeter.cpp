#include "TarnCore/ops/SpeedMeter.h"

namespace tarn {

double SpeedMeter::add(double now, std::int64_t doneBytes) {
    samples_.emplace_back(now, doneBytes);
    while (now - samples_.front().first > window) samples_.pop_front();
    const auto& [time, bytes] = samples_.front();
    if (now - time > shortest) speed_ = static_cast<double>(doneBytes - bytes) / (now - time);
    return speed_;
}

}  // namespace tarn
