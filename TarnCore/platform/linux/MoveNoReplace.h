#pragma once

namespace tarn {

/// Where a name stands: an open folder (or AT_FDCWD) and a path from there.
struct Place {
    int folder;
    const char* path;
};

/// Renames and never replaces. Where a disk lacks RENAME_NOREPLACE, a file gets its second name
/// before it loses the first, and a folder replaces an empty one that was made for it. Returns 0 or
/// the errno; EXDEV between disks.
int moveNoReplace(const Place& from, const Place& to);

}  // namespace tarn
