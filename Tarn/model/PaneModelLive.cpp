// What a pane shows of places that are queries: the library, saved searches, tags and sources.
#include "Tarn/model/AppModel.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/model/records/SmartFolder.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/index/IndexedTexts.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {

std::string PaneModel::title() const {
    if (location_.which == Location::Case::smartFolder)
        if (const SmartFolder* folder = app_.lists().smartFolder(location_.id)) return folder->name;
    return location_.title();
}

LiveQuery PaneModel::searchOf(SearchQuery query, SearchScopeSetting scope) {
    SearchOptions options;
    options.roots = {scope == SearchScopeSetting::thisMac ? URL() : Paths::home()};
    options.includeHidden = showsHidden_;
    options.priority = TaskPriority::userWaits;
    options.textIndex = IndexedTexts::shared();
    if (!query.containing.empty()) options.readDocument = documentReading();
    options.query = std::move(query);
    return LiveQuery::search(std::move(options));
}

std::optional<LiveQuery> PaneModel::liveQuery() {
    const Calendar calendar = Calendar::current(Locale::current());
    switch (location_.which) {
        case Location::Case::library:
            return searchOf(LibraryItems::query(location_.libraryItem,
                                                Platform::current().clock->now(), calendar),
                            SearchScopeSetting::home);
        case Location::Case::smartFolder: {
            const SmartFolder* folder = app_.lists().smartFolder(location_.id);
            if (!folder) return std::nullopt;
            return searchOf(parsed(folder->query), folder->scope);
        }
        case Location::Case::tag:
            return LiveQuery::tag(location_.text);
        case Location::Case::source: {
            SearchQuery query;
            query.source = location_.text;
            query.filesOnly = true;
            return searchOf(std::move(query), SearchScopeSetting::home);
        }
        default:
            return std::nullopt;
    }
}

SearchQuery PaneModel::narrowed(SearchQuery query) {
    if (!location_.isQuery() || searchScope_ != SearchScopeSetting::currentFolder) return query;
    const auto place = liveQuery();
    if (!place || place->isTag()) return query;
    const SearchQuery& own = place->options().query;
    // What was typed says more than the place does.
    if (query.kinds.empty() && query.extensions.empty()) {
        query.kinds = own.kinds;
        query.extensions = own.extensions;
    }
    if (!query.date) query.date = own.date;
    if (!query.size) query.size = own.size;
    if (!query.source) query.source = own.source;
    if (!query.place) query.place = own.place;
    if (!query.camera) query.camera = own.camera;
    query.terms.insert(query.terms.end(), own.terms.begin(), own.terms.end());
    query.containing.insert(query.containing.end(), own.containing.begin(), own.containing.end());
    query.textInImages = query.textInImages || own.textInImages;
    query.filesOnly = query.filesOnly || own.filesOnly;
    return query;
}

void PaneModel::loadLive() {
    auto query = liveQuery();
    shownSmartFolder_.reset();
    if (const SmartFolder* folder = app_.lists().smartFolder(location_.id))
        shownSmartFolder_ = *folder;
    if (!query) {
        listingError_ = ListingError::other(
            "This smart folder doesn’t exist any more. It may have been deleted.");
        listing_ = std::make_shared<const PaneRows>(std::vector<FileItem>());
        arrangePlace();
        emit stateChanged();
        return;
    }
    isLoading_ = isPartial_ = true;
    live_.start(std::move(*query), sort_);
    emit stateChanged();
}

void PaneModel::smartFoldersChanged() {
    if (location_.which != Location::Case::smartFolder) return;
    const SmartFolder* folder = app_.lists().smartFolder(location_.id);
    const auto now = folder ? std::optional(*folder) : std::nullopt;
    if (now == shownSmartFolder_) return;
    emit locationChanged();  // Its title may be another.
    load();
}

void PaneModel::liveRowsChanged() {
    // Rows must not move under a name that is being edited.
    if (renaming_) {
        missedChanges_ = true;
        return;
    }
    isLoading_ = false;
    showListing(live_.rows(), live_.sort(), live_.isRunning());
    emit stateChanged();
}

void PaneModel::liveEnded() {
    isLoading_ = isPartial_ = false;
    emit stateChanged();
}

}  // namespace tarn
