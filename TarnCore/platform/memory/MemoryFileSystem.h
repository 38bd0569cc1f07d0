#pragma once

#include <map>
#include <string>
#include <string_view>

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
        std::size_t batchSize = 100;
        std::uint64_t lastInode = 1;

        Node& add(const URL& url, FileType type);
        /// The path without links on the way, and without a last one when links are followed.
        /// Throws as the kernel would.
        URL find(const URL& url, Links links) const;
        const Node& node(const URL& url, Links links) const;
    };

    mutable Guarded<Disk> disk_;
};

}  // namespace tarn
