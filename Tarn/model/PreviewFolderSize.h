#pragma once

#include <cstdint>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// How much is in a folder and all folders below it.
struct PreviewFolderSize {
    std::int64_t bytes = 0;  ///< As the files say; one with several names counts once.
    std::int64_t items = 0;
    bool isWhole = true;  ///< Nothing had to be left out.

    /// Walks the tree; links are not followed, other disks not entered. Not on the main thread.
    static PreviewFolderSize measure(const URL& folder, const CancelToken& token);
};

}  // namespace tarn
