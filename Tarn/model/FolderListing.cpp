#include "Tarn/model/FolderListing.h"

#include <algorithm>
#include <chrono>
#include <numeric>
#include <span>
#include <utility>

#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/ListedFolder.h"

namespace tarn {
namespace {

using Clock = std::chrono::steady_clock;

/// Items are built in slices that grow, so that a slow disk shows what it has.
constexpr std::size_t firstSlice = 2048;
constexpr std::size_t longestSlice = 16'384;

/// Until the first rows of an order that is known only at the end, and between later ones.
constexpr std::chrono::milliseconds patience(80);
constexpr std::chrono::milliseconds laterPatience(250);

}  // namespace

SharedRows FolderListing::rows(const URL& folder, bool includeHidden, const SortOrder& sort,
                               const CancelToken& token,
                               const std::function<void(SharedRows)>& onPart) {
    Clock::time_point due = Clock::now() + patience;
    const ListedFolder listed(folder, includeHidden, token);
    const ResourceKeys keys = DirectoryLister::keys(folder, listed.size());
    const bool comesInOrder = sort.field == SortField::name;
    std::vector<std::uint32_t> positions;
    if (comesInOrder) {
        positions = sort.sortedIndexes(listed.names());
    } else {
        positions.resize(listed.size());
        std::iota(positions.begin(), positions.end(), 0U);
    }
    // Reading sources takes longer than all the rest.
    const bool tellsParts = onPart && sort.field != SortField::source;
    const bool hasQuickStart =
        tellsParts && comesInOrder && DirectoryLister::tagsDeferred(listed.size());
    std::size_t slice = hasQuickStart ? firstRowCount : firstSlice;
    if (hasQuickStart) due = {};

    std::vector<SharedItems> parts;
    std::span<const std::uint32_t> left(positions);
    while (!left.empty() && !token.isCancelled()) {
        const std::size_t count = std::min(slice, left.size());
        parts.push_back(shareItems(listed.items(left.first(count), keys, token)));
        left = left.subspan(count);
        slice = std::clamp(slice * 2, firstSlice, longestSlice);
        if (!tellsParts || left.empty() || Clock::now() < due) continue;
        SharedRows part = PaneRows::joined(parts);
        onPart(comesInOrder ? std::move(part) : PaneRows::sorted(part, sort));
        due = Clock::now() + laterPatience;
    }
    SharedRows all = PaneRows::joined(parts);
    return comesInOrder || token.isCancelled() ? all : PaneRows::sorted(all, sort);
}

SharedRows FolderListing::withTags(const SharedRows& rows, const SortOrder& sort) {
    std::vector<URL> urls;
    urls.reserve(rows->size());
    for (const FileItem& item : rows->items()) urls.push_back(item.url);
    auto tags = DirectoryLister::loadTags(urls);
    if (tags.empty()) return nullptr;
    std::vector<FileItem> tagged;
    tagged.reserve(tags.size());
    for (const FileItem& item : rows->items()) {
        const auto found = tags.find(item.url);
        if (found == tags.end()) continue;
        tagged.push_back(item);
        tagged.back().tags = std::move(found->second);
    }
    std::vector<SharedItems> owners = rows->owners();
    owners.push_back(shareItems(std::move(tagged)));
    const FileItem* next = owners.back()->data();
    std::vector<PaneRows::Row> result;
    result.reserve(rows->size());
    for (const FileItem& item : rows->items())
        result.push_back({tags.contains(item.url) ? next++ : &item});
    auto all = std::make_shared<const PaneRows>(std::move(result), std::vector<RowGroup>(),
                                                std::move(owners));
    return sort.field == SortField::tags ? PaneRows::sorted(all, sort) : all;
}

}  // namespace tarn
