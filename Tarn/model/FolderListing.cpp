#include "Tarn/model/FolderListing.h"

#include <algorithm>

#include "Tarn/model/SourceNames.h"
#include "TarnCore/base/Collation.h"
#include "TarnCore/files/DirectoryLister.h"

namespace tarn {
namespace {

/// Below this a whole listing takes a few milliseconds.
constexpr std::size_t largeFolder = 3000;

}  // namespace

std::optional<std::vector<FileItem>> FolderListing::firstRows(const URL& folder, bool includeHidden,
                                                              const SortOrder& sort,
                                                              const CancelToken& token) {
    if (sort.field != SortField::name) return std::nullopt;
    std::vector<ListedName> all = DirectoryLister::names(folder, includeHidden, token);
    if (all.size() <= largeFolder || token.isCancelled()) return std::nullopt;
    const auto isBefore = [&sort](const ListedName& a, const ListedName& b) {
        if (sort.foldersFirst && a.isDirectory != b.isDirectory) return a.isDirectory;
        const int order = Collation::compare(a.name, b.name);
        return sort.ascending ? order < 0 : order > 0;
    };
    const std::size_t count = std::min(firstRowCount, all.size());
    std::partial_sort(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count), all.end(),
                      isBefore);
    std::vector<URL> urls;
    urls.reserve(count);
    for (std::size_t i = 0; i < count; ++i) urls.push_back(folder.appending(all[i].name));
    return sort.sort(DirectoryLister::load(urls, {}));
}

SharedRows FolderListing::allRows(const URL& folder, bool includeHidden, const SortOrder& sort,
                                  const CancelToken& token) {
    auto items = DirectoryLister::list(folder, includeHidden, token);
    if (token.isCancelled()) return std::make_shared<const PaneRows>(std::move(items));
    return std::make_shared<const PaneRows>(SourceNames::shared().sorted(std::move(items), sort));
}

SharedRows FolderListing::withTags(const SharedRows& rows, const SortOrder& sort) {
    std::vector<URL> urls;
    urls.reserve(rows->size());
    for (const FileItem& item : rows->items()) urls.push_back(item.url);
    auto tags = DirectoryLister::loadTags(urls);
    if (tags.empty()) return nullptr;
    std::vector<FileItem> items(rows->items().begin(), rows->items().end());
    for (FileItem& item : items) {
        if (const auto found = tags.find(item.url); found != tags.end())
            item.tags = std::move(found->second);
    }
    if (sort.field == SortField::tags) items = sort.sort(std::move(items));
    return std::make_shared<const PaneRows>(std::move(items));
}

}  // namespace tarn
