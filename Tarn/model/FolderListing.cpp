#include "Tarn/model/FolderListing.h"

#include <algorithm>
#include <chrono>
#include <numeric>
#include <optional>
#include <span>
#include <utility>

#include "Tarn/model/TrashListing.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/ListedFolder.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

using Clock = std::chrono::steady_clock;

/// Items are built in slices that grow, so that a slow disk shows what it has.
constexpr std::size_t firstSlice = 2048;
constexpr std::size_t longestSlice = 16'384;

/// Until the first rows of an order that is known only at the end, and between later ones.
constexpr std::chrono::milliseconds patience(80);
constexpr std::chrono::milliseconds laterPatience(250);

std::vector<std::uint32_t> counted(std::size_t count) {
    std::vector<std::uint32_t> positions(count);
    std::iota(positions.begin(), positions.end(), 0U);
    return positions;
}

}  // namespace

SharedRows FolderListing::rows(const URL& folder, bool includeHidden, const SortOrder& sort,
                               const CancelToken& token, const Progress& progress) {
    if (folder == Paths::trash()) {
        if (progress.onNames) progress.onNames();
        return PaneRows::sorted(TrashListing::items(includeHidden, token), sort);
    }
    Clock::time_point due = Clock::now() + patience;
    const bool comesInOrder = sort.field == SortField::name;
    // Reading sources takes longer than all the rest.
    const bool tellsParts = progress.onPart && sort.field != SortField::source;
    std::optional<ListedFolder::Beginning> beginning;
    if (tellsParts && comesInOrder)
        beginning = {sort, firstRowCount, DirectoryLister::deferTagsAbove};
    std::optional<ListedFolder> read(std::in_place, folder, includeHidden, token, beginning);
    if (progress.onNames) {
        progress.onNames();
        if (read->mayHaveChanged()) read.emplace(folder, includeHidden, token, beginning);
    }
    const ListedFolder& listed = *read;
    const ResourceKeys keys = DirectoryLister::keys(folder, listed.size());
    std::vector<SharedItems> parts;
    const std::vector<std::uint32_t>& first = listed.first();
    if (!first.empty() && !token.isCancelled()) {
        parts.push_back(shareItems(listed.items(first, keys, token)));
        progress.onPart(PaneRows::joined(parts));
        due = Clock::now() + laterPatience;
    }

    const std::vector<std::uint32_t> positions =
        comesInOrder ? sort.sortedIndexes(listed.names()) : counted(listed.size());
    std::span<const std::uint32_t> left(positions);
    if (std::ranges::equal(first, left.first(first.size())))
        left = left.subspan(first.size());
    else
        parts.clear();  // The two ways of comparing names disagree.
    std::size_t slice = firstSlice;
    while (!left.empty() && !token.isCancelled()) {
        const std::size_t count = std::min(slice, left.size());
        parts.push_back(shareItems(listed.items(left.first(count), keys, token)));
        left = left.subspan(count);
        slice = std::min(slice * 2, longestSlice);
        if (!tellsParts || left.empty() || Clock::now() < due) continue;
        SharedRows part = PaneRows::joined(parts);
        progress.onPart(comesInOrder ? std::move(part) : PaneRows::sorted(part, sort));
        due = Clock::now() + laterPatience;
    }
    SharedRows all = PaneRows::joined(parts);
    return comesInOrder || token.isCancelled() ? all : PaneRows::sorted(all, sort);
}

SharedRows FolderListing::withTags(const SharedRows& rows, const SortOrder& sort,
                                   const CancelToken& token) {
    std::vector<URL> urls;
    urls.reserve(rows->size());
    for (const FileItem& item : rows->items()) urls.push_back(item.url);
    auto tags = DirectoryLister::loadTags(urls, token);
    if (tags.empty() || token.isCancelled()) return nullptr;
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
