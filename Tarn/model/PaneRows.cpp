#include "Tarn/model/PaneRows.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <string_view>
#include <utility>

#include "Tarn/model/MainThread.h"
#include "Tarn/model/SourceNames.h"
#include "TarnCore/base/TaskPool.h"

namespace tarn {
namespace {

/// Fewer items are freed faster than another thread is woken.
constexpr std::size_t manyItems = 2000;

constexpr std::uint32_t freePlace = std::numeric_limits<std::uint32_t>::max();

std::vector<const FileItem*> pointers(const std::vector<PaneRows::Row>& rows) {
    std::vector<const FileItem*> items;
    items.reserve(rows.size());
    for (const PaneRows::Row& row : rows) items.push_back(row.item);
    return items;
}

std::vector<PaneRows::Row> rowsOf(const std::vector<SharedItems>& parts) {
    std::size_t count = 0;
    for (const SharedItems& part : parts) count += part->size();
    std::vector<PaneRows::Row> rows;
    rows.reserve(count);
    for (const SharedItems& part : parts)
        for (const FileItem& item : *part) rows.push_back({&item, 0});
    return rows;
}

std::vector<PaneRows::Row> inOrder(const std::vector<PaneRows::Row>& rows, const SortOrder& sort) {
    const std::vector<const FileItem*> items = pointers(rows);
    std::vector<PaneRows::Row> sorted;
    sorted.reserve(rows.size());
    for (const std::uint32_t i : SourceNames::shared().sortedIndexes(items, sort))
        sorted.push_back({items[i], 0});
    return sorted;
}

std::size_t hashOf(std::string_view path) { return std::hash<std::string_view>{}(path); }

}  // namespace

SharedItems shareItems(std::vector<FileItem> items) {
    auto* owned = new std::vector<FileItem>(std::move(items));
    return SharedItems(owned, [](std::vector<FileItem>* gone) {
        if (gone->size() > manyItems && MainThread::isCurrent())
            TaskPool::shared().run([gone] { delete gone; }, TaskPriority::background);
        else
            delete gone;
    });
}

PaneRows::PaneRows(std::vector<FileItem> items)
    : owners_{shareItems(std::move(items))}, rows_(rowsOf(owners_)) {}

PaneRows::PaneRows(std::vector<Row> rows, std::vector<RowGroup> groups,
                   std::vector<SharedItems> owners)
    : owners_(std::move(owners)), rows_(std::move(rows)), groups_(std::move(groups)) {}

SharedRows PaneRows::joined(const std::vector<SharedItems>& parts) {
    return std::make_shared<const PaneRows>(rowsOf(parts), std::vector<RowGroup>(), parts);
}

SharedRows PaneRows::sorted(const SharedRows& rows, const SortOrder& sort) {
    return std::make_shared<const PaneRows>(inOrder(rows->rows_, sort), std::vector<RowGroup>(),
                                            rows->owners_);
}

SharedRows PaneRows::sorted(std::vector<FileItem> items, const SortOrder& sort) {
    std::vector<SharedItems> owners{shareItems(std::move(items))};
    std::vector<Row> rows = inOrder(rowsOf(owners), sort);
    return std::make_shared<const PaneRows>(std::move(rows), std::vector<RowGroup>(),
                                            std::move(owners));
}

SharedRows PaneRows::keepingFirst(const PaneRows& shown, const SharedRows& fresh,
                                  std::size_t count) {
    const std::size_t seen = std::min(count, shown.size());
    if (seen == 0) return fresh;
    std::vector<Row> rows;
    rows.reserve(fresh->size());
    std::vector<bool> isKept(fresh->size());
    for (std::size_t row = 0; row < seen; ++row) {
        const auto place = fresh->row(shown.item(row).url);
        if (!place) continue;
        rows.push_back(fresh->rows_[*place]);
        isKept[*place] = true;
    }
    for (std::size_t row = 0; row < fresh->size(); ++row)
        if (!isKept[row]) rows.push_back(fresh->rows_[row]);
    return std::make_shared<const PaneRows>(std::move(rows), std::vector<RowGroup>(),
                                            fresh->owners_);
}

void PaneRows::fillIndex() const {
    const std::size_t places = std::bit_ceil(rows_.size() * 2 + 1);
    index_.assign(places, {0, freePlace});
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const std::size_t hash = hashOf(rows_[i].item->path());
        const Place place{static_cast<std::uint32_t>(hash >> 32), static_cast<std::uint32_t>(i)};
        std::size_t at = hash & (places - 1);
        while (index_[at].row != freePlace) at = (at + 1) & (places - 1);
        index_[at] = place;
    }
}

void PaneRows::prepareSearch() const {
    std::call_once(indexIsMade_, [this] { fillIndex(); });
}

const RowGroup* PaneRows::group(std::size_t row) const {
    const auto after = std::upper_bound(
        groups_.begin(), groups_.end(), row,
        [](std::size_t wanted, const RowGroup& group) { return wanted < group.first; });
    return after == groups_.begin() ? nullptr : &*(after - 1);
}

std::optional<std::size_t> PaneRows::row(const URL& url) const {
    prepareSearch();
    const std::size_t hash = hashOf(url.path());
    const std::size_t mask = index_.size() - 1;
    for (std::size_t at = hash & mask; index_[at].row != freePlace; at = (at + 1) & mask) {
        const Place& place = index_[at];
        if (place.hash == static_cast<std::uint32_t>(hash >> 32) &&
            rows_[place.row].item->url == url)
            return place.row;
    }
    return std::nullopt;
}

}  // namespace tarn
