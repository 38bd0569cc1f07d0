#pragma once

#include <string_view>
#include <vector>

#include "TarnCore/archive/ArchiveEntry.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/files/ZipDirectory.h"

namespace tarn {

class ArchiveStream;

/// The members of an archive as people see them.
namespace ArchiveListing {

std::vector<ArchiveEntry> entries(ZipDirectory directory);

/// Reads the stream to its end. Throws ArchiveError.
std::vector<ArchiveEntry> entries(ArchiveStream& stream, const CancelToken& token);

/// The one member of a compressed file, which is to be called `name`. Throws ArchiveError.
std::vector<ArchiveEntry> singleFile(ArchiveStream& stream, std::string_view name,
                                     const CancelToken& token);

/// Paths cleaned, junk left out, of members with the same path the last one only, and before the
/// first member of a folder that the archive only implies the folder itself.
std::vector<ArchiveEntry> completed(std::vector<ArchiveEntry> members);

}  // namespace ArchiveListing

}  // namespace tarn
