#pragma once

#include <string_view>
#include <vector>

#include "TarnCore/platform/Drives.h"

namespace tarn {

/// Reads what `lsof -F pcn` prints: a field in each line, its kind the first letter. "p" begins a
/// process (its id), "c" is its command and "n" the name of a file that it keeps open. Other fields
/// are passed over, and so is what comes before the first process. Any bytes will do.
///
/// lsof writes "\\", line feeds and bytes that cannot be shown as escapes ("\\\\", "\\n", "\\xff");
/// names come out as they are on the disk, except that a control character other than \b, \f, \n,
/// \r and \t stays as lsof writes it ("^A"), since "^" itself is not escaped.
std::vector<BlockingProcess> parseOpenFiles(std::string_view output);

}  // namespace tarn
