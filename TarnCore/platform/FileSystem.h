#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"

namespace tarn {

class PageBuffer;

enum class FileType : std::uint8_t { unknown, file, directory, symlink, other };

/// What the disk says about one item, as of one call.
struct FileAttributes {
    FileType type = FileType::unknown;
    std::uint32_t mode = 0;          ///< Permission bits, without the type.
    std::int64_t size = 0;           ///< Bytes.
    std::int64_t allocatedSize = 0;  ///< Bytes on the disk.
    Date modified;
    std::optional<Date> created;  ///< Absent where the disk keeps no creation time.
    Date accessed;
    Date changed;  ///< Of the attributes themselves (ctime).
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint32_t links = 1;
    std::uint32_t owner = 0;
    std::uint32_t group = 0;
};

enum class Links { follow, keep };

/// One name read from a folder. Valid until the next read from the same reader.
struct FolderEntry {
    const char* name = nullptr;  ///< NUL-terminated; never "." or "..".
    std::uint32_t length = 0;
    FileType type = FileType::unknown;  ///< `unknown` only when it vanished while being read.
    std::uint64_t inode = 0;
    std::string_view view() const { return {name, length}; }
};

/// An open folder: its names in batches, and cheap questions about its children. `read` is for one
/// thread at a time, the rest for any number. Failures throw std::system_error.
class FolderReader {
public:
    virtual ~FolderReader() = default;

    /// The next names, in the order of the disk; empty at the end.
    virtual std::span<const FolderEntry> read() = 0;

    /// Absent when the child is gone or cannot be looked at. `Links::keep` describes a link itself.
    virtual std::optional<FileAttributes> attributes(const char* name, Links links) const = 0;

    /// The folder's own attributes.
    virtual FileAttributes attributes() const = 0;

    /// Opens a child folder without following a link; throws (ELOOP, ENOTDIR, EACCES, ENOENT …).
    virtual std::unique_ptr<FolderReader> open(const char* name) const = 0;

    /// The first `limit` bytes of a child that is a file, fewer when it is shorter; throws (ELOOP
    /// for a link, EISDIR, EACCES, ENOENT …). They lie in `buffer`, which grows as far as the
    /// longest file needs it.
    virtual std::string_view readFile(const char* name, std::size_t limit,
                                      PageBuffer& buffer) const = 0;

    /// Leaves the second half of the names to another reader, so that two threads may read a large
    /// folder at once. Null where the disk cannot do that, where the folder is too small to gain by
    /// it, and once something was read.
    virtual std::unique_ptr<FolderReader> splitOff() { return nullptr; }
};

/// How a whole folder is deleted.
struct TreeRemoval {
    CancelToken token;
    /// After every deleted item that is not a folder, on the calling thread.
    std::function<void()> removed;
    /// Folders of the user that may not be written to are opened up first.
    bool unlocksFolders = false;
};

/// What became of a folder that was deleted.
struct TreeRemoved {
    std::int64_t removed = 0;  ///< Items, folders among them.
    std::int64_t kept = 0;     ///< Items that failed or were not reached any more.
    int errnum = 0;            ///< Of the first failure.
};

/// The disk. Callable from any thread. A failure throws std::system_error with its errno, unless a
/// function says otherwise. No change ever replaces an existing item: a name that is taken, also by
/// a link that leads nowhere, is EEXIST.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// Opens a folder; a link to a folder is followed here.
    virtual std::unique_ptr<FolderReader> openFolder(const URL& folder) const = 0;

    /// Absent when nothing is there or it cannot be looked at.
    virtual std::optional<FileAttributes> attributes(const URL& url, Links links) const = 0;

    /// The same, with the reason of a failure thrown.
    virtual FileAttributes requireAttributes(const URL& url, Links links) const = 0;

    /// The text of a link.
    virtual std::string linkTarget(const URL& url) const = 0;

    /// The path with every link resolved; absent when something on the way is missing.
    virtual std::optional<URL> resolved(const URL& url) const = 0;

    /// The first `limit` bytes of a file, fewer when it is shorter.
    virtual std::string readFile(const URL& url, std::size_t limit) const = 0;

    /// True when the user may open the folder and read its names.
    virtual bool isReadableFolder(const URL& url) const = 0;

    /// Makes one folder, not those above it.
    virtual void createFolder(const URL& url) = 0;

    /// Makes the folder and those above it that are missing. Nothing happens when it is there;
    /// ENOTDIR when something else is.
    virtual void createFolders(const URL& url) = 0;

    /// Makes a file. It never shows under its name with less than all of its content.
    virtual void createFile(const URL& url, std::string_view content) = 0;

    /// Makes a symbolic link with that text.
    virtual void createLink(const URL& url, std::string_view target) = 0;

    /// Gives an item another place or name on its disk; EXDEV when that is on another disk. A link
    /// is moved itself.
    virtual void move(const URL& from, const URL& to) = 0;

    /// Deletes a file or a link itself; EISDIR for a folder.
    virtual void removeFile(const URL& url) = 0;

    /// Deletes an empty folder; ENOTEMPTY for another.
    virtual void removeFolder(const URL& url) = 0;

    /// Deletes an item with everything in it. Links are deleted, never followed, also when one is
    /// put in the way meanwhile; what is mounted inside stays. Goes on after a failure. Throws
    /// only when the item itself cannot be looked at.
    virtual TreeRemoved removeTree(const URL& url, const TreeRemoval& how) = 0;
    TreeRemoved removeTree(const URL& url) { return removeTree(url, TreeRemoval()); }
};

}  // namespace tarn
