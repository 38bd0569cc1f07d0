#pragma once

#include <atomic>
#include <utility>

#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/base/URL.h"

namespace tarn {

class Database;

/// Brings the log of a database (WAL) into the database while its writer goes on.
///
/// SQLite does that at the end of a commit, which then waits twice for the disk. Here another
/// connection does it on another thread. Since a log begins anew only where all of it is in the
/// database when a transaction starts, the writer waits for the rest when the log has grown long.
class LogKeeper {
public:
    /// Bytes that a log grows to, unless readers need what is in it, and one transaction more.
    static constexpr int longestLog = 96 << 20;

    explicit LogKeeper(URL file, int longest = longestLog)
        : file_(std::move(file)), longest_(longest) {}

    /// From now on, at the commits of this connection, which is the file's writer and makes no more
    /// of them when this goes.
    void watch(Database& writer);
    /// Returns when nothing is being brought in.
    void wait() { queue_.flush(); }

private:
    void bringIn();

    const URL file_;
    const int longest_;
    std::atomic<bool> isAtWork_ = false;
    SerialQueue queue_{"tarn.log"};  // goes first, so that nothing it runs outlives the rest
};

}  // namespace tarn
