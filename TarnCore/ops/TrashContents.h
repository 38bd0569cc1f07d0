#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/ops/FileOps.h"
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

/// Takes an item out of the Trash, back to where it was; its folders are made again where they are
/// gone, and where its name is taken by now, it gets the next free one. The step that is returned
/// trashes it again. Throws FileOpError.
FileChange putBack(const URL& trashed);

/// The folders whose items were trashed: one on each disk, the home's first, or of the private one
/// a folder for each item.
std::vector<URL> holders();

/// The folders to watch for changes: those of every Trash, and those that come into being with
/// the first item of a disk. Disks that nobody can write to, and servers, which tell nothing of
/// what others do there, have none of the latter.
std::vector<URL> watched();

/// The folders that may hold trashed items, whether they are there or not; at least one. By the
/// mount table alone, so that the main thread may ask; only a private one is looked into.
std::vector<URL> possibleFolders();

}  // namespace TrashContents

}  // namespace tarn
