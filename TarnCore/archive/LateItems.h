#pragma once

#include <exception>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

#include "TarnCore/platform/TreeWriter.h"

namespace tarn {

/// What unpacking makes last. Symbolic links, so that no file is ever written through one of them,
/// whatever it leads to; then the modes and times of folders, which making things in them would
/// change. One thread at a time.
class LateItems {
public:
    struct Link {
        std::string target;
        std::optional<UnixTime> modified;
    };

    void addFolder(const std::string& path, const NewItemFacts& facts) { folders_[path] = facts; }
    void addLink(const std::string& path, Link link) { links_[path] = std::move(link); }
    /// Null when no link was added under that path.
    const Link* link(const std::string& path) const;
    bool hasFolder(const std::string& path) const { return folders_.contains(path); }

    /// Throws ArchiveError for a link whose name is taken, else std::system_error.
    void make(TreeWriter& writer) const;

    /// What a failure to make a member means: a name that is taken by another member is the
    /// archive's fault. Throws ArchiveError or the error itself.
    [[noreturn]] static void rethrow(const std::system_error& error, std::string_view path);

private:
    std::map<std::string, NewItemFacts> folders_;
    std::map<std::string, Link> links_;
};

}  // namespace tarn
