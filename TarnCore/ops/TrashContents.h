#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/platform/Trash.h"

namespace tarn {

/// What lies in the Trash: the desktop's on all disks, or in isolated runs the private one. Both
/// work through the disk and belong off the main thread.
namespace TrashContents {

/// Links are not followed. What was measured when `token` was set is returned.
Trash::Measured measure(const CancelToken& token);

/// Deletes everything. Links are deleted, never followed. `progress` hears of every deleted file,
/// on the calling thread.
Trash::Emptied empty(const CancelToken& token, const std::function<void()>& progress);

/// The folders to watch for changes.
std::vector<URL> folders();

}  // namespace TrashContents

}  // namespace tarn
