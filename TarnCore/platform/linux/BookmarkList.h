#pragma once

#include <string_view>
#include <vector>

#include "TarnCore/platform/RecentFiles.h"

namespace tarn {

/// Reads the desktop's bookmark exchange format (XBEL, as in recently-used.xbel): the local files
/// and when each was last visited; where that is not said, when it was changed or added. Anything
/// may stand in the text: what is not understood is skipped, and reading never fails.
std::vector<RecentFile> parseBookmarkList(std::string_view text);

}  // namespace tarn
