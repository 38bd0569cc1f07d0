#pragma once

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// The folder as a place to work from (O_PATH), however long its path is. Links on the way are
/// followed. Throws std::system_error.
FileDescriptor openFolderPath(const URL& folder);

/// Gives an item another name, and never replaces one: RENAME_NOREPLACE, or what comes nearest on
/// disks without it (a second name and then one less for files, an own empty folder that is
/// replaced for folders). Returns 0 or the errno; EEXIST when the name is taken.
int renameNoReplace(int fromFolder, const char* from, int toFolder, const char* to);

}  // namespace tarn
