#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/archive/ArchiveEntry.h"
#include "TarnCore/archive/ArchiveProgress.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/files/ArchiveError.h"

namespace tarn {

/// Looking into archives, unpacking and making them. Synchronous; callable from any thread.
///
/// Unpacking is done in a hidden folder at the target, and what was unpacked gets its name at the
/// end, so that a failure or a cancel leaves nothing behind. Nothing existing is ever replaced:
/// names that are taken get a number. Whatever an archive says, nothing is written outside of the
/// folder; links are made as they are, after everything else, and never followed. Files belong to
/// who unpacks them, and get no bits that lend rights to others (set-user-id and the like).
namespace ArchiveReader {

using Progress = ArchiveProgress;
using Watch = ArchiveWatch;

/// Every member, folders that are only implied included. Throws ArchiveError.
std::vector<ArchiveEntry> entries(const URL& url, const CancelToken& token = {});
/// One level of it; "" is the top.
std::vector<ArchiveEntry> children(std::string_view path, const std::vector<ArchiveEntry>& entries);
/// Into an existing or new folder. What was made: the folder when it is new, or the first that was
/// missing above it, else the items in it.
/// Throws ArchiveError.
std::vector<URL> extract(const URL& from, const URL& to, const Watch& watch = {});
/// Next to the archive; the new item: the only one that the archive holds at its top, else a folder
/// with the archive's name. Throws ArchiveError.
URL extractAll(const URL& url, const Watch& watch = {});
/// Only these members (and what is below them), each under its own name in the folder `to`; where
/// they are now. Throws ArchiveError.
std::vector<URL> extract(const URL& from, const std::vector<std::string>& members, const URL& to,
                         const Watch& watch = {});
/// A zip file next to the first item. Throws FileOpError; ArchiveError when cancelled.
URL compress(const std::vector<URL>& urls, const Watch& watch = {});

}  // namespace ArchiveReader

}  // namespace tarn
