#include "Tarn/model/LiveQuery.h"

#include <algorithm>
#include <iterator>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/FileTags.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/search/QueryMatcher.h"
#include "TarnCore/search/SearchResults.h"
#include "TarnCore/tags/FinderTag.h"
#include "TarnCore/tags/TagWalk.h"

namespace tarn {
namespace {

bool isRealFolder(const FileItem& item) {
    return item.isDirectory && !item.isSymlink && !item.isPackage;
}

SearchResults::Rules rules(const SearchOptions& options) {
    return {options.roots, options.hidesTrash, options.limit};
}

/// The tests that a walk makes of what it comes by, for things whose paths are known.
class PathSearch {
public:
    explicit PathSearch(const SearchOptions& options)
        : options_(options),
          excluded_(
              rules(options), [](const std::vector<FileItem>&) {}, CancelToken()),
          matcher_(options.query, options.textIndex, options.readDocument) {}

    void add(const std::string& path, std::vector<FileItem>& found) const {
        const URL url = URL::fromPath(path);
        const auto root = std::ranges::find_if(
            options_.roots, [&](const URL& folder) { return url.isInside(folder); });
        if (root == options_.roots.end() || url == *root || !isReached(url, *root)) return;
        auto item = FileItem::load(url);
        if (!item || (item->isHidden && !options_.includeHidden) || excluded_.isExcluded(url))
            return;
        const bool enters = isRealFolder(*item) && entersFolder(url, *root);
        if (matcher_.matchesFilters(*item, true)) found.push_back(std::move(*item));
        if (!enters) return;
        SearchOptions inside = options_;
        inside.currentFolder = options_.currentFolder.value_or(*root);
        inside.roots = {url};
        std::ranges::move(SearchTask(std::move(inside)).runAll(), std::back_inserter(found));
    }

private:
    bool isReached(const URL& url, const URL& root) const {
        for (URL folder = url.parent(); folder != root && !folder.isRoot();
             folder = folder.parent()) {
            if (!entersFolder(folder, root)) return false;
        }
        return true;
    }
    bool entersFolder(const URL& folder, const URL& root) const {
        const std::string_view name = folder.name();
        const URL parent = folder.parent();
        if (!options_.includeHidden && ResourceReader(parent).isHidden(name)) return false;
        return !ResourceReader::isPackageName(name) && (parent != root || name != "Library") &&
               !excluded_.isExcludedFolder(folder.path());
    }

    const SearchOptions& options_;
    const SearchResults excluded_;
    const QueryMatcher matcher_;
};

}  // namespace

LiveQuery LiveQuery::search(SearchOptions options) {
    LiveQuery query;
    query.options_ = std::move(options);
    return query;
}

LiveQuery LiveQuery::tag(std::string name) {
    LiveQuery query;
    query.options_.roots = {Paths::home()};
    // Who has tagged a hidden file wants to find it by its tag.
    query.options_.includeHidden = true;
    query.tag_ = std::move(name);
    return query;
}

bool LiveQuery::matters(const std::string& path) const {
    if (options_.includeHidden) return true;
    const auto root = std::ranges::find_if(
        options_.roots, [&](const URL& folder) { return path.starts_with(folder.path()); });
    if (root == options_.roots.end()) return false;
    return path.find("/.", root->isRoot() ? 0 : root->path().size()) == std::string::npos;
}

void LiveQuery::walkTags(const std::vector<URL>& roots, const OnBatch& onBatch,
                         const CancelToken& token) const {
    const std::string wanted = Text::lowercased(*tag_);
    TagWalk::walk(
        [&wanted](const std::string& stored) {
            return Text::lowercased(FinderTag::parse(stored).name) == wanted;
        },
        roots,
        [&onBatch](const std::vector<TagWalk::Tagged>& tagged) {
            std::vector<FileItem> items;
            for (const TagWalk::Tagged& file : tagged)
                if (auto item = FileItem::load(file.url)) items.push_back(std::move(*item));
            onBatch(std::move(items));
        },
        token);
}

std::vector<FileItem> LiveQuery::findTagged(const std::vector<std::string>& paths,
                                            const CancelToken& token) const {
    const std::string wanted = Text::lowercased(*tag_);
    Guarded<std::vector<FileItem>> found;
    const auto add = [&found](std::vector<FileItem> items) {
        std::ranges::move(items, std::back_inserter(*found.lock()));
    };
    for (const std::string& path : paths) {
        const URL url = URL::fromPath(path);
        if (token.isCancelled() || Paths::isInTrash(url) || url.isInside(Paths::cacheHome()))
            continue;
        auto item = FileItem::load(url);
        if (!item) continue;
        if (isRealFolder(*item) || item->isPackage) walkTags({url}, add, token);
        const bool carries = std::ranges::any_of(
            item->tags, [&](const std::string& tag) { return Text::lowercased(tag) == wanted; });
        if (carries) add({std::move(*item)});
    }
    return std::move(*found.lock());
}

std::vector<FileItem> LiveQuery::find(const std::vector<std::string>& paths,
                                      const CancelToken& token) const {
    if (tag_) return findTagged(paths, token);
    const PathSearch search(options_);
    std::vector<FileItem> found;
    for (const std::string& path : paths)
        if (!token.isCancelled()) search.add(path, found);
    return found;
}

}  // namespace tarn
