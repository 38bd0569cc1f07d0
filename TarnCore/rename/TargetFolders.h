#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "TarnCore/base/URL.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// Whether the new names of a batch are taken. Each folder is read once, so that thousands of names
/// that are free cost no question each. One thread at a time; what it knows grows old at once, so
/// that it serves a preview only.
class TargetFolders {
public:
    /// `batch` must outlive this.
    explicit TargetFolders(const std::vector<URL>& batch);

    /// Reads the folders that will be read anyhow, for a thread that has nothing else to do.
    void readAhead();

    /// True when something else than the file itself has that name in its folder, and it is not
    /// another file of the batch, which will have moved away. On a disk that tells letter case
    /// apart, "a" and "A" are two; on another, one.
    bool isTaken(const URL& file, const std::string& newName);

private:
    struct Folder {
        std::size_t files = 0;           ///< Of the batch.
        std::vector<std::size_t> names;  ///< Hashes of what it holds, in lower case; in order.
        bool wasRead = false;
    };
    static void read(const std::string& path, Folder& folder);
    bool mayExist(const URL& file, std::string_view newName);
    bool isOtherOfBatch(const URL& target, const FileAttributes& there);

    const std::vector<URL>& batch_;
    std::unordered_map<std::string, Folder> folders_;  ///< By the path up to the name.
    Folder* last_ = nullptr;  ///< Asked about last, most often the one that is asked about next.
    std::string lastPath_;
    std::unordered_set<std::string_view> paths_;
    std::unordered_map<std::string, std::vector<const URL*>> lowered_;  ///< By path in lower case.
};

}  // namespace tarn
