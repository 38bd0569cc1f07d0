#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// The desktop's Trash, on every disk. Callable from any thread.
class Trash {
public:
    virtual ~Trash() = default;

    /// Moves an item to the Trash of its disk and returns where it lies now. Throws
    /// std::system_error (EXDEV where its disk has no Trash that can be used); the item is then
    /// where it was. Never deletes, never copies.
    virtual URL trash(const URL& url) = 0;

    /// Forgets what the Trash knows of an item that was taken out of it; nothing for other places.
    virtual void forget(const URL& trashed) = 0;

    /// The folders that hold trashed items: the home's first, which need not be there before
    /// something is trashed, and those of the mounted disks that are there.
    virtual std::vector<URL> folders() const = 0;

    struct Origin {
        URL url;  ///< Where the item was.
        std::optional<Date> deleted;
    };
    /// Absent for an item about which the Trash keeps nothing.
    virtual std::optional<Origin> origin(const URL& trashed) const = 0;

    struct Measured {
        std::int64_t bytes = 0;     ///< On the disks.
        std::int64_t items = 0;     ///< Top-level ones.
        bool isUnreadable = false;  ///< Some of it could not be listed.
    };
    virtual Measured measure(const CancelToken& token) = 0;

    struct Emptied {
        std::int64_t items = 0;  ///< Top-level ones that are gone.
        std::int64_t failed = 0;
    };
    /// Deletes what lies in the Trash. Links are deleted, never followed. `progress` hears of every
    /// deleted file, on the calling thread. Stops soon after `token` was set; what is not deleted
    /// by then stays in the Trash whole, or with fewer files.
    virtual Emptied empty(const CancelToken& token, const std::function<void()>& progress) = 0;
};

}  // namespace tarn
