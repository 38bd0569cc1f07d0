#include "Tarn/model/ListingCache.h"

#include <algorithm>

namespace tarn {

std::optional<ListingCache::Listing> ListingCache::find(const Key& key) {
    const auto entries = entries_.lock();
    const auto found = std::find_if(entries->begin(), entries->end(),
                                    [&key](const Entry& entry) { return entry.key == key; });
    if (found == entries->end()) return std::nullopt;
    entries->splice(entries->begin(), *entries, found);
    return found->listing;
}

void ListingCache::keep(const Key& key, Listing listing) {
    std::list<Entry> forgotten;  // Freed after the lock is gone.
    const auto entries = entries_.lock();
    const auto found = std::find_if(entries->begin(), entries->end(),
                                    [&key](const Entry& entry) { return entry.key == key; });
    if (found != entries->end()) forgotten.splice(forgotten.end(), *entries, found);
    entries->push_front({key, std::move(listing)});
    std::size_t items = 0;
    auto entry = entries->begin();
    while (entry != entries->end() && items + entry->listing.rows->size() <= mostItems)
        items += (entry++)->listing.rows->size();
    forgotten.splice(forgotten.end(), *entries, entry, entries->end());
}

void ListingCache::clear() {
    const auto entries = entries_.lock();
    entries->clear();
}

}  // namespace tarn
