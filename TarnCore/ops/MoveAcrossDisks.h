#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// What an item and everything in it was at one moment, so that only what was copied is ever
/// deleted. Links are not followed.
class TreeSnapshot {
public:
    /// Throws std::system_error when something in it cannot be looked at.
    explicit TreeSnapshot(const URL& root);

    /// Nothing was added, taken away or written to since.
    bool isCurrent() const;
    /// The item there has the same names, kinds and sizes.
    bool isCopiedTo(const URL& copy) const;
    /// Deletes the item, but not what was added or written to since.
    TreeRemoved removeUnchanged() const;

private:
    struct Entry {
        FileType type = FileType::unknown;
        std::int64_t size = 0;
        Date modified;
        Date changed;
        std::uint64_t inode = 0;
        std::string target;  ///< Of a link.
        bool operator==(const Entry&) const = default;
    };
    void read(const URL& root);
    static Entry entry(const URL& url, const FileAttributes& attributes);

    URL root_;
    /// By the path below the root; "" is the root itself.
    std::unordered_map<std::string, Entry> entries_;
};

/// Copies an item to another disk, checks that all of it has arrived and is written out, and
/// deletes the original. Throws std::system_error with nothing changed, or FileOpError when the
/// copy is there and the original could not be removed whole.
void moveAcrossDisks(const URL& from, const URL& to);

}  // namespace tarn
