#include "Tarn/model/PaneRows.h"

namespace tarn {

PaneRows::PaneRows(std::vector<FileItem> items) : items_(std::move(items)) {
    rows_.reserve(items_.size());
    for (std::size_t i = 0; i < items_.size(); ++i)
        rows_.emplace(items_[i].path(), static_cast<std::uint32_t>(i));
}

std::optional<std::size_t> PaneRows::row(const URL& url) const {
    const auto found = rows_.find(url.path());
    if (found == rows_.end()) return std::nullopt;
    return found->second;
}

}  // namespace tarn
