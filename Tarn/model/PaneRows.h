#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <ranges>
#include <string>
#include <vector>

#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/SortOrder.h"

namespace tarn {

/// The rows that stand under one heading: those from `first` to the next group's, none when it is
/// folded.
struct RowGroup {
    std::string title;
    std::uint32_t first = 0;
    std::uint32_t itemCount = 0;  ///< Also those that are folded away.
    bool isFolded = false;
    bool operator==(const RowGroup&) const = default;
};

class PaneRows;
using SharedRows = std::shared_ptr<const PaneRows>;

/// Items that rows point to. Many of them are freed on the pool when it is the main thread that
/// lets go of them last, since freeing 100,000 takes a while.
using SharedItems = std::shared_ptr<const std::vector<FileItem>>;
SharedItems shareItems(std::vector<FileItem> items);

/// The rows of a pane in their order, and the way from a URL back to its row.
///
/// Made where the listing or the search runs and only read from then on, so that any number of
/// threads may share it; handing 100,000 rows to the main thread costs one pointer. Rows that were
/// sorted, arranged or added to share their items with those that they came from.
class PaneRows {
public:
    struct Row {
        const FileItem* item;
        std::uint32_t depth = 0;  ///< How many unfolded folders it lies in.
    };

    explicit PaneRows(std::vector<FileItem> items);
    /// `owners` keep the items alive. Without groups there are no headings.
    PaneRows(std::vector<Row> rows, std::vector<RowGroup> groups, std::vector<SharedItems> owners);
    PaneRows(const PaneRows&) = delete;
    PaneRows& operator=(const PaneRows&) = delete;

    /// All items of `parts`, one part after the other.
    static SharedRows joined(const std::vector<SharedItems>& parts);
    /// The same rows, without headings and depths, in another order. Blocks where sources have to
    /// be read for it.
    static SharedRows sorted(const SharedRows& rows, const SortOrder& sort);
    static SharedRows sorted(std::vector<FileItem> items, const SortOrder& sort);
    /// The rows of `fresh`, but those that are among the first `count` of `shown` in front of them
    /// and in that order: what has been seen keeps its place while more comes in.
    static SharedRows keepingFirst(const PaneRows& shown, const SharedRows& fresh,
                                   std::size_t count);

    /// In their order, to be walked or asked by number.
    auto items() const {
        return rows_ |
               std::views::transform([](const Row& row) -> const FileItem& { return *row.item; });
    }
    std::size_t size() const { return rows_.size(); }
    const FileItem& item(std::size_t row) const { return *rows_[row].item; }
    std::uint32_t depth(std::size_t row) const { return rows_[row].depth; }
    const std::vector<RowGroup>& groups() const { return groups_; }
    /// The one that a row stands in; null without groups.
    const RowGroup* group(std::size_t row) const;
    /// The first call takes a few milliseconds for 100,000 rows, unless prepareSearch() was called.
    std::optional<std::size_t> row(const URL& url) const;
    /// For who makes rows on another thread than that which will ask for them.
    void prepareSearch() const;
    const std::vector<SharedItems>& owners() const { return owners_; }

private:
    void fillIndex() const;

    std::vector<SharedItems> owners_;
    std::vector<Row> rows_;
    std::vector<RowGroup> groups_;

    /// Open addressing: a place holds a row, found by the hash of its path.
    struct Place {
        std::uint32_t hash;
        std::uint32_t row;
    };
    mutable std::once_flag indexIsMade_;
    mutable std::vector<Place> index_;  ///< A power of two of them, half of them free.
};

}  // namespace tarn
