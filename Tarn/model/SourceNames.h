#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/SortOrder.h"

namespace tarn {

/// Which website or app files came from, remembered once it was read from the disk. Callable from
/// any thread.
class SourceNames {
public:
    /// More than this are not remembered: about 10 MB.
    static constexpr std::size_t mostKept = 100'000;

    /// Empty for a file without a source; absent while it was not read.
    std::optional<std::string> known(const FileItem& item) const;
    /// Reads what is not known, on the pool and the calling thread. Blocks.
    void read(const std::vector<const FileItem*>& items, const CancelToken& token = {});
    /// The positions of the items in the order of a pane, which may be that of their sources.
    /// Blocks.
    std::vector<std::uint32_t> sortedIndexes(const std::vector<const FileItem*>& items,
                                             const SortOrder& sort);

    /// Who asks for it next has it read again.
    void forget(const URL& url);

    static SourceNames& shared();

private:
    struct Entry {
        std::optional<Date> modified;  ///< Of the file that was read; another one is read anew.
        std::string name;
    };
    using Entries = std::unordered_map<URL, Entry>;
    Guarded<Entries> entries_;
};

}  // namespace tarn
