#pragma once

#include <memory>
#include <vector>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/ContentTypes.h"
#include "TarnCore/platform/FileSystem.h"
#include "TarnCore/platform/MediaMetadata.h"
#include "TarnCore/platform/RecentFiles.h"
#include "TarnCore/platform/Volumes.h"

namespace tarn {

/// Pictures through the module tarn-pictures, sound and film through tarn-films, PDF through
/// tarn-documents; each is loaded with the first file of its kind.
///
/// A file was last opened when the desktop's recent files say so; else when it was last read,
/// where the disk notes that and it was after the last change.
class LinuxMediaMetadata final : public MediaMetadata {
public:
    LinuxMediaMetadata(std::shared_ptr<FileSystem> files, std::shared_ptr<ContentTypes> types,
                       std::shared_ptr<RecentFiles> recentFiles, std::shared_ptr<Volumes> volumes);

    ItemMetadata read(const URL& url) const override;
    std::optional<Date> lastOpened(const URL& url) const override;

private:
    struct Mounts {
        std::vector<Mount> all;
        double readAt = -1;  ///< On the monotonic clock.
    };
    std::optional<Date> lastOpened(const URL& url, const FileAttributes& attributes) const;
    bool recordsAccessTimes(const URL& url) const;

    std::shared_ptr<FileSystem> files_;
    std::shared_ptr<ContentTypes> types_;
    std::shared_ptr<RecentFiles> recentFiles_;
    std::shared_ptr<Volumes> volumes_;
    mutable Guarded<Mounts> mounts_;
};

}  // namespace tarn
