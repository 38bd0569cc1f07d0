#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// Copying items with everything that is kept about them: data (shared with the original where the
/// disk can), holes, times to the nanosecond, mode, owner where allowed, access lists, extended
/// attributes. Links are copied as links; two names of one file stay two names of one file.
class FileCopy {
public:
    virtual ~FileCopy() = default;

    /// What a copy tells while it runs, on the thread or threads that do the work.
    struct Watch {
        /// Bytes since the last call; at most one call for a chunk or for a run of small files. May
        /// block (a pause). False stops the copy.
        std::function<bool(std::int64_t bytes, std::int64_t items)> progress;
        /// An item that could not be copied, and its errno. The rest goes on.
        std::function<void(const URL& source, int errnum)> failed;
    };
    enum class Outcome { complete, partial, stopped };

    /// Copies a file, link or whole folder to a name that must be free (EEXIST otherwise). What was
    /// made is complete when it appears under that name, and is gone again after `stopped`.
    /// Throws std::system_error when the item itself could not be copied at all.
    virtual Outcome copy(const URL& from, const URL& to, const Watch& watch) = 0;

    /// Writes out all that was copied to a disk that may be unplugged; true when everything below
    /// `folder` is on the disk.
    virtual bool flush(const URL& folder) = 0;
};

}  // namespace tarn
