#include "Tarn/model/LiveList.h"

#include <algorithm>
#include <utility>

#include "Tarn/model/MainThread.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// Milliseconds until the first rows are shown, so that a quick query appears finished; then
/// between later ones.
constexpr int firstPublish = 50;
constexpr int laterPublish = 200;

/// Whole runs that follow each other take at most this part of the time.
constexpr qint64 restPerRun = 100;

SharedRows noRows() { return std::make_shared<const PaneRows>(std::vector<FileItem>()); }

/// Takes out the thing at a path and all that lies below it.
template <class Items>
void takeInside(Items& items, const std::string& path, Items& taken) {
    if (auto node = items.extract(path)) taken.insert(std::move(node));
    const std::string below = path + '/';
    for (auto at = items.lower_bound(below); at != items.end() && at->first.starts_with(below);)
        taken.insert(items.extract(at++));
}

}  // namespace

// Of the whole computer, the parts in which a person's files change. A watch over all of it would
// take more than other programs can spare.
std::vector<URL> LiveList::watchedOf(const std::vector<URL>& roots) {
    std::vector<URL> watched;
    for (const URL& root : roots) {
        if (!root.isRoot()) {
            watched.push_back(root);
            continue;
        }
        watched.push_back(Paths::home());
        for (const Mount& mount : Platform::current().volumes->mounts())
            if (mount.isRemovable && !mount.isNetwork && !mount.isPseudo)
                watched.push_back(mount.mountPoint);
    }
    return watched;
}

LiveList::LiveList(QObject* parent, LiveTiming timing)
    : QObject(parent), timing_(timing), rows_(noRows()) {
    publishTimer_.setSingleShot(true);
    connect(&publishTimer_, &QTimer::timeout, this, &LiveList::publish);
    repeatTimer_.setSingleShot(true);
    connect(&repeatTimer_, &QTimer::timeout, this, &LiveList::repeat);
    connect(&watcher_, &PaneWatcher::changed, this, &LiveList::changed);
    connect(&changes_, &ChangedPaths::replaced, this, &LiveList::changesApplied);
}

LiveList::~LiveList() { stop(); }

void LiveList::stop() {
    ++run_;
    publishTimer_.stop();
    repeatTimer_.stop();
    watcher_.stop();
    token_.cancel();
    retireTask();
    changes_.clear();
    isRunning_ = isWalking_ = isOrdering_ = isDirty_ = isHeld_ = isCut_ = false;
    seen_ = 0;
    // Freeing 100,000 items takes a while.
    if (found_) walking_.run([found = std::move(found_), renewed = std::move(renewed_)] {});
    found_.reset();
    renewed_.reset();
    rows_ = noRows();
}

void LiveList::retireTask() {
    if (!task_) return;
    task_->cancel();
    // Whoever lets go of it waits for its threads; never here.
    walking_.run([task = std::move(task_)]() mutable { task.reset(); });
    task_.reset();
}

void LiveList::start(LiveQuery query, const SortOrder& sort) {
    stop();
    query_ = std::move(query);
    sort_ = rowsSort_ = sort;
    isRunning_ = true;
    clock_.start();
    found_ = std::make_shared<Found>();
    watched_ = watchedOf(query_.roots());
    watcher_.watch(watched_, WatchDepth::tree, timing_.latency);
    run(found_);
}

void LiveList::repeat() {
    if (!found_) return;
    // Nor beside the changes, which write into what it would replace.
    if (isWalking_ || changes_.isAsking()) {
        if (!repeatTimer_.isActive()) repeatTimer_.start(laterPublish);
        return;
    }
    repeatTimer_.stop();
    changes_.clear();
    renewed_ = std::make_shared<Found>();
    run(renewed_);
}

void LiveList::run(std::shared_ptr<Found> found) {
    const std::uint64_t run = ++run_;
    isWalking_ = true;
    isOrdering_ = false;
    sinceRun_.start();
    token_ = CancelToken();
    retireTask();
    const QPointer<LiveList> self(this);
    const auto take = [self, run, found](std::vector<FileItem> batch) {
        {
            const auto items = found->items.lock();
            for (FileItem& item : batch) {
                if (std::ssize(*items) >= mostItems) break;
                std::string path = item.path();
                items->insert_or_assign(std::move(path), std::move(item));
            }
        }
        if (found->isTold.exchange(true)) return;
        MainThread::post(self, [run](LiveList& list) { list.batchArrived(run); });
    };
    const auto end = [self, run] {
        MainThread::post(self, [run](LiveList& list) { list.runEnded(run); });
    };
    if (query_.isTag()) {
        walking_.run([query = query_, token = token_, take, end] {
            if (!token.isCancelled()) query.walkTags(query.roots(), take, token);
            end();
        });
        return;
    }
    SearchOptions options = query_.options();
    options.limit = mostItems;
    task_ = std::make_shared<SearchTask>(std::move(options));
    task_->start(take, end);
}

