#pragma once

#include <cstdint>
#include <unordered_map>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/RecentFiles.h"

namespace tarn {

/// recently-used.xbel in $XDG_DATA_HOME, where desktop programs note what the user opened.
class LinuxRecentFiles final : public RecentFiles {
public:
    LinuxRecentFiles();
    explicit LinuxRecentFiles(const URL& file) : file_(file) {}

    std::vector<RecentFile> all() const override;
    std::optional<Date> lastVisited(const URL& url) const override;

private:
    struct Seen {
        std::int64_t modified = 0;  ///< Nanoseconds.
        std::int64_t size = -1;     ///< Bytes; -1 for no file.
        std::uint64_t inode = 0;
        bool operator==(const Seen&) const = default;
    };
    struct List {
        std::optional<Seen> seen;
        std::vector<RecentFile> files;
        std::unordered_map<URL, Date> visited;
    };
    /// The list as the file is now.
    Guarded<List>::Access current() const;

    URL file_;
    mutable Guarded<List> list_;
};

}  // namespace tarn
