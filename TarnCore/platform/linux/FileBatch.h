#pragma once

#include <atomic>
#include <cstddef>
#include <span>
#include <string>
#include <utility>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/platform/FileCopy.h"
#include "TarnCore/platform/linux/CopyContext.h"
#include "TarnCore/platform/linux/ItemCopier.h"

namespace tarn {

/// Copies many files into one folder, two at a time. Each thread makes its copies in a temporary
/// folder of its own, where neither waits for the other and nothing is inherited from the folder
/// around it, and gives each its place when it is complete.
class FileBatch {
public:
    /// The temporary folders get names that begin with `temporaryName`.
    FileBatch(CopyContext& context, int targetFolder, std::string temporaryName)
        : context_(context),
          targetFolder_(targetFolder),
          temporaryName_(std::move(temporaryName)) {}

    void run(std::span<FileCopy::FileOrder> files, TaskPool& helpers);

private:
    class Place;
    void work(std::span<FileCopy::FileOrder> files, std::size_t worker);

    CopyContext& context_;
    const int targetFolder_;
    const std::string temporaryName_;
    std::atomic<std::size_t> next_{0};
};

}  // namespace tarn
