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
    explicit TargetFolders(const std::vector<URL>& batch);

    /// True when something else than the file itself has that place, and it is not another file of
    /// the batch, which will have moved away. On a disk that tells letter case apart, "a" and "A"
    /// are two; on another, one.
    bool isTaken(const URL& target, const URL& file);

private:
    struct Folder {
        std::unordered_set<std::string> names;  ///< In lower case.
        bool wasRead = false;
    };
    bool mayExist(const URL& target);

    std::unordered_set<URL> batch_;
    std::unordered_map<std::string, std::vector<URL>> lowered_;  ///< By path in lower case.
    std::unordered_map<URL, std::size_t> counts_;                ///< Files of the batch by folder.
    std::unordered_map<URL, Folder> folders_;
};

}  // namespace tarn
