#pragma once

#include <optional>
#include <vector>

#include "Tarn/model/records/Location.h"

namespace tarn {

/// Where a pane has been, and where it came back from. A value.
class PaneHistory {
public:
    /// The oldest of more is forgotten.
    static constexpr std::size_t limit = 100;

    /// Going from `left` to somewhere new: what lay ahead is forgotten.
    void push(Location left) {
        if (back_.size() >= limit) back_.erase(back_.begin());
        back_.push_back(std::move(left));
        forward_.clear();
    }
    /// The place to go back to from `current`; absent at the beginning.
    std::optional<Location> goBack(const Location& current) {
        return step(back_, forward_, current);
    }
    std::optional<Location> goForward(const Location& current) {
        return step(forward_, back_, current);
    }

    const std::vector<Location>& backStack() const { return back_; }
    const std::vector<Location>& forwardStack() const { return forward_; }

private:
    static std::optional<Location> step(std::vector<Location>& from, std::vector<Location>& to,
                                        const Location& current) {
        if (from.empty()) return std::nullopt;
        Location target = std::move(from.back());
        from.pop_back();
        to.push_back(current);
        return target;
    }

    std::vector<Location> back_;
    std::vector<Location> forward_;
};

}  // namespace tarn
