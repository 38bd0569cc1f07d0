#include "Tarn/model/TrashListing.h"

#include <iterator>
#include <optional>
#include <utility>

#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/ops/TrashContents.h"

namespace tarn {

std::vector<FileItem> TrashListing::items(bool includeHidden, const CancelToken& token) {
    std::vector<FileItem> all;
    std::optional<ListingError> failure;
    for (const URL& holder : TrashContents::holders()) {
        try {
            std::vector<FileItem> some = DirectoryLister::list(holder, includeHidden, token);
            std::ranges::move(some, std::back_inserter(all));
        } catch (const ListingError& error) {
            if (error.reason() != ListingError::Reason::notFound) failure = error;
        }
    }
    if (all.empty() && failure) throw *std::move(failure);
    return all;
}

}  // namespace tarn
