#include "Tarn/model/PaneModel.h"

#include <algorithm>
#include <atomic>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/ArchiveListing.h"
#include "Tarn/model/ContentIndexService.h"
#include "Tarn/model/FolderListing.h"
#include "Tarn/model/MainThread.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

constexpr double folderLatency = 0.25;  // seconds

/// Milliseconds that a listing waits for the watch on its folder, which usually takes one.
constexpr int watchPatience = 30;

/// Milliseconds after which a place that has not answered at all is said not to respond.
constexpr int listingDeadline = 10'000;

}  // namespace

PaneModel::PaneModel(AppModel& app, bool showsHidden, QObject* parent)
    : QObject(parent),
      app_(app),
      items_(app.pool()),
      showsHidden_(showsHidden),
      listing_(items_.rows()),
      searchScope_(app.settings().defaultSearchScope) {
    Q_ASSERT(MainThread::isCurrent());
    refreshTimer_.setSingleShot(true);
    refreshTimer_.setInterval(0);
    connect(&refreshTimer_, &QTimer::timeout, this, &PaneModel::reload);
    searchTimer_.setSingleShot(true);
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
    lateWatchTimer_.setSingleShot(true);
    lateWatchTimer_.setInterval(watchPatience);
    connect(&lateWatchTimer_, &QTimer::timeout, this, [this] {
        if (listUnlessBegun_) listUnlessBegun_();
    });
    connect(&app, &AppModel::cutURLsChanged, this, &PaneModel::cutChanged);
    connect(&watcher_, &PaneWatcher::changed, this, &PaneModel::refreshSoon);
    connect(&app.tagColors(), &TagColors::changed, this, &PaneModel::tagColorsChanged);
    connect(&search_, &PaneSearch::rowsChanged, this, &PaneModel::resultsChanged);
    connect(&search_.snippets(), &PaneSnippets::changed, this, &PaneModel::snippetsChanged);
    connect(&search_, &PaneSearch::finished, this, &PaneModel::stateChanged);
    connect(&app.contentIndex(), &ContentIndexService::contentsChanged, this,
            &PaneModel::textsChanged);
}

PaneModel::~PaneModel() { moveOn(); }

void PaneModel::moveOn() {
    endRename();
    nameWhenListed_.reset();
    ++generation_;
    listToken_.cancel();
    isListing_ = false;
    missedChanges_ = false;
    refreshTimer_.stop();
    lateWatchTimer_.stop();
    listUnlessBegun_ = {};
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
    selection_.clear();
    items_.show(listing_);
    applyPrefs();
    if (location_.isFolder()) app_.noteVisited(location_.url);
    emit locationChanged();
    load();
}

void PaneModel::goBack() {
    if (auto target = history_.goBack(location_)) navigate(*target, false);
}

