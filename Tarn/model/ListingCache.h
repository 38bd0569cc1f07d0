#pragma once

#include <cstddef>
#include <list>
#include <optional>

#include "Tarn/model/PaneRows.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/files/SortOrder.h"

namespace tarn {

/// The folders listed last, so that going back shows them at once while they are read afresh.
/// Callable from any thread.
class ListingCache {
public:
    struct Key {
        URL folder;
        bool includesHidden = false;
        bool operator==(const Key&) const = default;
    };
    struct Listing {
        SharedRows rows;
        SortOrder sort;
    };

    /// Least recently used folders go when more items than this are kept; about 100 MB.
    static constexpr std::size_t mostItems = 250'000;

    std::optional<Listing> find(const Key& key);
    void keep(const Key& key, Listing listing);
    void clear();

private:
    struct Entry {
        Key key;
        Listing listing;
    };
    Guarded<std::list<Entry>> entries_;  ///< Most recently used first.
};

}  // namespace tarn
