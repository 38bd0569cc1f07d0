// What a pane shows of archives, and the name that is being edited in it.
#include <utility>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/ArchiveListing.h"
#include "Tarn/model/AwaitedWatch.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/PaneModel.h"

namespace tarn {

std::function<void()> PaneModel::archiveListing(std::shared_ptr<AwaitedWatch> watch) {
    return [watch = std::move(watch), archive = location_.url, inside = location_.text,
            hidden = showsHidden_, sort = sort_, token = listToken_, shown = shownEntries_,
            generation = generation_, cache = app_.sharedArchives(),
            self = QPointer<PaneModel>(this)] {
        if (watch) watch->wait();
        if (token.isCancelled()) return;
        const auto fail = [&](const ListingError& error) {
            if (token.isCancelled()) return;
            MainThread::post(self, [generation, error](PaneModel& pane) {
                if (generation == pane.generation_) pane.listingFailed(error);
            });
        };
        try {
            const ArchiveCache::Entries entries = cache->entries(archive, token);
            if (token.isCancelled()) return;
            // Something else beside the archive has changed.
            SharedRows rows;
            if (entries != shown) {
                if (!ArchiveListing::hasFolder(inside, *entries))
                    throw ListingError::notFound(inside.substr(inside.rfind('/') + 1));
                rows = ArchiveListing::rows(archive, inside, *entries, hidden, sort);
            }
            MainThread::post(self, [generation, rows, entries, sort](PaneModel& pane) {
                if (generation != pane.generation_) return;
                pane.shownEntries_ = entries;
                if (rows) pane.showListing(rows, sort, false);
                pane.listingEnded();
            });
        } catch (const ListingError& error) {
            fail(error);
        } catch (const Error& error) {
            fail(ListingError::other(error.what()));
        }
    };
}

std::vector<std::string> PaneModel::selectedMembers() const {
    std::vector<std::string> members;
    if (!showsMembers()) return members;
    for (const FileItem& item : selectedItems()) {
        if (auto member = ArchiveListing::member(location_.url, item.url))
            members.push_back(std::move(*member));
    }
    return members;
}

std::vector<TagColor> PaneModel::tagColors(const FileItem& item) const {
    std::vector<TagColor> colors;
    colors.reserve(item.tags.size());
    for (const std::string& tag : item.tags)
        colors.push_back(app_.tagColors().color(tag, item.url));
    return colors;
}

bool PaneModel::returnOpens() const { return app_.settings().returnOpens; }

void PaneModel::beginRename(URL item) {
    nameWhenListed_.reset();
    if (showsMembers() || !items_.row(item) || renaming_ == item) return;
    select({item});
    renaming_ = std::move(item);
    tree_.setHolds(true);
    emit renamingChanged();
}

void PaneModel::endRename() {
    if (!renaming_) return;
    renaming_.reset();
    tree_.setHolds(false);
    emit renamingChanged();
    if (!std::exchange(missedChanges_, false)) return;
    if (showsResults_) arrange();
    if (location_.isQuery())
        liveRowsChanged();
    else
        refreshSoon();
}

void PaneModel::renameWhenListed(const URL& item) {
    if (showsResults_ || !location_.isFolder() || item.parent() != location_.url) return;
    if (items_.row(item))
        beginRename(item);
    else
        nameWhenListed_ = item;
}

}  // namespace tarn
