#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_set>
#include <vector>

#include "TarnCore/base/URL.h"
#include "TarnCore/platform/FileCopy.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// Small files of a transfer that wait to be copied together, all into one folder. So few that
/// copying them takes no time in which somebody would want to see the name of each.
class TransferBatch {
public:
    static bool takes(const FileAttributes& facts);

    bool isEmpty() const { return files_.empty(); }
    bool hasRoomFor(const URL& target, const FileAttributes& facts) const;
    bool hasTarget(const URL& target) const { return targets_.contains(target); }
    void add(const URL& source, const URL& target, const FileAttributes& facts);

    const URL& folder() const { return folder_; }
    std::span<FileCopy::FileOrder> files() { return files_; }

private:
    URL folder_;
    std::vector<FileCopy::FileOrder> files_;
    std::unordered_set<URL> targets_;
    std::int64_t bytes_ = 0;
};

}  // namespace tarn
