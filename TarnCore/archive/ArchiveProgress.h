#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

#include "TarnCore/base/CancelToken.h"

namespace tarn {

/// How far unpacking or compressing has come.
struct ArchiveProgress {
    std::int64_t doneBytes = 0;   ///< Of the same kind as the total.
    std::int64_t totalBytes = 0;  ///< 0 while unknown.
    std::int64_t doneItems = 0;
    std::string currentName;
};

/// How one watches and stops it.
struct ArchiveWatch {
    /// Called about ten times a second on the working threads, never from two at once. May block
    /// (a pause): the others then wait as well.
    std::function<void(const ArchiveProgress&)> progress;
    CancelToken token;
};

/// Collects what several threads have done and tells the watcher at a bounded rate. Callable from
/// any thread.
class ArchiveMeter {
public:
    ArchiveMeter(const ArchiveWatch& watch, std::int64_t totalBytes);
    ArchiveMeter(const ArchiveMeter&) = delete;
    ArchiveMeter& operator=(const ArchiveMeter&) = delete;

    /// Throws ArchiveError when it was cancelled.
    void check() const;
    bool isCancelled() const { return watch_.token.isCancelled(); }
    /// More is done; `name` is what is being worked at.
    void add(std::int64_t bytes, std::int64_t items, std::string_view name);
    /// As add, for one who knows how much there is in all so far.
    void moveTo(std::int64_t bytes, std::int64_t items, std::string_view name);
    /// Tells the watcher how it stands at the end.
    void finish();

private:
    using Clock = std::chrono::steady_clock;
    void tellWhenDue(std::string_view name);
    void tell(std::string_view name);

    const ArchiveWatch& watch_;
    const std::int64_t total_;
    std::atomic<std::int64_t> bytes_ = 0;
    std::atomic<std::int64_t> items_ = 0;
    std::atomic<Clock::rep> due_;
    /// Held across the watcher's function, because that is how a pause holds all threads.
    std::mutex telling_;
};

}  // namespace tarn
