#include "Tarn/model/PaneModel.h"

#include <algorithm>
#include <utility>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/ArchiveListing.h"
#include "Tarn/model/AwaitedWatch.h"
#include "Tarn/model/ContentIndexService.h"
#include "Tarn/model/DownloadsService.h"
#include "Tarn/model/FolderListing.h"
#include "Tarn/model/MainThread.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

constexpr double folderLatency = 0.25;  // seconds

/// Milliseconds after which a place that has not answered at all is said not to respond.
constexpr int listingDeadline = 10'000;

/// Which row of a place leads to where one was: the way on, for who comes back. Rows that are not
/// there are never selected.
std::vector<URL> wayTo(const Location& left, const Location& place) {
    if (place.isArchive() && left.isArchive() && place.url == left.url) {
        const std::size_t below = place.text.empty() ? 0 : place.text.size() + 1;
        const bool isBelow =
            left.text.size() > below && (below == 0 || left.text.starts_with(place.text + '/'));
        if (!isBelow) return {};
        return {ArchiveListing::url(place.url, left.text.substr(0, left.text.find('/', below)))};
    }
    if (!left.isFolder() && !left.isArchive()) return {};
    URL way = left.url;
    // In a list of results, the folder itself may be one of them.
    if (!place.isFolder()) return {way};
    if (way == place.url || !way.isInside(place.url)) return {};
    while (way.parent() != place.url) way = way.parent();
    return {way};
}

}  // namespace

PaneModel::PaneModel(AppModel& app, bool showsHidden, QObject* parent)
    : QObject(parent),
      app_(app),
      items_(app.pool()),
      showsHidden_(showsHidden),
      listing_(items_.rows()),
      tree_(app.pool()),
      overview_(app.pool(), app.tagColors()),
      searchScope_(app.settings().defaultSearchScope) {
    Q_ASSERT(MainThread::isCurrent());
    refreshTimer_.setSingleShot(true);
    refreshTimer_.setInterval(0);
    connect(&refreshTimer_, &QTimer::timeout, this, &PaneModel::relist);
    searchTimer_.setSingleShot(true);
    searchTimer_.setTimerType(Qt::PreciseTimer);
    searchTimer_.setInterval(static_cast<int>(searchDelay * 1000));
    connect(&searchTimer_, &QTimer::timeout, this, &PaneModel::runSearch);
    deadlineTimer_.setSingleShot(true);
    deadlineTimer_.setInterval(listingDeadline);
    connect(&deadlineTimer_, &QTimer::timeout, this, [this] {
        if (!isLoading_ || !listing_->items().empty()) return;
        listingError_ =
            ListingError::other("“" + DirectoryLister::displayName(location_.url) +
                                "” isn’t responding. It may be on a disk or server that is away.");
        isLoading_ = false;
        emit stateChanged();
    });
    connect(&app, &AppModel::cutURLsChanged, this, &PaneModel::cutChanged);
    // What is shown as the settings say follows them; what the user has changed here stays.
    connect(&app, &AppModel::settingsChanged, this,
            [this, view = app.settings().defaultView,
             foldersFirst = app.settings().foldersFirst]() mutable {
                const AppSettings& now = app_.settings();
                if (!isScopeChosen_) changeScope(now.defaultSearchScope);
                const bool isOwn = location_.isFolder() && app_.viewPrefs(location_.url);
                const bool changesView = !isOwn && now.defaultView != view;
                const bool changesOrder = !isOwn && now.foldersFirst != foldersFirst;
                view = now.defaultView;
                foldersFirst = now.foldersFirst;
                applyingPrefs_ = true;
                if (changesView) setViewMode(view);
                if (changesOrder) {
                    sort_.foldersFirst = foldersFirst;
                    orderChanged();
                }
                applyingPrefs_ = false;
                if (changesView && !tree_.isEmpty()) arrangePlace();
            });
    connect(&watcher_, &PaneWatcher::changed, this, &PaneModel::refreshSoon);
    connect(&app.downloads(), &DownloadsService::arrived, &overview_, &PlaceOverview::filesArrived);
    // What was trashed on another disk lies in another folder.
    connect(&app.trash(), &TrashService::changed, this, [this] {
        const TrashService& trash = app_.trash();
        const bool isHere = location_.isFolder() && location_.url == Paths::trash();
        if (isHere && !trash.isMeasuring() && !trash.isEmptying()) refreshSoon();
    });
    connect(&tree_, &PaneTree::changed, this, &PaneModel::arrangePlace);
    connect(&tree_, &PaneTree::failed, this, &PaneModel::unfoldingFailed);
    connect(&app.lists(), &UserLists::smartFoldersChanged, this, &PaneModel::smartFoldersChanged);
    connect(&live_, &LiveList::rowsChanged, this, &PaneModel::liveRowsChanged);
    connect(&live_, &LiveList::finished, this, &PaneModel::liveEnded);
    connect(&app.tagColors(), &TagColors::changed, this, &PaneModel::tagColorsChanged);
    connect(&search_, &PaneSearch::rowsChanged, this, &PaneModel::resultsChanged);
    connect(&search_.snippets(), &PaneSnippets::changed, this, &PaneModel::snippetsChanged);
    connect(&search_, &PaneSearch::finished, this, &PaneModel::stateChanged);
    connect(&app.contentIndex(), &ContentIndexService::contentsChanged, this,
            &PaneModel::textsChanged);
}

