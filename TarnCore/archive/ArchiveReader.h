#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/archive/ArchiveEntry.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/base/URL.h"

namespace tarn {

class ArchiveError : public Error {
public:
    enum class Reason { unreadable, unsupported, cancelled };
    /// “This archive couldn’t be read. ” and the detail, itself a sentence.
    static ArchiveError unreadable(std::string_view detail);
    static ArchiveError unsupported();
    static ArchiveError cancelled();
    Reason reason() const { return reason_; }

private:
    ArchiveError(Reason reason, const std::string& sentence);
    Reason reason_;
};

/// Looking into archives, unpacking and making them. Synchronous; callable from any thread.
namespace ArchiveReader {

/// How far it has come; called at a bounded rate on the working threads. `total` is 0 while
/// unknown. May block (a pause).
struct Progress {
    std::int64_t doneBytes = 0;
    std::int64_t totalBytes = 0;
    std::int64_t doneItems = 0;
    std::string currentName;
};
struct Watch {
    std::function<void(const Progress&)> progress;
    CancelToken token;
};

/// Every member, folders that are only implied included. Throws ArchiveError.
std::vector<ArchiveEntry> entries(const URL& url);
/// One level of it; "" is the top.
std::vector<ArchiveEntry> children(std::string_view path, const std::vector<ArchiveEntry>& entries);
/// Into an existing or new folder; a failure or a cancel removes what was made. Nothing existing is
/// replaced. Throws ArchiveError.
void extract(const URL& from, const URL& to, const Watch& watch = {});
/// Next to the archive; the new item. Throws ArchiveError.
URL extractAll(const URL& url, const Watch& watch = {});
/// Only these members (and what is below them), each under its own name in `to`, made free; where
/// they are now. Throws ArchiveError.
std::vector<URL> extract(const URL& from, const std::vector<std::string>& members, const URL& to,
                         const Watch& watch = {});
/// A zip file next to the first item. Throws FileOpError; ArchiveError when cancelled.
URL compress(const std::vector<URL>& urls, const Watch& watch = {});

}  // namespace ArchiveReader

}  // namespace tarn
