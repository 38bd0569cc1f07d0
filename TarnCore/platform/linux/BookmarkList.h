#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/platform/RecentFiles.h"

namespace tarn {

/// Reads the desktop's bookmark exchange format (XBEL, as in recently-used.xbel): the local files
/// and when each was last visited; where that is not said, when it was changed or added. Anything
/// may stand in the text: what is not understood is skipped, and reading never fails.
std::vector<RecentFile> parseBookmarkList(std::string_view text);

/// A program has opened a file.
struct BookmarkUse {
    URL url;
    std::string mimeType;
    std::string program;  ///< Its name; each has an entry of its own with a file.
    std::string command;  ///< "tarn %u"
    Date when;
};

/// The list with that noted in it: in the entry of the file, or in a new one at the end. Whatever
/// else stands in the list, or in the entry, stays as it is, byte for byte. An empty text becomes a
/// list. Absent for a text that is no complete list, which had better be left alone.
std::optional<std::string> noteInBookmarkList(std::string_view text, const BookmarkUse& use);

}  // namespace tarn
