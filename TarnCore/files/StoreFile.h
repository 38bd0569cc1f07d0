#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "TarnCore/base/URL.h"

struct stat;

namespace tarn {

/// The file behind a JSONStore, shared with other processes: read whole, written whole, and never
/// seen half-written.
///
/// Writers hold an exclusive flock on ".NAME.lock" beside the file from reading it to replacing it,
/// and put the temporary file ".NAME.new" in its place by renaming; one that a crash has left is
/// taken away by the next writer. Used by one thread at a time.
class StoreFile {
public:
    explicit StoreFile(URL url) : url_(std::move(url)) {}
    const URL& url() const { return url_; }

    enum class State { missing, unreadable, present };
    struct Content {
        State state = State::missing;
        std::string text;
        /// Written by someone else since read() or update() last looked.
        bool hasChanged = false;
    };
    /// Never fails: a file that cannot be read is `unreadable`.
    Content read();
    bool hasChangedOnDisk() const;

    struct Replacement {
        std::string text;
        /// The old file is first kept as "NAME.unreadable", "NAME.unreadable 2", …
        bool keepsOldFile = false;
    };
    /// Takes the lock, reads the file afresh, hands it to `edit` and writes what that returns.
    /// False when the disk refused; the file is then as it was.
    bool update(const std::function<Replacement(const Content&)>& edit);

private:
    /// Tells whether a file is the one that was seen: one that is replaced or written differs in
    /// at least one of them.
    struct Identity {
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
        std::int64_t size = -1;
        std::int64_t modified = 0;  ///< Nanoseconds since 1970.
        bool operator==(const Identity&) const = default;
    };
    static Identity identity(const struct stat& status);
    Identity onDisk() const;
    bool keepOldFile() const;
    bool replace(const std::string& text);

    URL url_;
    Identity seen_;
};

}  // namespace tarn
