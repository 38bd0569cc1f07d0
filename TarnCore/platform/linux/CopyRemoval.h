#pragma once

#include <functional>

#include <sys/stat.h>

namespace tarn::CopyRemoval {

/// Says of everything below, and of the item itself, whether it may go.
using Allows = std::function<bool(const struct statx& facts)>;

/// Deletes `name` in `folder` with everything below it. No link is followed, and every folder is
/// reached from the one above it, so that nothing outside can be hit by exchanging names. Goes on
/// after a failure. Returns 0 or the errno of the first failure; what `allows` refuses counts as
/// `refused`. Depth is limited by nothing but the disk.
int remove(int folder, const char* name, const Allows& allows = nullptr, int refused = 0);

}  // namespace tarn::CopyRemoval
