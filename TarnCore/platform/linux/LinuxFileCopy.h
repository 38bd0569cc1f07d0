#pragma once

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/platform/FileCopy.h"

namespace tarn {

/// FICLONE, else copy_file_range, else read and write; small files with one of each.
///
/// A copy is made under a temporary name beside its final place and gets that name when it is
/// complete, so that a crash never leaves half of something under a name that a user knows.
class LinuxFileCopy final : public FileCopy {
public:
    std::shared_ptr<Record> makeRecord(Purpose purpose) const override;
    Outcome copy(const URL& from, const URL& to, const Watch& watch) override;
    Outcome copyFiles(std::span<FileOrder> files, const URL& folder, const Watch& watch) override;
    bool flush(const URL& folder) override;
    void removeCopied(const URL& from, const Record& record) override;
    void remove(const URL& url) override;

private:
    /// For the second folder of a copy. One that is paused keeps its thread, so each of a few
    /// copies can have one; a copy that finds none works alone.
    TaskPool helpers_{2};
};

}  // namespace tarn
