#include "Tarn/model/ArchiveCache.h"

#include <algorithm>
#include <system_error>

#include "TarnCore/archive/ArchiveReader.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/ListingError.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {

ArchiveCache::Entries ArchiveCache::entries(const URL& archive, const CancelToken& token) {
    const auto attributes = Platform::current().files->attributes(archive, Links::follow);
    if (!attributes) throw ListingError::notFound(DirectoryLister::displayName(archive));
    {
        const auto kept = kept_.lock();
        const auto found = std::find_if(kept->begin(), kept->end(), [&](const Kept& one) {
            return one.archive == archive && one.modified == attributes->modified &&
                   one.size == attributes->size;
        });
        if (found != kept->end()) {
            kept->splice(kept->begin(), *kept, found);
            return kept->front().entries;
        }
    }
    auto entries =
        std::make_shared<const std::vector<ArchiveEntry>>(ArchiveReader::entries(archive, token));
    std::list<Kept> forgotten;  // Freed after the lock is gone.
    const auto kept = kept_.lock();
    for (auto one = kept->begin(); one != kept->end();) {
        const auto next = std::next(one);
        if (one->archive == archive) forgotten.splice(forgotten.end(), *kept, one);
        one = next;
    }
    kept->push_front({archive, attributes->modified, attributes->size, entries});
    if (kept->size() > mostArchives)
        forgotten.splice(forgotten.end(), *kept, std::prev(kept->end()));
    return entries;
}

}  // namespace tarn
