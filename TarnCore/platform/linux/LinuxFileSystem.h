#pragma once

#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// openat, getdents64, statx, renameat2 and their like. Paths longer than the kernel takes in one
/// call are followed piece by piece, so that whatever a walk reaches can be asked about again by
/// its URL.
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

    void createFolder(const URL& url) override;
    void createFolders(const URL& url) override;
    /// Written without a name and then linked; under a temporary name where a disk cannot do that.
    void createFile(const URL& url, std::string_view content) override;
    void createLink(const URL& url, std::string_view target) override;
    /// RENAME_NOREPLACE. Where a disk lacks it, a file gets its second name before it loses the
    /// first, and a folder replaces an empty one that was made for it.
    void move(const URL& from, const URL& to) override;
    void removeFile(const URL& url) override;
    void removeFolder(const URL& url) override;
    using FileSystem::removeTree;
    TreeRemoved removeTree(const URL& url, const TreeRemoval& how) override;
};

}  // namespace tarn
