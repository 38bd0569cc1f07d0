#pragma once

#include <string>

#include "bench/Bench.h"

namespace tarn::bench {

/// What is promised and what is kept, printed row by row as the figures come in.
class Table {
public:
    Table();

    /// A ratio of times against a peer, which must not be above the goal.
    void ratio(const std::string& name, const std::string& peer, const Comparison& measured,
               double goal);
    /// A figure that is held against a fixed bound, in the same unit.
    void bound(const std::string& name, double figure, double goal, const std::string& unit,
               const std::string& peer = "");

    bool allKept() const { return kept_; }

private:
    void row(const std::string& name, const std::string& ours, const std::string& theirs,
             const std::string& ratio, double figure, double goal);

    bool kept_ = true;
};

}  // namespace tarn::bench
