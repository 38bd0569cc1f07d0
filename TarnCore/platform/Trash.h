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
    /// std::system_error; the item is then where it was. Never deletes.
    virtual URL trash(const URL& url) = 0;

    /// Forgets what the Trash knows of an item that was taken out of it; nothing for other places.
    virtual void forget(const URL& trashed) = 0;

    /// The folders that hold trashed items: the home's and those of the mounted disks that exist.
    virtual std::vector<URL> folders() const = 0;

    struct Origin {
        URL url;  ///< Where the item was.
        std::optional<Date> deleted;
    };
    /// Absent for an item about which the Trash keeps nothing.
    virtual std::optional<Origin> origin(const URL& trashed) const = 0;

    struct Emptied {
        std::int64_t items = 0;  ///< Top-level ones that are gone.
        std::int64_t failed = 0;
    };
    /// Deletes what lies in the Trash. Links are deleted, never followed. `progress` hears of every
    /// deleted file, with the name of its top-level item, and may be called from several threads.
    virtual Emptied empty(const CancelToken& token, const std::function<void()>& progress) = 0;
};

}  // namespace tarn
