#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include <sys/stat.h>
#include <sys/types.h>

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/platform/FileCopy.h"
#include "TarnCore/platform/linux/CopyRecord.h"

namespace tarn {

/// One call of FileCopy::copy or copyFiles under way, shared by its threads.
class CopyContext {
public:
    /// A batch of files has no top and no source of its own.
    CopyContext(const FileCopy::Watch& watch, CopyRecord& record,
                std::shared_ptr<CopyTop> top = nullptr, URL source = {});

    const FileCopy::Watch& watch;
    CopyRecord& record;
    const std::shared_ptr<CopyTop> top;
    const URL source;
    const CopyIdentity self;
    /// The copy itself, which a walk of the source may come upon. Set before other threads begin.
    FileID topID;

    bool isOver() const { return over_.load(std::memory_order_relaxed); }
    /// The user has stopped it.
    void stop() { over_.store(true, std::memory_order_relaxed); }
    /// An item at this path below the source was not copied. On the disks’ own failures, which
    /// every further item would meet too, the whole copy ends.
    void fail(const std::string& path, int errnum);
    void loseAttributes(const URL& item);
    /// What is at this path below the source.
    URL url(const std::string& path) const {
        return path.empty() ? source : source.appending(path);
    }

    /// The failure that ended the whole copy, or 0.
    int fatal() const { return fatal_.load(); }
    bool hasFailures() const { return hasFailures_.load(); }

private:
    std::atomic<bool> over_{false};
    std::atomic<int> fatal_{0};
    std::atomic<bool> hasFailures_{false};
    std::mutex calls_;
};

/// Gathers progress, so that small files cost no call each. One thread.
class CopyTicker {
public:
    explicit CopyTicker(CopyContext& context) : context_(context) {}
    /// False when the copy is over.
    bool add(std::int64_t bytes, std::int64_t items);
    bool flush();

private:
    using Time = std::chrono::steady_clock;
    CopyContext& context_;
    std::int64_t bytes_ = 0;
    std::int64_t items_ = 0;
    unsigned sinceLook_ = 0;
    Time::time_point last_ = Time::now();
};

/// A folder being copied.
struct CopiedFolder {
    CopiedFolder() = default;
    CopiedFolder(const CopiedFolder&) = delete;
    CopiedFolder& operator=(const CopiedFolder&) = delete;
    ~CopiedFolder();

    std::shared_ptr<CopiedFolder> parent;  ///< Null for the top.
    std::string name;
    std::size_t depth = 0;
    FileDescriptor source;
    FileDescriptor target;
    struct statx facts = {};  ///< Of the source, when it was opened.
    FileID targetID;
    CopyPair* pair = nullptr;
    /// What is made in the target belongs to this user and group, and has no access list.
    bool isPlain = false;

    std::string children;  ///< Folders to copy, each with a NUL behind it.
    std::size_t next = 0;
    std::size_t unfinished = 1;  ///< Folders in it, and itself.
    std::size_t users = 0;       ///< Threads that are opening something in it.
    bool isLost = false;         ///< It was moved away while it was closed.

    /// Below the top; empty for the top itself.
    std::string path() const;
    std::string pathOf(std::string_view child) const;

    /// Makes the folder that the copies go into; `parentIsPlain` when the one around it is. Returns
    /// 0 or the errno.
    int makeTarget(int parent, const char* name, bool parentIsPlain, const CopyIdentity& self);
    static constexpr mode_t madeWith = 0700;
};

}  // namespace tarn
