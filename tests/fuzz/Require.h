#pragma once

#include <cstdlib>

namespace tarn {

/// What a fuzz target holds to be true of every input; the fuzzer sees the abort.
inline void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace tarn
