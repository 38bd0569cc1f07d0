#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include <sys/types.h>

#include "TarnCore/base/URL.h"

/// Small files that other programs write as well, and that nobody holds a lock on.
namespace tarn::ForeignFile {

/// What `change` makes of the text of the file takes its place: written beside and renamed, so that
/// nobody sees it half-written, and done again when another program was faster. A link to the file
/// stays one, and the file keeps its mode; a new one gets `mode`. A missing file is an empty text.
///
/// `change` may say that nothing is to be done. Returns 0 or an errno: EISDIR for what is no plain
/// file, EFBIG for one of more than `largest` bytes, EBUSY when others never stop writing.
int edit(const URL& file, mode_t mode, std::size_t largest,
         const std::function<std::optional<std::string>(const std::string&)>& change);

}  // namespace tarn::ForeignFile