PaneModel::~PaneModel() { moveOn(); }

void PaneModel::moveOn() {
    missedChanges_ = false;  // They belong to what is left.
    endRename();
    nameWhenListed_.reset();
    ++generation_;
    listToken_.cancel();
    isListing_ = false;
    ++arranging_;
    isArranging_ = false;
    live_.stop();
    refreshTimer_.stop();
}

// --- Going places

void PaneModel::navigate(const Location& to, bool addToHistory, std::vector<URL> select) {
    const Location target = to.canonical();
    const bool isSame = hasLocation_ && target == location_;
    if (!isSame) clearSearch(false);
    if (isSame) {
        if (!select.empty()) {
            this->select(select);
            // What is selected may be in the listing that is still to come.
            if (isListing_ || addToHistory) selectWhenListed_ = std::move(select);
        }
        if (addToHistory) reload();
        return;
    }
    if (addToHistory && hasLocation_) history_.push(location_);
    location_ = target;
    hasLocation_ = true;
    ++navigationID_;
    selectWhenListed_ = std::move(select);
    listing_ = std::make_shared<const PaneRows>(std::vector<FileItem>());
    tree_.clear();
    selection_.clear();
    items_.show(listing_);
    rowOrder_ = {};
    applyPrefs();
    if (location_.isFolder()) app_.noteVisited(location_.url);
    emit locationChanged();
    load();
}

void PaneModel::goBack() {
    const Location left = location_;
    if (auto target = history_.goBack(left)) navigate(*target, false, wayTo(left, *target));
}

void PaneModel::goForward() {
    const Location left = location_;
    if (auto target = history_.goForward(left)) navigate(*target, false, wayTo(left, *target));
}

bool PaneModel::canGoUp() const {
    return location_.isArchive() || (location_.isFolder() && !location_.url.isRoot());
}

void PaneModel::goUp() {
    if (!canGoUp()) return;
    if (location_.isFolder()) {
        navigate(Location::folder(location_.url.parent()), true, {location_.url});
    } else if (location_.text.empty()) {
        navigate(Location::folder(location_.url.parent()), true, {location_.url});
    } else {
        const auto slash = location_.text.rfind('/');
        navigate(Location::archive(location_.url, slash == std::string::npos
                                                      ? std::string()
                                                      : location_.text.substr(0, slash)),
                 true, {ArchiveListing::url(location_.url, location_.text)});
    }
}