void LiveList::batchArrived(std::uint64_t run) {
    // A repeated run is shown when it is complete.
    if (run != run_ || renewed_) return;
    isDirty_ = true;
    if (publishTimer_.isActive() || isOrdering_) return;
    const auto sinceStart = static_cast<int>(clock_.elapsed());
    publishTimer_.start(rows_->size() == 0 ? std::max(0, firstPublish - sinceStart) : laterPublish);
}

void LiveList::runEnded(std::uint64_t run) {
    if (run != run_) return;
    isWalking_ = false;
    runTook_ = sinceRun_.elapsed();
    retireTask();
    if (renewed_) {
        std::swap(found_, renewed_);
        walking_.run([old = std::move(renewed_)] {});
        renewed_.reset();
    }
    publishTimer_.stop();
    isDirty_ = true;
    publish();
    applyChanges();
}

void LiveList::setSort(const SortOrder& sort) {
    if (sort == sort_ || !found_) return;
    sort_ = sort;
    seen_ = 0;
    isDirty_ = true;
    publish();
}

void LiveList::publish() {
    if (!isDirty_ || isOrdering_ || !found_) return;
    isDirty_ = false;
    isOrdering_ = true;
    ordering_.run([self = QPointer<LiveList>(this), run = run_, found = found_, sort = sort_,
                   isLast = !isWalking_] {
        // Before the copy, so that what comes during it is told again.
        found->isTold.store(false);
        std::vector<FileItem> copy;
        {
            const auto items = found->items.lock();
            copy.reserve(items->size());
            for (const auto& [path, item] : *items) copy.push_back(item);
        }
        SharedRows rows = PaneRows::sorted(std::move(copy), sort);
        rows->prepareSearch();
        MainThread::post(self, [run, rows, sort, isLast](LiveList& list) {
            list.ordered(run, rows, sort, isLast);
        });
    });
}

void LiveList::ordered(std::uint64_t run, SharedRows rows, const SortOrder& sort, bool isLast) {
    if (run != run_) return;
    isOrdering_ = false;
    if (sort != sort_) {
        isDirty_ = true;
        publish();
        return;
    }
    const bool keepsSeen = isRunning_ && (!isLast || isHeld_) && sort == rowsSort_;
    rows_ = keepsSeen ? PaneRows::keepingFirst(*rows_, rows, static_cast<std::size_t>(seen_))
                      : std::move(rows);
    rowsSort_ = sort;
    isCut_ = std::cmp_greater_equal(rows_->size(), mostItems);
    const bool hasEnded = isRunning_ && isLast && !isDirty_;
    if (hasEnded) isRunning_ = isHeld_ = false;
    emit rowsChanged();
    if (hasEnded) emit finished();
    if (!isDirty_) return;
    if (isWalking_)
        publishTimer_.start(laterPublish);
    else
        publish();
}

// --- Changes

void LiveList::changed(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        const bool isRoot =
            std::ranges::any_of(watched_, [&](const URL& root) { return path == root.path(); });
        if (isRoot) {
            if (repeatTimer_.isActive()) continue;
            const auto pause = std::max(static_cast<qint64>(timing_.betweenWholeRuns * 1000),
                                        restPerRun * runTook_);
            const qint64 rest = pause - sinceRun_.elapsed();
            repeatTimer_.start(static_cast<int>(std::max<qint64>(0, rest)));
        } else if (query_.matters(path)) {
            changes_.add(path);
        }
    }
    applyChanges();
}

void LiveList::askAgain(const std::vector<URL>& urls) {
    for (const URL& url : urls) changes_.add(url.path());
    applyChanges();
}

void LiveList::applyChanges() {
    if (isWalking_ || !found_) return;
    changes_.ask(query_, [found = found_](const std::vector<std::string>& paths,
                                          std::vector<FileItem> things) {
        Items now;
        for (FileItem& item : things) {
            std::string path = item.path();
            now.insert_or_assign(std::move(path), std::move(item));
        }
        Items before;
        const auto items = found->items.lock();
        for (const std::string& path : paths) takeInside(*items, path, before);
        for (const auto& [path, item] : now) items->insert_or_assign(path, item);
        return now != before;
    });
}

void LiveList::changesApplied(bool isDifferent) {
    if (isDifferent) {
        isDirty_ = true;
        publish();
    }
    applyChanges();
}

}  // namespace tarn
