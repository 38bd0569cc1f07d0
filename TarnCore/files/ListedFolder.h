#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/ListedName.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/files/SortOrder.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// The names in a folder, read in one go, and the items that they stand for, which are built when
/// and in the order in which they are asked for: so the first rows of a large folder need not wait
/// for the rest.
///
/// Synchronous; for use off the main thread. Package contents are never entered.
class ListedFolder {
public:
    /// Names that are wanted before all others: so many that come first by name, of a folder that
    /// has more than `from` names.
    struct Beginning {
        SortOrder order;
        std::size_t count;
        std::size_t from;
    };

    /// Reads the names, in the order of the disk, a large folder on two threads; those that it has
    /// by then when it is cancelled. Throws ListingError.
    ListedFolder(URL folder, bool includeHidden, const CancelToken& token = {},
                 const std::optional<Beginning>& beginning = std::nullopt);
    ListedFolder(const ListedFolder&) = delete;
    ListedFolder& operator=(const ListedFolder&) = delete;

    std::size_t size() const { return entries_.size(); }
    /// Names may have come or gone since they were read.
    bool mayHaveChanged() const;
    /// Positions of the names that were wanted before all others, in their order; none in a smaller
    /// folder.
    const std::vector<std::uint32_t>& first() const { return first_; }
    /// Views into this object. Items are not looked at, links excepted.
    std::vector<ListedNameView> names() const;

    /// The items at these positions, in this order, built on several threads when they are many.
    /// Those that have gone or cannot be read are left out. Has fewer when it is cancelled.
    std::vector<FileItem> items(std::span<const std::uint32_t> positions, ResourceKeys keys,
                                const CancelToken& token = {}) const;

private:
    class Builder;
    class Stretch;
    struct Entry {
        std::size_t offset;  ///< Of its name in `bytes_`.
        std::uint32_t length;
        FileType type;
    };
    void readNames(bool includeHidden, const CancelToken& token,
                   const std::optional<Beginning>& beginning);
    bool isDirectory(const char* name, const Entry& entry) const;
    const char* c_str(std::size_t i) const { return bytes_.data() + entries_[i].offset; }
    std::string_view name(std::size_t i) const { return {c_str(i), entries_[i].length}; }

    const URL folder_;
    std::unique_ptr<FolderReader> reader_;
    const ResourceReader resources_;
    Date readAt_;        ///< When the names were read, and
    Date modified_;      ///< how old they were then.
    std::string bytes_;  ///< The names end to end, each followed by a NUL.
    std::vector<Entry> entries_;
    std::vector<std::uint32_t> first_;
};

}  // namespace tarn
