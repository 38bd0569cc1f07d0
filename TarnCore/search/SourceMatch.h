#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/URL.h"
#include "TarnCore/sources/DownloadSource.h"

/// Whether a file came from what a query asks for. Callable from any thread.
namespace tarn::SourceMatch {

/// `wanted` occurs in the name, the domain or the program of the source, or in the addresses
/// stored with the file; case does not matter. A known service or browser must stand there as
/// whole words and not just somewhere in an address, or “X” would find everything from Firefox
/// and “Box” everything from Dropbox.
bool matches(std::string_view wanted, const std::optional<DownloadSource>& source,
             const std::vector<std::string>& whereFroms);

bool matches(std::string_view wanted, const URL& url);

}  // namespace tarn::SourceMatch