std::optional<Location> PaneModel::inside(const FileItem& item) const {
    if (location_.isArchive() && !showsResults_) {
        const auto member = ArchiveListing::member(location_.url, item.url);
        if (!item.isDirectory || !member) return std::nullopt;
        return Location::archive(location_.url, *member);
    }
    if (!item.isBrowsable()) return std::nullopt;
    return item.isDirectory ? Location::folder(item.url) : Location::archive(item.url, {});
}

bool PaneModel::browse(const FileItem& item) {
    const auto place = inside(item);
    if (place) navigate(*place);
    return place.has_value();
}

// --- How it is shown

void PaneModel::applyPrefs() {
    applyingPrefs_ = true;
    const AppSettings& settings = app_.settings();
    FolderViewPrefs prefs{settings.defaultView,
                          {SortField::name, true, settings.foldersFirst},
                          app_.iconSize(),
                          std::nullopt};
    // What was opened last is most likely what is looked for.
    if (location_ == Location::library(LibraryItem::recents))
        prefs.sort = {SortField::modified, false, settings.foldersFirst};
    if (location_.isFolder()) prefs = app_.viewPrefs(location_.url).value_or(prefs);
    setViewMode(prefs.viewMode);
    setIconSize(prefs.iconSize);
    setGroupBy(prefs.groupBy.value_or(GroupField::none));
    setCloudFilter(CloudFilter::all);
    if (sort_ != prefs.sort) {
        sort_ = prefs.sort;
        emit sortChanged();
    }
    applyingPrefs_ = false;
}

void PaneModel::savePrefs() {
    if (applyingPrefs_ || !location_.isFolder()) return;
    std::optional<GroupField> groupBy;
    if (this->groupBy() != GroupField::none) groupBy = this->groupBy();
    app_.setViewPrefs(location_.url, {viewMode_, sort_, iconSize_, groupBy});
}

void PaneModel::setViewMode(ViewMode mode) {
    if (mode == viewMode_) return;
    viewMode_ = mode;
    savePrefs();
    emit viewModeChanged();
    if (!tree_.isEmpty() && !applyingPrefs_) arrangePlace();
}

void PaneModel::restoreViewMode(ViewMode mode) {
    const bool wasApplying = std::exchange(applyingPrefs_, true);
    setViewMode(mode);
    applyingPrefs_ = wasApplying;
}

void PaneModel::setIconSize(double size) {
    if (size == iconSize_) return;
    iconSize_ = size;
    savePrefs();
    emit iconSizeChanged();
}

void PaneModel::sortBy(SortField field) {
    if (field == sort_.field) {
        sort_.ascending = !sort_.ascending;
    } else {
        sort_.field = field;
        sort_.ascending = SortFields::startsAscending(field);
    }
    savePrefs();
    isRanked_ = false;
    orderChanged();
}

void PaneModel::orderChanged() {
    emit sortChanged();
    if (location_.isQuery())
        live_.setSort(sort_);
    else
        resortListing();
    if (query_) search_.setOrder(sort_, isRanked_);
}

void PaneModel::setShowsHidden(bool shows) {
    if (shows == showsHidden_) return;
    showsHidden_ = shows;
    tree_.setShowsHidden(shows);
    if (!hasLocation_) return;
    if (query_) startSearch();
    moveOn();
    load();
}

// --- Listing

void PaneModel::load() {
    moveOn();
    listingError_.reset();
    isPartial_ = false;
    shownEntries_.reset();
    isLoading_ = hasListing();
    overview_.show(location_.which);
    if (location_.isQuery()) {
        watcher_.stop();
        loadLive();
        return;
    }
    if (!hasListing()) {
        watcher_.stop();
        emit stateChanged();
        return;
    }
    if (location_.isFolder()) showCached();
    emit stateChanged();
    // A large archive may take longer to read without anything being wrong.
    if (isLoading_ && location_.isFolder()) deadlineTimer_.start();
    watchAndList();
}

