#include "Tarn/model/SourceNames.h"

#include <algorithm>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/sources/SourceResolver.h"

namespace tarn {
namespace {

constexpr std::size_t atOnce = 256;

std::string sourceOf(const FileItem& item) {
    if (item.isDirectory) return {};
    const auto source = SourceResolver::source(item.url);
    return source ? source->name : std::string();
}

}  // namespace

SourceNames& SourceNames::shared() {
    static SourceNames names;
    return names;
}

void SourceNames::forget(const URL& url) { entries_.lock()->erase(url); }

std::optional<std::string> SourceNames::known(const FileItem& item) const {
    const auto entries = entries_.lock();
    const auto found = entries->find(item.url);
    if (found == entries->end() || found->second.modified != item.modified) return std::nullopt;
    return found->second.name;
}

void SourceNames::read(const std::vector<const FileItem*>& items, const CancelToken& token) {
    const std::size_t parts = (items.size() + atOnce - 1) / atOnce;
    TaskPool::shared().forEach(parts, [&](std::size_t part) {
        const std::size_t end = std::min(items.size(), (part + 1) * atOnce);
        for (std::size_t i = part * atOnce; i < end && !token.isCancelled(); ++i) {
            const FileItem& item = *items[i];
            if (known(item)) continue;
            Entry entry{item.modified, sourceOf(item)};
            const auto entries = entries_.lock();
            if (entries->size() >= mostKept) entries->clear();
            entries->insert_or_assign(item.url, std::move(entry));
        }
    });
}

std::vector<std::uint32_t> SourceNames::sortedIndexes(const std::vector<const FileItem*>& items,
                                                      const SortOrder& sort) {
    if (sort.field != SortField::source) return sort.sortedIndexes(items);
    // Its own copy, since others may fill the memory meanwhile.
    std::unordered_map<URL, std::string> names;
    read(items);
    for (const FileItem* item : items) {
        const auto name = known(*item);
        names.emplace(item->url, name ? *name : sourceOf(*item));
    }
    const auto source = [&names](const URL& url) -> std::optional<std::string> {
        const auto found = names.find(url);
        if (found == names.end() || found->second.empty()) return std::nullopt;
        return found->second;
    };
    return sort.sortedIndexes(items, {}, source);
}

}  // namespace tarn
