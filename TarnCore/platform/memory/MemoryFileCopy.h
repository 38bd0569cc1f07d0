#pragma once

#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/FileCopy.h"

namespace tarn {

class MemoryFileSystem;

/// Copies within a memory disk, with its attributes, one item after the other on the calling
/// thread. Every item makes one call of the progress.
class MemoryFileCopy final : public FileCopy {
public:
    explicit MemoryFileCopy(std::shared_ptr<MemoryFileSystem> files) : files_(std::move(files)) {}

    /// From now on this item cannot be copied; 0 mends it.
    void failWith(const URL& source, int errnum) { state_.lock()->failures[source] = errnum; }
    /// From now on this errno meets everything that is written; 0 mends the disk.
    void failWritingWith(int errnum) { state_.lock()->writing = errnum; }
    void setFlushes(bool flushes) { state_.lock()->flushes = flushes; }
    /// The folders that were flushed, in this order.
    std::vector<URL> flushed() const { return state_.lock()->flushed; }

    std::shared_ptr<Record> makeRecord(Purpose purpose) const override;
    Outcome copy(const URL& from, const URL& to, const Watch& watch) override;
    bool flush(const URL& folder) override;
    void removeCopied(const URL& from, const Record& record) override;
    void remove(const URL& url) override;

private:
    struct Copied;
    class Copying;
    struct State {
        std::map<URL, int> failures;
        int writing = 0;
        bool flushes = true;
        std::vector<URL> flushed;
    };
    std::shared_ptr<MemoryFileSystem> files_;
    Guarded<State> state_;
};

}  // namespace tarn