void PaneModel::showCached() {
    const auto cached = app_.listings().find({location_.url, showsHidden_});
    if (!cached) return;
    const auto show = [](PaneModel& pane, const auto&... listing) {
        pane.isLoading_ = false;
        pane.showListing(listing..., true);
        pane.isPartial_ = false;
    };
    if (cached->sort == sort_) {
        show(*this, cached->rows, cached->sort);
        return;
    }
    // In another order they would move under the pointer in a moment.
    app_.pool().run([rows = cached->rows, sort = sort_, how = wantedArrangement(), show,
                     generation = generation_, self = QPointer<PaneModel>(this)] {
        MainThread::post(
            self, [generation, show,
                   listed = Listed(PaneRows::sorted(rows, sort), sort, how)](PaneModel& pane) {
                if (generation != pane.generation_ || !pane.isListing_) return;
                show(pane, listed);
                emit pane.stateChanged();
            });
    });
}

void PaneModel::watchAndList() {
    isListing_ = true;
    const auto watch = std::make_shared<AwaitedWatch>();
    const URL watched = location_.isFolder() ? location_.url : location_.url.parent();
    watcher_.watch({watched}, WatchDepth::children, folderLatency,
                   [watch, generation = generation_, self = QPointer<PaneModel>(this)] {
                       if (watch->arrive()) return;
                       MainThread::post(self, [generation](PaneModel& pane) {
                           if (generation == pane.generation_) pane.refreshSoon();
                       });
                   });
    app_.pool().run(listing(watch));
}

void PaneModel::reload(bool clearThumbnails) {
    reloadPlace(clearThumbnails);
    if (query_) startSearch();
}

void PaneModel::reloadPlace(bool clearThumbnails) {
    reloadToken_ = UUID::random();
    emit reloaded(clearThumbnails);
    tree_.reload();
    overview_.refresh();
    relist();
}

void PaneModel::relist() {
    if (location_.isQuery()) {
        if (listingError_)
            load();
        else
            live_.repeat();
        return;
    }
    if (!hasListing()) return;
    // A folder that changes all the time must not keep its listing from ever ending.
    if (isListing_) {
        missedChanges_ = true;
        return;
    }
    if (listingError_) {
        load();
        return;
    }
    ++generation_;
    startListing();
}

void PaneModel::refreshSoon() {
    // Rows must not move under a name that is being edited.
    if (renaming_) {
        missedChanges_ = true;
        return;
    }
    if (!refreshTimer_.isActive()) refreshTimer_.start();
}

void PaneModel::startListing() {
    isListing_ = true;
    app_.pool().run(listing());
}

std::function<void()> PaneModel::listing(std::shared_ptr<AwaitedWatch> watch) {
    missedChanges_ = false;
    listToken_.cancel();  // The tags of the listing before may still be under way.
    listToken_ = CancelToken();
    return location_.isFolder() ? folderListing(std::move(watch))
                                : archiveListing(std::move(watch));
}

std::function<void()> PaneModel::folderListing(std::shared_ptr<AwaitedWatch> watch) {
    return [watch = std::move(watch), folder = location_.url, hidden = showsHidden_, sort = sort_,
            token = listToken_, how = wantedArrangement(), wantsParts = isLoading_,
            generation = generation_, cache = app_.sharedListings(),
            self = QPointer<PaneModel>(this)] {
        if (token.isCancelled()) return;
        const auto tell = [&](const SharedRows& part) {
            MainThread::post(self, [generation, part = Listed(part, sort, how)](PaneModel& pane) {
                // What came from the cache is more.
                const bool isMore = pane.isPartial_ || pane.listing_->size() == 0;
                if (generation == pane.generation_ && isMore) pane.showListing(part, true);
            });
        };
        try {
            FolderListing::Progress progress;
            if (watch) progress.onNames = [&watch] { watch->wait(); };
            if (wantsParts) progress.onPart = tell;
            SharedRows rows = FolderListing::rows(folder, hidden, sort, token, progress);
            if (token.isCancelled()) return;
            cache->keep({folder, hidden}, {rows, sort});
            MainThread::post(self, [generation, all = Listed(rows, sort, how)](PaneModel& pane) {
                if (generation != pane.generation_) return;
                pane.showListing(all, false);
                pane.listingEnded();
            });
        } catch (const ListingError& error) {
            MainThread::post(self, [generation, error](PaneModel& pane) {
                if (generation == pane.generation_) pane.listingFailed(error);
            });
        }
    };
}

