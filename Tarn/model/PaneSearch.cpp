#include "Tarn/model/PaneSearch.h"

#include <algorithm>

#include "Tarn/model/MainThread.h"
#include "Tarn/model/SourceNames.h"
#include "TarnCore/search/SearchRanking.h"

namespace tarn {
namespace {

/// Milliseconds until the first results are shown, so that a quick search appears finished and in
/// its final order; then between later ones.
constexpr int firstPublish = 40;
constexpr int laterPublish = 150;

/// Seconds that changes of the results are gathered.
constexpr double latency = 1;
constexpr std::size_t mostWatched = 1000;

SharedRows noRows() { return std::make_shared<const PaneRows>(std::vector<FileItem>()); }

SharedRows orderedRows(std::vector<FileItem> items, const SearchQuery& query, const SortOrder& sort,
                       bool isRanked, const SearchTask& task) {
    if (!isRanked) return PaneRows::sorted(std::move(items), sort);
    std::vector<const FileItem*> pointers;
    pointers.reserve(items.size());
    for (const FileItem& item : items) pointers.push_back(&item);
    std::vector<FileItem> sorted;
    sorted.reserve(items.size());
    for (const std::uint32_t i : SourceNames::shared().sortedIndexes(pointers, sort))
        sorted.push_back(std::move(items[i]));
    return std::make_shared<const PaneRows>(
        SearchRanking::rank(std::move(sorted), query,
                            [&task](const FileItem& item) { return task.imageScore(item.url); }));
}

bool isBefore(const FileItem& a, const FileItem& b) { return a.path() < b.path(); }

}  // namespace

PaneSearch::PaneSearch(QObject* parent) : QObject(parent), rows_(noRows()) {
    publishTimer_.setSingleShot(true);
    publishTimer_.setTimerType(Qt::PreciseTimer);
    connect(&publishTimer_, &QTimer::timeout, this, &PaneSearch::publish);
    connect(&watcher_, &PaneWatcher::changed, this, &PaneSearch::changed);
    connect(&changes_, &ChangedPaths::replaced, this, &PaneSearch::changesApplied);
}

PaneSearch::~PaneSearch() { cancel(); }

void PaneSearch::start(SearchOptions options, const SortOrder& sort, bool isRanked, bool isRepeat) {
    cancel();
    const std::uint64_t run = ++run_;
    options_ = options;
    sort_ = sort;
    isRepeat_ = isRepeat;
    isRanked_ = isRanked;
    isRunning_ = true;
    hasEnded_ = isOrdering_ = isDirty_ = isHeld_ = false;
    if (!isRepeat) {
        seen_ = 0;
        rows_ = noRows();
    }
    clock_.start();
    found_ = std::make_shared<Found>();
    task_ = std::make_shared<SearchTask>(std::move(options));
    snippets_.start(task_);
    const QPointer<PaneSearch> self(this);
    task_->start(
        [self, run, found = found_](std::vector<FileItem> batch) {
            {
                const auto items = found->items.lock();
                items->insert(items->end(), std::make_move_iterator(batch.begin()),
                              std::make_move_iterator(batch.end()));
            }
            if (found->isTold.exchange(true)) return;
            MainThread::post(self, [run](PaneSearch& search) { search.batchArrived(run); });
        },
        [self, run] {
            MainThread::post(self, [run](PaneSearch& search) { search.taskEnded(run); });
        });
}

void PaneSearch::setOrder(const SortOrder& sort, bool isRanked) {
    sort_ = sort;
    isRanked_ = isRanked;
    ++order_;
    seen_ = 0;
    if (found_) {
        isDirty_ = true;
        publish();
    }
}

void PaneSearch::cancel() {
    ++run_;
    publishTimer_.stop();
    if (isRunning_) elapsed_ = elapsed();
    isRunning_ = false;
    watcher_.stop();
    watched_.clear();
    changes_.clear();
    retireTask();
    found_.reset();
}

void PaneSearch::retireTask() {
    if (!task_) return;
    snippets_.stop();
    task_->cancel();
    // What orders results may hold the task for a moment longer; whoever lets go of it last does
    // so on a queue, never here.
    retired_.run([task = std::move(task_)]() mutable { task.reset(); });
    task_.reset();
}

bool PaneSearch::asksForTexts() const {
    return !options_.query.containing.empty() || options_.query.textInImages;
}

std::int64_t PaneSearch::visitedCount() const { return task_ ? task_->visitedCount() : 0; }

std::int64_t PaneSearch::tooLargeCount() const { return task_ ? task_->tooLargeCount() : 0; }

double PaneSearch::elapsed() const {
    return isRunning_ && !hasEnded_ ? static_cast<double>(clock_.nsecsElapsed()) * 1e-9 : elapsed_;
}

void PaneSearch::rowsSeen(int count) { seen_ = std::max(seen_, count); }

void PaneSearch::batchArrived(std::uint64_t run) {
    if (run != run_) return;
    isDirty_ = true;
    if (publishTimer_.isActive() || isOrdering_ || isRepeat_) return;
    const auto sinceStart = static_cast<int>(clock_.elapsed());
    publishTimer_.start(rows_->size() == 0 ? std::max(0, firstPublish - sinceStart) : laterPublish);
}

void PaneSearch::taskEnded(std::uint64_t run) {
    if (run != run_) return;
    elapsed_ = elapsed();
    hasEnded_ = true;
    publishTimer_.stop();
    isDirty_ = true;
    publish();
}

void PaneSearch::publish() {
    if (!isDirty_ || isOrdering_ || !task_ || (isRepeat_ && !hasEnded_)) return;
    isDirty_ = false;
    isOrdering_ = true;
    queue_.run([self = QPointer<PaneSearch>(this), run = run_, order = order_, found = found_,
                task = task_, query = options_.query, sort = sort_, isRanked = isRanked_,
                isLast = hasEnded_] {
        // Before the copy, so that what comes during it is told again.
        found->isTold.store(false);
        std::vector<FileItem> items = *found->items.lock();
        auto rows = orderedRows(std::move(items), query, sort, isRanked, *task);
        rows->prepareSearch();
        MainThread::post(self, [run, order, rows = std::move(rows), isLast](PaneSearch& search) {
            search.ordered(run, order, rows, isLast);
        });
    });
}

void PaneSearch::ordered(std::uint64_t run, std::uint64_t order, SharedRows rows, bool isLast) {
    if (run != run_) return;
    isOrdering_ = false;
    if (order != order_) {
        isDirty_ = true;
        publish();
        return;
    }
    const bool isDone = isLast && !isDirty_;
    rows_ = isDone && !isHeld_
                ? std::move(rows)
                : PaneRows::keepingFirst(*rows_, rows, static_cast<std::size_t>(seen_));
    rowsSort_ = sort_;
    rowsAreRanked_ = isRanked_;
    const bool wasRunning = isRunning_;
    if (isDone) isRunning_ = isRepeat_ = false;
    emit rowsChanged();
    if (run != run_) return;  // Whoever was told has asked for something else.
    if (isDone) {
        watchResults();
        if (wasRunning) emit finished();
        applyChanges();
    } else if (hasEnded_) {
        publish();
    } else if (isDirty_) {
        publishTimer_.start(laterPublish);
    }
}

// --- Changes

void PaneSearch::watchResults() {
    std::set<URL> folders;
    for (const FileItem& item : rows_->items()) {
        folders.insert(item.url.parent());
        if (folders.size() == mostWatched) break;
    }
    if (folders == watched_) return;
    watched_ = std::move(folders);
    watcher_.watch({watched_.begin(), watched_.end()}, WatchDepth::children, latency);
}

void PaneSearch::changed(const std::vector<std::string>& paths) {
    std::vector<URL> urls;
    for (const std::string& path : paths) {
        URL url = URL::fromPath(path);
        if (!watched_.contains(url)) {
            urls.push_back(std::move(url));
            continue;
        }
        // All that is known is that something has happened to this folder, or in it.
        if (rows_->row(url)) urls.push_back(url);
        for (const FileItem& item : rows_->items())
            if (item.url.parent() == url) urls.push_back(item.url);
    }
    askAgain(urls);
}

void PaneSearch::askAgain(const std::vector<URL>& urls) {
    if (isRunning_ || !task_) return;
    for (const URL& url : urls) changes_.add(url.path());
    applyChanges();
}

void PaneSearch::applyChanges() {
    if (isRunning_ || !found_) return;
    changes_.ask(
        LiveQuery::search(options_),
        [found = found_](const std::vector<std::string>& paths, std::vector<FileItem> now) {
            const ChangedPaths::Set places(paths.begin(), paths.end());
            std::sort(now.begin(), now.end(), isBefore);
            std::vector<FileItem> before;
            {
                const auto items = found->items.lock();
                const auto kept = std::stable_partition(
                    items->begin(), items->end(), [&places](const FileItem& item) {
                        return !ChangedPaths::isAtOrBelow(item.path(), places);
                    });
                before.assign(std::make_move_iterator(kept), std::make_move_iterator(items->end()));
                items->erase(kept, items->end());
                items->insert(items->end(), now.begin(), now.end());
            }
            std::sort(before.begin(), before.end(), isBefore);
            return now != before;
        });
}

void PaneSearch::changesApplied(bool isDifferent) {
    if (isDifferent) {
        isDirty_ = true;
        publish();
    }
    applyChanges();
}

}  // namespace tarn