void PaneModel::goForward() {
    if (auto target = history_.goForward(location_)) navigate(*target, false);
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

bool PaneModel::browse(const FileItem& item) {
    if (location_.isArchive() && !showsResults_) {
        const auto member = ArchiveListing::member(location_.url, item.url);
        if (!item.isDirectory || !member) return false;
        navigate(Location::archive(location_.url, *member));
        return true;
    }
    if (!item.isBrowsable()) return false;
    navigate(item.isDirectory ? Location::folder(item.url) : Location::archive(item.url, {}));
    return true;
}

// --- How it is shown

void PaneModel::applyPrefs() {
    applyingPrefs_ = true;
    const AppSettings& settings = app_.settings();
    FolderViewPrefs prefs{settings.defaultView,
                          {SortField::name, true, settings.foldersFirst},
                          app_.iconSize(),
                          std::nullopt};
    if (location_.isFolder()) prefs = app_.viewPrefs(location_.url).value_or(prefs);
    setViewMode(prefs.viewMode);
    setIconSize(prefs.iconSize);
    if (sort_ != prefs.sort) {
        sort_ = prefs.sort;
        emit sortChanged();
    }
    applyingPrefs_ = false;
}

void PaneModel::savePrefs() {
    if (applyingPrefs_ || !location_.isFolder()) return;
    app_.setViewPrefs(location_.url, {viewMode_, sort_, iconSize_, std::nullopt});
}

void PaneModel::setViewMode(ViewMode mode) {
    if (mode == viewMode_) return;
    viewMode_ = mode;
    savePrefs();
    emit viewModeChanged();
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
    emit sortChanged();
    resortListing();
    if (query_) search_.setOrder(sort_, isRanked_);
}

void PaneModel::setShowsHidden(bool shows) {
    if (shows == showsHidden_) return;
    showsHidden_ = shows;
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
    if (!hasListing()) {
        watcher_.stop();
        emit stateChanged();
        return;
    }
    if (location_.isFolder()) {
        if (auto cached = app_.listings().find({location_.url, showsHidden_})) {
            isLoading_ = false;
            showListing(cached->rows, cached->sort, true);
            isPartial_ = false;
        }
    }
    emit stateChanged();
    // A large archive may take longer to read without anything being wrong.
    if (isLoading_ && location_.isFolder()) deadlineTimer_.start();
    watchAndList();
}

void PaneModel::watchAndList() {
    // The watch comes first, so that no change falls between the listing and the watch. A disk
    // that makes the watch wait must not make the rows wait: then the listing begins without it,
    // and what was missed is read once the watch is there.
    isListing_ = true;
    struct Begun {
        std::atomic<bool> isListing{false};
        std::atomic<bool> isLate{false};
    };
    const auto begun = std::make_shared<Begun>();
    auto list = [begun, task = listing(), &pool = app_.pool()] {
        if (!begun->isListing.exchange(true)) pool.run(task);
    };
    listUnlessBegun_ = [begun, list] {
        begun->isLate = true;
        list();
    };
    lateWatchTimer_.start();
    const URL watched = location_.isFolder() ? location_.url : location_.url.parent();
    watcher_.watch({watched}, WatchDepth::children, folderLatency,
                   [begun, list, generation = generation_, self = QPointer<PaneModel>(this)] {
                       const bool wasLate = begun->isListing && begun->isLate;
                       list();
                       if (!wasLate) return;
                       MainThread::post(self, [generation](PaneModel& pane) {
                           if (generation == pane.generation_) pane.refreshSoon();
                       });
                   });
}

void PaneModel::reload() {
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

std::function<void()> PaneModel::listing() {
    missedChanges_ = false;
    listToken_ = CancelToken();
    return location_.isFolder() ? folderListing() : archiveListing();
}

std::function<void()> PaneModel::folderListing() {
    const bool wantsFirst = isLoading_;
    return [folder = location_.url, hidden = showsHidden_, sort = sort_, token = listToken_,
            wantsFirst, generation = generation_, cache = app_.sharedListings(),
            self = QPointer<PaneModel>(this)] {
        if (token.isCancelled()) return;
        try {
            if (wantsFirst) {
                if (auto first = FolderListing::firstRows(folder, hidden, sort, token)) {
                    auto rows = std::make_shared<const PaneRows>(std::move(*first));
                    MainThread::post(self, [generation, rows, sort](PaneModel& pane) {
                        if (generation == pane.generation_) pane.showListing(rows, sort, true);
                    });
                }
            }
            SharedRows rows = FolderListing::allRows(folder, hidden, sort, token);
            if (token.isCancelled()) return;
            cache->keep({folder, hidden}, {rows, sort});
            MainThread::post(self, [generation, rows = std::move(rows), sort](PaneModel& pane) {
                if (generation != pane.generation_) return;
                pane.showListing(rows, sort, false);
                pane.listingEnded();
            });
        } catch (const ListingError& error) {
            MainThread::post(self, [generation, error](PaneModel& pane) {
                if (generation == pane.generation_) pane.listingFailed(error);
            });
        }
    };
}

void PaneModel::showListing(SharedRows rows, const SortOrder& sort, bool isPartial) {
    listing_ = std::move(rows);
    isPartial_ = isPartial;
    listingError_.reset();
    if (!showsResults_) showRows(listing_);
    if (!selectWhenListed_.empty()) {
        select(selectWhenListed_);
        // Another listing follows, and this one may have begun before the items were there.
        if (!isPartial && !missedChanges_) selectWhenListed_.clear();
    }
    if (nameWhenListed_ && items_.row(*nameWhenListed_)) beginRename(*nameWhenListed_);
    if (sort != sort_ && !isPartial) resortListing();
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
    if (!showsResults_) showRows(listing_);
    emit stateChanged();
}

void PaneModel::loadDeferredTags(const SharedRows& rows) {
    app_.pool().run(
        [rows, sort = sort_, generation = generation_, self = QPointer<PaneModel>(this)] {
            SharedRows tagged = FolderListing::withTags(rows, sort);
            if (!tagged) return;
            MainThread::post(self, [generation, old = rows, tagged, sort](PaneModel& pane) {
                // A new order has other rows; it will carry the tags with its next listing.
                if (generation != pane.generation_ || pane.listing_ != old) return;
                pane.showListing(tagged, sort, false);
            });
        },
        TaskPriority::background);
}

void PaneModel::resortListing() {
    if (listing_->items().empty()) return;
    app_.pool().run([rows = listing_, sort = sort_, generation = generation_,
                     self = QPointer<PaneModel>(this)] {
        auto sorted = std::make_shared<const PaneRows>(sort.sort(rows->items()));
        MainThread::post(self, [generation, old = rows, sorted, sort](PaneModel& pane) {
            if (generation != pane.generation_ || pane.listing_ != old || sort != pane.sort_)
                return;
            pane.showListing(sorted, sort, pane.isPartial_);
        });
    });
}

// --- Rows and selection

void PaneModel::showRows(const SharedRows& rows) {
    if (rows == items_.rows()) return;
    std::vector<URL> selected;
    std::optional<URL> current;
    const int currentRow = selection_.currentIndex().row();
    for (const QItemSelectionRange& range : selection_.selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            selected.push_back(items_.item(row).url);
    }
    if (selection_.currentIndex().isValid())
        current = items_.item(selection_.currentIndex().row()).url;
    items_.show(rows);
    if (!selected.empty()) select(selected);
    if (current) {
        // The keyboard goes on from where an item was that has gone.
        const int row = items_.row(*current).value_or(std::min(currentRow, items_.count() - 1));
        if (row >= 0)
            selection_.setCurrentIndex(items_.index(row, 0), QItemSelectionModel::NoUpdate);
    }
    emit rowsChanged();
}

void PaneModel::select(const std::vector<URL>& urls) {
    std::vector<int> rows;
    rows.reserve(urls.size());
    for (const URL& url : urls) {
        if (const auto row = items_.row(url)) rows.push_back(*row);
    }
    std::sort(rows.begin(), rows.end());
    QItemSelection ranges;
    const int lastColumn = paneColumnCount - 1;
    for (std::size_t i = 0; i < rows.size();) {
        std::size_t end = i + 1;
        while (end < rows.size() && rows[end] == rows[end - 1] + 1) ++end;
        ranges.append(
            QItemSelectionRange(items_.index(rows[i], 0), items_.index(rows[end - 1], lastColumn)));
        i = end;
    }
    selection_.select(ranges, QItemSelectionModel::ClearAndSelect);
    if (!rows.empty())
        selection_.setCurrentIndex(items_.index(rows.front(), 0), QItemSelectionModel::NoUpdate);
}

void PaneModel::selectWhenListed(std::vector<URL> urls) {
    selectWhenListed_ = std::move(urls);
    reload();
}

bool PaneModel::isCut(const URL& url) const { return app_.isCut(url); }

std::vector<FileItem> PaneModel::selectedItems() const {
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selection_.selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    std::vector<FileItem> items;
    items.reserve(rows.size());
    for (const int row : rows) items.push_back(items_.item(row));
    return items;
}

}  // namespace tarn
