#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// How much came from one website or app.
struct SourceSummary {
    std::string name;
    std::int64_t count = 0;  ///< Files.
    std::int64_t bytes = 0;
    bool isApp = false;  ///< It is no website.
    bool operator==(const SourceSummary&) const = default;
};

namespace SourceSummaries {

/// The sources of the files below `roots`, the one with most files first. Looks `maxDepth` folders
/// deep, 0 meaning the roots' own files, and at no more than `limit` files. Hidden items, the
/// insides of packages and the data of programs do not count. Blocks; for any thread but the main
/// one. Soon after `token` was set it returns what was found until then.
std::vector<SourceSummary> summarize(const std::vector<URL>& roots, std::size_t maxDepth,
                                     std::size_t limit, const CancelToken& token = {});

}  // namespace SourceSummaries

}  // namespace tarn
