#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/archive/ArchiveProgress.h"
#include "TarnCore/platform/Archives.h"

namespace tarn {

/// What both ways of unpacking are told.
struct UnpackPlan {
    /// The folder that is filled: new, and nobody else's.
    URL folder;
    /// Where in it a member goes, by its cleaned path; absent for one that is not wanted. Several
    /// threads may ask at once.
    std::function<std::optional<std::string>(std::string_view cleaned)> place;
    const Archives& archives;
    const ArchiveWatch& watch;
    /// Bytes that may be written before the disk counts as full.
    std::int64_t room = 0;

    /// The place of a member as the archive names it: absent for what is not wanted, and for junk.
    /// Throws ArchiveError for a path that leads out.
    std::optional<std::string> placeOf(std::string_view path) const;
};

}  // namespace tarn
