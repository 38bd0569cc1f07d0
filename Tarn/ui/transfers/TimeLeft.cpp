#include "Tarn/ui/transfers/TimeLeft.h"

#include <algorithm>
#include <cmath>

namespace tarn {
namespace {

/// Seconds of estimates before the first is shown.
constexpr double patience = 1.0;
/// Seconds over which estimates are averaged.
constexpr double memory = 4.0;
/// How much longer than shown it may take, and for how many seconds, before that is admitted.
constexpr double slack = 1.25;
constexpr double admission = 3.0;

/// Steps of 5 seconds below a minute, of 10 below five minutes, of a minute above.
double rounded(double seconds) {
    const double step = seconds < 60 ? 5 : seconds < 300 ? 10 : 60;
    return std::max(step, std::ceil(seconds / step) * step);
}

}  // namespace

std::optional<double> TimeLeft::update(std::optional<double> estimate, double now) {
    if (!estimate || !std::isfinite(*estimate)) {
        reset();
        return std::nullopt;
    }
    const double passed = now - last_;
    last_ = now;
    if (!smoothed_) {
        smoothed_ = *estimate;
        began_ = now;
    } else {
        // At first all estimates count alike, so that a wrong first one is soon forgotten.
        const double part = std::max(1 - std::exp(-passed / memory), passed / (now - *began_));
        smoothed_ = std::max(0.0, *smoothed_ - passed);
        *smoothed_ += (*estimate - *smoothed_) * part;
    }
    if (now - *began_ < patience) return std::nullopt;
    const double next = rounded(*smoothed_);
    if (!shown_ || next < *shown_) {
        shown_ = next;
        tooShortSince_.reset();
    } else if (*smoothed_ > *shown_ * slack) {
        if (!tooShortSince_) tooShortSince_ = now;
        if (now - *tooShortSince_ >= admission) {
            shown_ = next;
            tooShortSince_.reset();
        }
    } else {
        tooShortSince_.reset();
    }
    return shown_;
}

}  // namespace tarn
