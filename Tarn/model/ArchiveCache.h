#pragma once

#include <list>
#include <memory>
#include <vector>

#include "TarnCore/archive/ArchiveEntry.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// What the archives that were looked into last hold, so that going deeper, up or back in one
/// reads it once. Callable from any thread; reading blocks.
class ArchiveCache {
public:
    using Entries = std::shared_ptr<const std::vector<ArchiveEntry>>;

    /// Archives kept at a time; about 100 bytes for each member.
    static constexpr std::size_t mostArchives = 4;

    /// The same list as before while the file is the same by date and size. Throws ArchiveError,
    /// also when `token` was set, and ListingError when there is no such file.
    Entries entries(const URL& archive, const CancelToken& token = {});

private:
    struct Kept {
        URL archive;
        Date modified;
        std::int64_t size = 0;
        Entries entries;
    };
    Guarded<std::list<Kept>> kept_;  ///< Most recently used first.
};

}  // namespace tarn
