#pragma once

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <sys/types.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/platform/FileCopy.h"

namespace tarn {

/// Which file it is, whatever it is called.
struct FileID {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    static FileID of(const struct statx& facts);
    auto operator<=>(const FileID&) const = default;
};

/// As whom this process makes files.
struct CopyIdentity {
    uid_t user = 0;
    gid_t group = 0;
    mode_t umask = 077;  ///< Bits that a new file never has.
    static CopyIdentity current();
};

/// What one thread that copies works with. Most files fit into `data`.
struct CopyBuffers {
    static constexpr std::size_t dataSize = 256 * 1024;
    static constexpr std::size_t attributeSize = 65536;  ///< XATTR_LIST_MAX and XATTR_SIZE_MAX.
    alignas(4096) std::array<char, dataSize> data;
    std::array<char, attributeSize> names;
    std::array<char, attributeSize> value;
};

/// What works between two file systems, until it first fails.
struct CopyPair {
    std::atomic<bool> clones{true};            ///< FICLONE.
    std::atomic<bool> copiesRanges{true};      ///< copy_file_range.
    std::atomic<bool> listsAttributes{true};   ///< The source has extended attributes.
    std::atomic<bool> takesAttributes{true};   ///< The target does.
    std::atomic<bool> takesAccessLists{true};  ///< The target has POSIX access lists.
};

/// A finished or growing copy of one top-level item.
struct CopyTop {
    std::shared_ptr<const FileDescriptor> folder;  ///< That it lies in.
    std::string name;                              ///< The temporary one until it is complete.
    bool isGone = false;                           ///< It was removed again.
};

/// The one record on Linux. Any thread.
class CopyRecord final : public FileCopy::Record {
public:
    explicit CopyRecord(FileCopy::Purpose purpose)
        : remembersSources_(purpose == FileCopy::Purpose::move) {}

    /// Of this process when the first copy began.
    CopyIdentity identity();

    std::unique_ptr<CopyBuffers> takeBuffers();
    /// For the next item of the job.
    void giveBack(std::unique_ptr<CopyBuffers> buffers);

    CopyPair& pair(std::uint64_t sourceDevice, std::uint64_t targetDevice);

    /// Where the copy of a file with several names is.
    struct Place {
        std::shared_ptr<CopyTop> top;
        std::string path;  ///< Below the top, empty for the top itself.
        FileID copy;
    };
    /// The copy of the file that is there already. When there is none, the caller makes it and
    /// calls settle(); other threads that ask for the file meanwhile wait for that.
    std::optional<Place> claim(FileID source);
    /// Absent when the copy was not made.
    void settle(FileID source, std::optional<Place> place);
    void rename(CopyTop& top, std::string name);
    void forget(CopyTop& top);
    /// The folder and the name of a top as they are now; null when it is gone.
    std::pair<std::shared_ptr<const FileDescriptor>, std::string> where(const CopyTop& top) const;

    bool remembersSources() const { return remembersSources_; }
    /// The item was copied as it was when it had these facts.
    void remember(const struct statx& source);
    /// It was copied and is still the same. For a folder only that it was copied.
    bool isCopied(const struct statx& source) const;

private:
    const bool remembersSources_;
    mutable std::mutex mutex_;
    std::condition_variable settled_;
    std::map<std::pair<std::uint64_t, std::uint64_t>, CopyPair> pairs_;
    /// Without a value while it is being copied.
    std::map<FileID, std::optional<Place>> places_;
    std::unordered_set<std::uint64_t> sources_;  ///< Hashes of what identifies a version.
    std::optional<CopyIdentity> identity_;
    std::vector<std::unique_ptr<CopyBuffers>> spareBuffers_;
};

}  // namespace tarn
