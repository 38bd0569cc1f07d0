#include "Tarn/model/FolderListing.h"

#include <algorithm>
#include <chrono>
#include <numeric>
#include <optional>
#include <span>
#include <utility>

#include "TarnCore/base/Collation.h"
#include "TarnCore/base/TaskPool.h"
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

/// The half-open range from `begin` to `end`.
std::vector<std::uint32_t> counted(std::size_t begin, std::size_t end) {
    std::vector<std::uint32_t> positions(end - begin);
    std::iota(positions.begin(), positions.end(), static_cast<std::uint32_t>(begin));
    return positions;
}

/// Those that come first by name. Comparing each name with the last of them takes half as long as
/// making a key for each, which a whole order needs.
std::vector<std::uint32_t> firstPositions(const std::vector<ListedNameView>& names,
                                          const SortOrder& sort) {
    const auto isBefore = [&](std::uint32_t i, std::uint32_t j) {
        const ListedNameView& a = names[i];
        const ListedNameView& b = names[j];
        if (sort.foldersFirst && a.isDirectory != b.isDirectory) return a.isDirectory;
        const int order = Collation::compare(a.name, b.name);
        if (order == 0) return i < j;
        return (order < 0) == sort.ascending;
    };
    const auto keepFirst = [&](std::vector<std::uint32_t>& positions) {
        const std::size_t count = std::min(FolderListing::firstRowCount, positions.size());
        const auto end = positions.begin() + static_cast<std::ptrdiff_t>(count);
        std::partial_sort(positions.begin(), end, positions.end(), isBefore);
        positions.resize(count);
    };
    const std::size_t pieces = TaskPool::shared().threadCount();
    std::vector<std::vector<std::uint32_t>> firstOf(pieces);
    TaskPool::shared().forEach(pieces, [&](std::size_t piece) {
        firstOf[piece] =
            counted(names.size() * piece / pieces, names.size() * (piece + 1) / pieces);
        keepFirst(firstOf[piece]);
    });
    std::vector<std::uint32_t> first;
    for (const auto& some : firstOf) first.insert(first.end(), some.begin(), some.end());
    keepFirst(first);
    return first;
}

}  // namespace

SharedRows FolderListing::rows(const URL& folder, bool includeHidden, const SortOrder& sort,
                               const CancelToken& token, const Progress& progress) {
    Clock::time_point due = Clock::now() + patience;
    std::optional<ListedFolder> read(std::in_place, folder, includeHidden, token);
    if (progress.onNames) {
        progress.onNames();
        if (read->mayHaveChanged()) read.emplace(folder, includeHidden, token);
    }
    const ListedFolder& listed = *read;
    const ResourceKeys keys = DirectoryLister::keys(folder, listed.size());
    const bool comesInOrder = sort.field == SortField::name;
    const std::vector<ListedNameView> names =
        comesInOrder ? listed.names() : std::vector<ListedNameView>();
    // Reading sources takes longer than all the rest.
    const bool tellsParts = progress.onPart && sort.field != SortField::source;
    const bool hasQuickStart =
        tellsParts && comesInOrder && DirectoryLister::tagsDeferred(listed.size());
    std::vector<SharedItems> parts;
    std::vector<std::uint32_t> first;
    if (hasQuickStart && !token.isCancelled()) {
        first = firstPositions(names, sort);
        parts.push_back(shareItems(listed.items(first, keys, token)));
        progress.onPart(PaneRows::joined(parts));
        due = Clock::now() + laterPatience;
    }

    const std::vector<std::uint32_t> positions =
        comesInOrder ? sort.sortedIndexes(names) : counted(0, listed.size());
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
