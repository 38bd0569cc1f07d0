#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "TarnCore/files/FileItem.h"

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

/// The rows of a pane in their order, and the way from a URL back to its row.
///
/// Made where the listing or the search runs and only read from then on, so that any number of
/// threads may share it; handing 100,000 rows to the main thread costs one pointer. Rows that were
/// arranged share their items with the listing that they came from.
class PaneRows {
public:
    struct Row {
        const FileItem* item;
        std::uint32_t depth = 0;  ///< How many unfolded folders it lies in.
    };

    explicit PaneRows(std::vector<FileItem> items);
    /// `owners` keep the items alive. Without groups there are no headings.
    PaneRows(std::vector<Row> rows, std::vector<RowGroup> groups,
             std::vector<std::shared_ptr<const PaneRows>> owners);
    /// The rows of `fresh`, but the first `count` of `shown` in front of them, as they are there:
    /// what has been seen keeps its place while more comes in.
    static std::shared_ptr<const PaneRows> keepingFirst(
        const PaneRows& shown, const std::shared_ptr<const PaneRows>& fresh, std::size_t count);
    PaneRows(const PaneRows&) = delete;
    PaneRows& operator=(const PaneRows&) = delete;

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
    std::optional<std::size_t> row(const URL& url) const;

private:
    void fillIndex();

    std::vector<FileItem> items_;  ///< Empty when others own them.
    std::vector<std::shared_ptr<const PaneRows>> owners_;
    std::vector<Row> rows_;
    std::vector<RowGroup> groups_;
    std::unordered_map<std::string_view, std::uint32_t> index_;  ///< By path; views into the items.
};

using SharedRows = std::shared_ptr<const PaneRows>;

}  // namespace tarn
