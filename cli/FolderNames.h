#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn::cli {

/// The names in a folder, in display order, without asking the disk about each item: what `list`
/// needs when only names are printed.
class FolderNames {
public:
    /// Throws ListingError.
    FolderNames(const URL& folder, bool includeHidden);

    /// As SortOrder does for SortField::name; names that are equal there follow their bytes.
    void sort(bool ascending, bool foldersFirst);

    std::size_t count() const { return entries_.size(); }
    std::string_view operator[](std::size_t index) const {
        return std::string_view(bytes_).substr(entries_[index].offset, entries_[index].length);
    }

private:
    struct Entry {
        std::size_t offset = 0;
        std::uint32_t length = 0;
        bool isFolder = false;
    };
    std::string bytes_;  ///< All names, end to end.
    std::vector<Entry> entries_;
};

}  // namespace tarn::cli
