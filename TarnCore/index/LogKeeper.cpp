#include "TarnCore/index/LogKeeper.h"

#include "TarnCore/base/Database.h"

namespace tarn {
namespace {

/// A part of the longest log; for less, it is not worth to wait for the disk.
constexpr int worthwhile = 6;
constexpr double patience = 2;  // seconds

}  // namespace

void LogKeeper::watch(Database& writer) {
    const int most = static_cast<int>(longest_ / writer.number("PRAGMA page_size"));
    writer.onCommit([this, &writer, most](int pages) {
        if (pages < most / worthwhile) return;
        if (pages < most) {
            if (!isAtWork_.exchange(true)) queue_.run([this] { bringIn(); });
            return;
        }
        wait();
        writer.checkpoint();
    });
}

void LogKeeper::bringIn() {
    try {
        Database(file_, Database::Access::write, patience).checkpoint();
    } catch (const DatabaseError&) {
        // The log is as good, and the next commit tries again.
    }
    isAtWork_ = false;
}

}  // namespace tarn
