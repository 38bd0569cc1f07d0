#pragma once

#include <set>
#include <string>
#include <vector>

#include "TarnCore/base/FileDescriptor.h"

namespace tarn {

/// Waits for folders that are not there, without ever asking again: it watches the nearest folder
/// above each that is there, whether one of those moves away, and what is mounted. One thread at a
/// time.
class MissingFolders {
public:
    /// Waits for a folder as well. It may be there by now: the next take() knows.
    void add(const std::string& path);
    void remove(const std::string& path);

    /// What to poll() for POLLIN and for POLLPRI; -1 while there is nothing to wait for.
    int events() const { return inotify_.get(); }
    int mounts() const { return mounts_.get(); }
    /// Must be called when one of them has something to say.
    void read(bool isAboutMounts);

    struct Answer {
        std::vector<std::string> arrived;
        /// The kernel cannot say when they come: the way there leads over a symbolic link to
        /// nothing or through a folder that may not be looked into, or there are no watches left.
        std::vector<std::string> unknown;
    };
    /// Those that need not be waited for any longer, which are forgotten. Costs nothing while
    /// nothing has happened.
    Answer take();

private:
    enum class Outcome { waits, isThere, unknown };
    Outcome watchWayTo(const std::string& path);
    bool watchNamesOf(const std::string& folder);
    void readEvents();

    std::set<std::string> missing_;
    std::set<std::string> names_;  ///< Of the folders that must come first, without where.
    FileDescriptor inotify_;
    FileDescriptor mounts_;
    bool mustLook_ = false;
};

}  // namespace tarn
