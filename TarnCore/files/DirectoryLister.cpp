#include "TarnCore/files/DirectoryLister.h"

#include <memory>
#include <numeric>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/ItemGathering.h"
#include "TarnCore/files/ListedFolder.h"

namespace tarn::DirectoryLister {
namespace {

/// Builds the items of URLs from anywhere. Neighbours in the list mostly share their folder, so its
/// `.hidden` list is kept until the next folder.
class ItemLoader {
public:
    ItemLoader(const std::vector<URL>& urls, ResourceKeys keys) : urls_(urls), keys_(keys) {}

    std::optional<FileItem> operator()(std::size_t i) {
        const URL& url = urls_[i];
        URL parent = url.parent();
        if (!resources_ || parent != folder_) {
            folder_ = std::move(parent);
            resources_ = std::make_unique<ResourceReader>(folder_);
        }
        auto values = resources_->values(url, keys_);
        return values ? std::optional(FileItem::make(url, std::move(*values))) : std::nullopt;
    }

private:
    const std::vector<URL>& urls_;
    ResourceKeys keys_;
    URL folder_;
    std::unique_ptr<ResourceReader> resources_;
};

}  // namespace

bool tagsDeferred(std::size_t count) { return count > deferTagsAbove; }

std::vector<FileItem> list(const URL& folder, bool includeHidden, const CancelToken& token,
                           AttributeReading reading) {
    const ListedFolder listed(folder, includeHidden, token);
    std::vector<std::uint32_t> all(listed.size());
    std::iota(all.begin(), all.end(), 0U);
    return listed.items(all, keys(folder, listed.size(), reading), token);
}

ResourceKeys keys(const URL& folder, std::size_t count, AttributeReading reading) {
    const bool readsAttributes = reading == AttributeReading::always || !tagsDeferred(count);
    return {.tags = readsAttributes, .cloud = FileItem::isCloudPath(folder)};
}

std::vector<ListedName> names(const URL& folder, bool includeHidden, const CancelToken& token) {
    const ListedFolder listed(folder, includeHidden, token);
    std::vector<ListedName> names;
    names.reserve(listed.size());
    for (const ListedNameView& name : listed.names())
        names.push_back({std::string(name.name), name.isDirectory});
    return names;
}

std::vector<FileItem> load(const std::vector<URL>& urls, ResourceKeys keys) {
    return ItemGathering::gather<ItemLoader>(urls.size(), {},
                                             [&] { return ItemLoader(urls, keys); });
}

std::unordered_map<URL, std::vector<std::string>> loadTags(const std::vector<URL>& urls,
                                                           const CancelToken& token) {
    std::unordered_map<URL, std::vector<std::string>> result;
    for (const URL& url : urls) {
        if (token.isCancelled()) break;
        std::vector<std::string> tags = ResourceReader::tags(url);
        if (!tags.empty()) result.emplace(url, std::move(tags));
    }
    return result;
}

std::string displayName(const URL& url) {
    return url.isRoot() ? "Computer" : Text::sanitized(url.name());
}

}  // namespace tarn::DirectoryLister
