#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Tarn/model/PaneRows.h"
#include "TarnCore/archive/ArchiveEntry.h"
#include "TarnCore/files/SortOrder.h"

/// The inside of an archive as rows of a pane. A member's row carries the archive's URL with the
/// path inside behind it ("/a/x.zip/docs/b.txt"), which names no file on the disk.
namespace tarn::ArchiveListing {

/// One folder of the archive, "" for its top; the disk is not touched.
SharedRows rows(const URL& archive, const std::string& inside,
                const std::vector<ArchiveEntry>& entries, bool includeHidden,
                const SortOrder& sort);

/// True for the top and for every folder that `entries` holds.
bool hasFolder(std::string_view inside, const std::vector<ArchiveEntry>& entries);

/// The URL that the row of a member has.
URL url(const URL& archive, const std::string& member);
/// The way back; absent for a URL that is not inside the archive.
std::optional<std::string> member(const URL& archive, const URL& row);

}  // namespace tarn::ArchiveListing