void PaneModel::noteListing(SharedRows rows, const SortOrder& sort, bool isPartial) {
    listing_ = std::move(rows);
    listingSort_ = sort;
    isPartial_ = isPartial;
    isSettled_ = !isPartial && !missedChanges_;
    listingError_.reset();
}

void PaneModel::showListing(SharedRows rows, const SortOrder& sort, bool isPartial) {
    noteListing(std::move(rows), sort, isPartial);
    arrangePlace();
    if (sort != sort_ && !isPartial && !location_.isQuery()) resortListing();
}

PaneModel::Listed::Listed(SharedRows listing, const SortOrder& order, const RowArrangement& wanted)
    : rows(std::move(listing)), sort(order), how(wanted), arranged(how.arrange(rows)) {
    arranged->prepareSearch();
}

void PaneModel::showListing(const Listed& listed, bool isPartial) {
    if (showsResults_ || listed.how != wantedArrangement()) {
        showListing(listed.rows, listed.sort, isPartial);
        return;
    }
    ++arranging_;
    isArranging_ = false;
    noteListing(listed.rows, listed.sort, isPartial);
    showArranged(listed.arranged, {listed.sort, listed.how.groupBy});
}

void PaneModel::listingEnded() {
    isListing_ = false;
    isLoading_ = false;
    deadlineTimer_.stop();
    if (location_.isFolder() && DirectoryLister::tagsDeferred(listing_->size()))
        loadDeferredTags(listing_);
    emit stateChanged();
    if (missedChanges_) refreshSoon();
}

void PaneModel::listingFailed(const ListingError& error) {
    isListing_ = false;
    isLoading_ = false;
    isPartial_ = false;
    shownEntries_.reset();
    deadlineTimer_.stop();
    listingError_ = error;
    listing_ = std::make_shared<const PaneRows>(std::vector<FileItem>());
    arrangePlace();
    emit stateChanged();
}

void PaneModel::loadDeferredTags(const SharedRows& rows) {
    app_.pool().run(
        [rows, sort = sort_, token = listToken_, how = wantedArrangement(),
         generation = generation_, self = QPointer<PaneModel>(this)] {
            SharedRows tagged = FolderListing::withTags(rows, sort, token);
            if (!tagged) return;
            MainThread::post(self, [generation, old = rows,
                                    listed = Listed(tagged, sort, how)](PaneModel& pane) {
                // A new order has other rows; it will carry the tags with its next listing.
                if (generation != pane.generation_ || pane.listing_ != old) return;
                pane.showListing(listed, false);
            });
        },
        TaskPriority::background);
}

void PaneModel::resortListing() {
    if (listing_->items().empty()) return;
    app_.pool().run([rows = listing_, sort = sort_, how = wantedArrangement(),
                     generation = generation_, self = QPointer<PaneModel>(this)] {
        MainThread::post(self, [generation, old = rows,
                                listed = Listed(PaneRows::sorted(rows, sort), sort, how)](
                                   PaneModel& pane) {
            if (generation != pane.generation_ || pane.listing_ != old || listed.sort != pane.sort_)
                return;
            pane.showListing(listed, pane.isPartial_);
        });
    });
}

}  // namespace tarn
