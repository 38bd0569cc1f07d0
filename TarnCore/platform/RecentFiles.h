#pragma once

#include <optional>
#include <vector>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"

namespace tarn {

struct RecentFile {
    URL url;
    Date visited;
};

/// The desktop's list of recently used files. Callable from any thread; the list is read again
/// when its file has changed. A missing or broken list is empty.
class RecentFiles {
public:
    virtual ~RecentFiles() = default;
    virtual std::vector<RecentFile> all() const = 0;
    virtual std::optional<Date> lastVisited(const URL& url) const = 0;
};

}  // namespace tarn
