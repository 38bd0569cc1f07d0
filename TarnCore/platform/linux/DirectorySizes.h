#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

/// The sizes of trashed folders, as kept in "directorysizes" of a Trash: a line for each with its
/// size in bytes, the time of modification of its .trashinfo in seconds, and its percent-encoded
/// name. A line counts as long as that time is still the same.
class DirectorySizes {
public:
    struct Entry {
        std::int64_t bytes = 0;
        std::int64_t infoModified = 0;
        bool operator==(const Entry&) const = default;
    };

    /// Any bytes; lines that are not understood are left out.
    static DirectorySizes parse(std::string_view text);
    std::string text() const;

    std::optional<std::int64_t> size(const std::string& name, std::int64_t infoModified) const;
    void set(const std::string& name, Entry entry) { entries_[name] = entry; }
    bool operator==(const DirectorySizes&) const = default;

private:
    std::map<std::string, Entry> entries_;
};

}  // namespace tarn
