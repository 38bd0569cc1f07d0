#include "Tarn/model/PaneRows.h"

#include <algorithm>

namespace tarn {

PaneRows::PaneRows(std::vector<FileItem> items) : items_(std::move(items)) {
    rows_.reserve(items_.size());
    for (const FileItem& item : items_) rows_.push_back({&item, 0});
    fillIndex();
}

PaneRows::PaneRows(std::vector<Row> rows, std::vector<RowGroup> groups,
                   std::vector<std::shared_ptr<const PaneRows>> owners)
    : owners_(std::move(owners)), rows_(std::move(rows)), groups_(std::move(groups)) {
    fillIndex();
}

SharedRows PaneRows::keepingFirst(const PaneRows& shown, const SharedRows& fresh,
                                  std::size_t count) {
    const std::size_t kept = std::min(count, shown.size());
    if (kept == 0) return fresh;
    std::vector<FileItem> items;
    items.reserve(std::max(kept, fresh->size()));
    for (std::size_t row = 0; row < kept; ++row) items.push_back(shown.item(row));
    for (const FileItem& item : fresh->items()) {
        const auto old = shown.row(item.url);
        if (!old || *old >= kept) items.push_back(item);
    }
    return std::make_shared<const PaneRows>(std::move(items));
}

void PaneRows::fillIndex() {
    index_.reserve(rows_.size());
    for (std::size_t i = 0; i < rows_.size(); ++i)
        index_.emplace(rows_[i].item->path(), static_cast<std::uint32_t>(i));
}

const RowGroup* PaneRows::group(std::size_t row) const {
    const auto after = std::upper_bound(
        groups_.begin(), groups_.end(), row,
        [](std::size_t wanted, const RowGroup& group) { return wanted < group.first; });
    return after == groups_.begin() ? nullptr : &*(after - 1);
}

std::optional<std::size_t> PaneRows::row(const URL& url) const {
    const auto found = index_.find(url.path());
    if (found == index_.end()) return std::nullopt;
    return found->second;
}

}  // namespace tarn
