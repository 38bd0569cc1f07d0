#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>

#include "Tarn/model/ChangedPaths.h"
#include "Tarn/model/LiveQuery.h"
#include "Tarn/model/PaneRows.h"
#include "Tarn/model/PaneWatcher.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/files/SortOrder.h"

namespace tarn {

/// When a LiveList does what, in seconds.
struct LiveTiming {
    double latency = 1;            ///< Of the watch over the roots.
    double betweenWholeRuns = 30;  ///< Where the watch may have missed something.
};

/// The rows of a place that is a query: what it finds, as it is found, and kept as the disk
/// changes.
///
/// Main thread only. The query runs once over its roots; meanwhile rows come in batches, and those
/// that were on the screen keep their places. Afterwards the roots are watched, and only what lies
/// at a path that changed is asked again. Of the whole computer the home folder and the
/// disks beside the system's are watched: what lies elsewhere belongs to the system.
/// The watch begins with the run and may be ready after the walk has passed: a file that changes in
/// this moment shows with its next change.
class LiveList final : public QObject {
    Q_OBJECT
public:
    /// More than this is not kept, and `isCut` says so; a list of everything is of use to nobody.
    static constexpr std::int64_t mostItems = 100'000;

    /// Of folders to search, those that are watched for changes.
    static std::vector<URL> watchedOf(const std::vector<URL>& roots);

    explicit LiveList(QObject* parent = nullptr, LiveTiming timing = {});
    ~LiveList() override;

    /// Ends what ran before; the rows are empty then.
    void start(LiveQuery query, const SortOrder& sort);
    void stop();
    /// Runs the query again; rows stay until the new ones are complete.
    void repeat();
    void setSort(const SortOrder& sort);
    /// Looks at these now, without waiting for the watch to tell of them.
    void askAgain(const std::vector<URL>& urls);

    /// The first run is not over yet.
    bool isRunning() const { return isRunning_; }
    /// There is more than is shown.
    bool isCut() const { return isCut_; }
    /// What was found so far, sorted.
    const SharedRows& rows() const { return rows_; }
    /// The order that the rows have.
    const SortOrder& sort() const { return rowsSort_; }

    /// The first `count` rows were on the screen.
    void rowsSeen(int count) { seen_ = std::max(seen_, count); }
    /// Someone works with the rows: they stay where they are until the first run is over.
    void holdRows() { isHeld_ = true; }

signals:
    void rowsChanged();
    /// The first run is over; after its last rowsChanged().
    void finished();

private:
    using Items = std::map<std::string, FileItem>;  ///< By path, so that what is inside follows.
    struct Found {
        Guarded<Items> items;
        std::atomic<bool> isTold{false};  ///< The main thread knows that there is something new.
    };

    void run(std::shared_ptr<Found> found);
    void batchArrived(std::uint64_t run);
    void runEnded(std::uint64_t run);
    void publish();
    void ordered(std::uint64_t run, SharedRows rows, const SortOrder& sort, bool isLast);
    void changed(const std::vector<std::string>& paths);
    void applyChanges();
    void changesApplied(bool isDifferent);
    void retireTask();

    const LiveTiming timing_;
    LiveQuery query_;
    SortOrder sort_;
    std::shared_ptr<SearchTask> task_;
    CancelToken token_;
    std::shared_ptr<Found> found_;    ///< What the rows are made of.
    std::shared_ptr<Found> renewed_;  ///< Of a repeated run, until it is over.
    PaneWatcher watcher_;
    std::vector<URL> watched_;
    QTimer repeatTimer_;
    QElapsedTimer sinceRun_;
    qint64 runTook_ = 0;  ///< Milliseconds.
    bool isRunning_ = false;
    bool isWalking_ = false;  ///< A run is under way, the first or another.
    bool isOrdering_ = false;
    bool isDirty_ = false;
    bool isHeld_ = false;
    bool isCut_ = false;
    int seen_ = 0;
    std::uint64_t run_ =
        0;  ///< Counts starts, stops and runs; what belongs to an older is dropped.
    SharedRows rows_;
    SortOrder rowsSort_;
    QTimer publishTimer_;
    QElapsedTimer clock_;
    SerialQueue ordering_{"tarn.ordering"};
    SerialQueue walking_{"tarn.live"};  ///< Tags, changes, and the end of tasks.
    ChangedPaths changes_{walking_};
};

}  // namespace tarn
