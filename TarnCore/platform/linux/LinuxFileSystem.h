#pragma once

#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// openat, getdents64 and statx. Paths longer than the kernel takes in one call are followed piece
/// by piece, so that whatever a walk reaches can be asked about again by its URL.
///
/// Attributes of network file systems may be a moment old: the server is not asked again for what
/// the kernel already knows.
class LinuxFileSystem final : public FileSystem {
public:
    std::unique_ptr<FolderReader> openFolder(const URL& folder) const override;
    std::optional<FileAttributes> attributes(const URL& url, Links links) const override;
    FileAttributes requireAttributes(const URL& url, Links links) const override;
    std::string linkTarget(const URL& url) const override;
    std::optional<URL> resolved(const URL& url) const override;
    std::string readFile(const URL& url, std::size_t limit) const override;
    bool isReadableFolder(const URL& url) const override;
};

}  // namespace tarn
