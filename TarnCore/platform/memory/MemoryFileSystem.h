#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// Folders, files and links in a map, on a disk that can be made to fail. Callable from any thread.
/// Readers see the folder as it was when they were opened, and attributes as they are.
class MemoryFileSystem final : public FileSystem {
public:
    MemoryFileSystem();

    /// These make the folders above as needed and replace what was there.
    void addFile(const URL& url, std::string_view content = {}, Date modified = {});
    void addFolder(const URL& url, Date modified = {});
    void addLink(const URL& url, std::string_view target);
    /// With everything below it.
    void remove(const URL& url);
    /// Changes what the disk says about an item; size and type follow the content.
    void setAttributes(const URL& url, const FileAttributes& attributes);

    /// From now on everything that is asked about this path fails with the errno; 0 mends it.
    /// Being listed by its folder is no question about it.
    void failWith(const URL& url, int errnum);
    /// Names that differ in case alone are one from now on, as on disks of other systems. Before
    /// anything is made.
    void ignoreCase();
    /// This folder and what is below it counts as another disk for move().
    void addDisk(const URL& folder);
    using Moved = std::function<void(const URL& from, const std::optional<URL>& to)>;
    /// Called after an item was moved, or deleted (then `to` is absent).
    void onMove(Moved moved);
    /// Names in one batch of a reader.
    void setBatchSize(std::size_t count);
    /// The folders that were opened, in this order.
    std::vector<URL> opened() const;

    std::unique_ptr<FolderReader> openFolder(const URL& folder) const override;
    std::optional<FileAttributes> attributes(const URL& url, Links links) const override;
    FileAttributes requireAttributes(const URL& url, Links links) const override;
    std::string linkTarget(const URL& url) const override;
    std::optional<URL> resolved(const URL& url) const override;
    std::string readFile(const URL& url, std::size_t limit) const override;
    bool isReadableFolder(const URL& url) const override;

    void createFolder(const URL& url) override;
    void createFolders(const URL& url) override;
    void createFile(const URL& url, std::string_view content) override;
    void createLink(const URL& url, std::string_view target) override;
    void move(const URL& from, const URL& to) override;
    void removeFile(const URL& url) override;
    void removeFolder(const URL& url) override;
    using FileSystem::removeTree;
    TreeRemoved removeTree(const URL& url, const TreeRemoval& how) override;

private:
    class Reader;
    struct Node {
        FileAttributes attributes;
        std::string content;  ///< Or the target of a link.
    };
    struct Disk {
        std::map<URL, Node> nodes;
        std::map<URL, int> failures;
        std::vector<URL> opened;
        std::vector<URL> disks;
        Moved moved;
        bool ignoresCase = false;
        std::size_t batchSize = 100;
        std::uint64_t lastInode = 1;

        Node& add(const URL& url, FileType type);
        /// The path without links on the way, and without a last one when links are followed.
        /// Throws as the kernel would.
        URL find(const URL& url, Links links) const;
        const Node& node(const URL& url, Links links) const;
        /// The stored spelling of a child; the end without one.
        std::map<URL, Node>::const_iterator child(const URL& url) const;
        /// Where a new item of this path goes: its folder without links, and the name. Throws
        /// EEXIST when it is there already.
        URL free(const URL& url) const;
        const URL& diskOf(const URL& url) const;
    };

    mutable Guarded<Disk> disk_;
};

}  // namespace tarn
