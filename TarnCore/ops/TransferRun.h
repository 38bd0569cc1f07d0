#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/ops/ChangeJournal.h"
#include "TarnCore/ops/TransferBatch.h"
#include "TarnCore/ops/TransferJob.h"
#include "TarnCore/ops/TransferMonitor.h"
#include "TarnCore/platform/FileCopy.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// The work of one transfer, on the thread of its job.
class TransferRun {
public:
    TransferRun(const TransferJob& job, TransferMonitor& monitor);

    /// Returns when all is done or cleaned up; then `finishing` may still be writing out.
    TransferResult run();

private:
    using Measure = TransferJob::Measure;
    /// An item that gave way to another one.
    struct Replaced {
        URL original;
        URL trashed;
        std::size_t step;  ///< Its place among the steps.
    };
    /// An original whose copy must be on the disk before it goes.
    struct PendingRemoval {
        URL source;
        URL target;          ///< Its copy; the folder it was merged into for `isEmptyFolder`.
        bool isEmptyFolder;  ///< Its content went elsewhere; it goes if nothing is left in it.
        bool isTopLevel;
        std::size_t created;  ///< The place of its copy in `createdForCleanup_`.
    };
    /// What is removed again when the job is cancelled.
    struct Created {
        URL url;
        URL source;
        bool mayGo = true;  ///< False from when the original may be gone.
    };
    using Identity = std::pair<std::uint64_t, std::uint64_t>;
    /// The folder that was asked about last, as thousands of items come from one into one.
    struct KnownFolder {
        URL url;
        std::optional<Identity> identity;
    };

    void trashOne(const URL& item);
    void transferTopLevel(std::size_t index);
    /// Copies or moves an item into a folder, and asks when its name is taken there.
    void transfer(const URL& source, const URL& folder);
    void transferChecked(const URL& source, const FileAttributes& facts, const URL& folder);
    /// Absent when the item needs no target any more; else whatever had its name is out of the way.
    std::optional<URL> resolve(const URL& source, const FileAttributes& facts, const URL& target,
                               const FileAttributes& existing, std::optional<Replaced>& replaced);
    bool replace(const URL& source, const URL& target, std::optional<Replaced>& replaced);
    void putBack(const Replaced& replaced);
    ConflictDecision decide(const URL& source, const FileAttributes& facts, const URL& target,
                            const FileAttributes& existing);
    void merge(const URL& source, const URL& folder);
    /// `propose()`, a free name that no waiting file will get.
    URL freeName(const std::function<URL()>& propose);
    /// True when something is at its target now, or will be.
    bool place(const URL& source, const FileAttributes& facts, URL target, bool mayWait);
    /// Copies the files that wait, as one batch.
    void copyWaiting();
    void copied(const URL& source, const URL& target, FileCopy::Outcome outcome);
    bool rename(const URL& source, FileType type, URL& target);
    bool copy(const URL& source, URL target);
    FileCopy::Watch watch(URL& target);
    void removeIfEmpty(const URL& folder);
    /// Where an item ended up; what is in a merged folder counts with the folder.
    void addResult(const URL& target);

    /// Originals go when their copies are written out.
    void removePending();
    void removeOriginal(const PendingRemoval& pending);
    enum class Flushed { yes, no, cancelled };
    Flushed flush();
    void finishWriting();

    std::optional<Identity> identityOf(const URL& folder, KnownFolder& known) const;
    bool isInsideItself(const URL& source, const FileAttributes& facts) const;
    void lookAtDestination();
    void addToJournal(const URL& folder);
    void fail(const URL& source, std::string sentence);
    void failCopying(const URL& source, int errnum);
    std::string verb(const URL& source) const;
    TransferResult cancelledResult();
    void cleanUpAfterCancel();

    const TransferJob& job_;
    TransferMonitor& monitor_;
    const std::shared_ptr<FileSystem> files_;
    const std::shared_ptr<FileCopy> copying_;
    const std::thread::id thread_ = std::this_thread::get_id();

    std::shared_ptr<FileCopy::Record> record_;
    std::optional<ChangeJournal> journal_;
    std::string temporaryPrefix_;
    std::size_t temporaryCount_ = 0;
    /// The destination and the folders above it.
    std::vector<Identity> around_;
    KnownFolder lastSource_;
    KnownFolder lastTarget_;
    bool needsFlush_ = false;  ///< The destination may be unplugged, or is on another machine.

    std::optional<ConflictDecision> rememberedFileDecision_;
    std::optional<ConflictDecision> rememberedFolderDecision_;
    std::vector<Step> steps_;
    std::vector<TransferFailure> failures_;
    std::vector<Created> createdForCleanup_;
    TransferBatch waiting_;
    bool mayBatch_ = true;
    std::vector<PendingRemoval> pending_;
    double pendingSince_ = 0;
    std::size_t mergeDepth_ = 0;
    std::vector<URL> results_;
    std::vector<URL> withoutAttributes_;
    std::vector<URL> lost_;  ///< The same, of the copy that is being made.
    std::vector<URL> replaced_;  ///< Items now in the Trash, by their former places.
    std::vector<URL> moved_;     ///< Items that are at their targets for good.

    /// Writes out, so that the job can be paused and cancelled meanwhile. Goes last.
    std::atomic<bool> isFlushed_{false};
    std::atomic<bool> flushWorked_{false};
    std::unique_ptr<SerialQueue> flushing_;
};

}  // namespace tarn
