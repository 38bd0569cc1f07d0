#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace tarn {

/// Decides when changed paths are told: the first of a burst at once, what follows together, not
/// earlier than `latency` after the last time. Knows no clock: times are seconds of any clock that
/// only goes forward.
class ChangeBurst {
public:
    /// A burst of more paths is told as its roots alone.
    static constexpr std::size_t mostPaths = 10'000;

    ChangeBurst(double latency, std::vector<std::string> roots)
        : latency_(latency), roots_(std::move(roots)) {}

    void add(std::string path);
    /// Something may have been missed.
    void addRoots();

    /// Seconds until there is something to tell, 0 when it is time; absent when nothing waits.
    std::optional<double> due(double now) const;

    /// What is to be told now, each path once, in the order in which they came. The caller tells
    /// it.
    std::vector<std::string> take(double now);

private:
    double latency_;
    std::vector<std::string> roots_;
    std::vector<std::string> paths_;
    std::unordered_set<std::string> seen_;
    bool isCollapsed_ = false;
    std::optional<double> lastTold_;
};

}  // namespace tarn
