#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "TarnCore/base/JSON.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// The file behind a JSONStore: reads, and writes atomically, shared with other processes through
/// a lock beside the file. Used by JSONStore only.
class StoreFile {
public:
    explicit StoreFile(URL url) : url_(std::move(url)) {}
    const URL& url() const { return url_; }

    /// The document; absent when there is none or it is not JSON. Remembers what it saw.
    std::optional<JSON> read();
    /// True when another process has written the file since read() or write().
    bool hasChangedOnDisk() const;
    /// Takes the lock between processes, reads the file afresh, hands it to `edit`, and writes what
    /// it returns: temporary file beside, fsync, rename. A file that could not be decoded is first
    /// kept as NAME.unreadable. Returns false when the disk refused; nothing is half-written.
    bool update(const std::function<JSON(std::optional<JSON>)>& edit, bool isUnreadable);

private:
    URL url_;
    std::uint64_t seenInode_ = 0;
    std::int64_t seenModified_ = 0;
    std::int64_t seenSize_ = -1;
};

/// One persisted value: a JSON file in the support folder, read when it is created, written on a
/// queue of its own after every change. Any thread may read or set it; reads never touch the disk.
///
/// Another process may own the same file: `update` re-reads a file that changed before it applies
/// the mutation, so that two processes changing different parts lose neither; `value =` replaces
/// the whole. A file that cannot be decoded is kept beside as NAME.unreadable before it is
/// replaced. Failed writes leave the value in memory in force.
template <class Value>
class JSONStore;

}  // namespace tarn
