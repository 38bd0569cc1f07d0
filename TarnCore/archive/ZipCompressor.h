#pragma once

#include <vector>

#include "TarnCore/archive/ArchiveProgress.h"
#include "TarnCore/base/URL.h"

namespace tarn::ZipCompressor {

/// Makes the zip file and returns where it is; what ArchiveReader::compress promises.
///
/// One item stands at the top of the archive under its own name, several stand in a folder
/// "Archive". Links are kept as links. Sockets, pipes and devices are left out, as they hold
/// nothing. A file that cannot be read fails the whole, for an archive that lacks a file without
/// saying so would be taken for a copy.
URL compress(const std::vector<URL>& urls, const ArchiveWatch& watch);

}  // namespace tarn::ZipCompressor
