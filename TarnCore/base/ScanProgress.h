#pragma once

#include <cstdint>
#include <string>

namespace tarn {

/// How far a long scan has come.
struct ScanProgress {
    std::string phase;  ///< Shown to the user ("Comparing files…").
    std::int64_t done = 0;
    std::int64_t total = 0;  ///< 0 while unknown.
    bool operator==(const ScanProgress&) const = default;
};

}  // namespace tarn
