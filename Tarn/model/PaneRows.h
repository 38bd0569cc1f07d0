#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "TarnCore/files/FileItem.h"

namespace tarn {

/// The rows of a pane in their order, and the way from a URL back to its row.
///
/// Made where the listing or the search runs and only read from then on, so that any number of
/// threads may share it; handing 100,000 rows to the main thread costs one pointer.
class PaneRows {
public:
    explicit PaneRows(std::vector<FileItem> items);
    PaneRows(const PaneRows&) = delete;
    PaneRows& operator=(const PaneRows&) = delete;

    const std::vector<FileItem>& items() const { return items_; }
    std::size_t size() const { return items_.size(); }
    std::optional<std::size_t> row(const URL& url) const;

private:
    std::vector<FileItem> items_;
    std::unordered_map<std::string_view, std::uint32_t> rows_;  ///< By path; views into items_.
};

using SharedRows = std::shared_ptr<const PaneRows>;

}  // namespace tarn
