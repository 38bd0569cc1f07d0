#pragma once

#include <optional>

namespace tarn {

/// The time that a transfer still takes, calm enough to be read.
///
/// The estimate is averaged over some seconds and then counts down by itself in round steps. It is
/// corrected upwards only when it has been too short for a while, so that it never jumps about.
class TimeLeft {
public:
    /// `estimate` is the raw guess in seconds, absent when there is none; `now` counts seconds from
    /// any moment and never goes back. Gives the seconds to show, absent while there is too little
    /// to go by.
    std::optional<double> update(std::optional<double> estimate, double now);
    void reset() { *this = TimeLeft(); }

private:
    std::optional<double> began_;     ///< When the first estimate came.
    std::optional<double> smoothed_;  ///< Seconds left.
    double last_ = 0;
    std::optional<double> shown_;
    std::optional<double> tooShortSince_;
};

}  // namespace tarn
