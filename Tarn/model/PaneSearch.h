#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>

#include "Tarn/model/ChangedPaths.h"
#include "Tarn/model/PaneRows.h"
#include "Tarn/model/PaneSnippets.h"
#include "Tarn/model/PaneWatcher.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/files/SortOrder.h"
#include "TarnCore/search/SearchTask.h"

namespace tarn {

/// The running search of a pane: gathers what the search task finds, orders it, and tells at a
/// bounded rate.
///
/// Main thread only. Ordering happens on a queue of its own. Rows that a person has seen keep
/// their places while more results come in: new ones are placed behind them. Once the search is
/// over, everything is ordered afresh unless someone has begun to work with the rows.
///
/// Afterwards the folders of the results are watched, the first thousand of them: a result that is
/// changed, moved or deleted there is asked for again, and so is what comes to lie beside it. What
/// appears elsewhere is found by the next search.
class PaneSearch final : public QObject {
    Q_OBJECT
public:
    explicit PaneSearch(QObject* parent = nullptr);
    ~PaneSearch() override;

    /// Ends what ran before. With `isRanked` the best matches come first and `sort` decides among
    /// equals; else `sort` alone decides. Where the same is asked again (`isRepeat`), the rows stay
    /// until the new ones are complete.
    void start(SearchOptions options, const SortOrder& sort, bool isRanked, bool isRepeat = false);
    /// Another order for what was found, seen or not.
    void setOrder(const SortOrder& sort, bool isRanked);
    void cancel();

    bool isRunning() const { return isRunning_; }
    /// What was found so far, in order.
    const SharedRows& rows() const { return rows_; }
    /// The order that the rows have.
    const SortOrder& sort() const { return rowsSort_; }
    bool isRanked() const { return rowsAreRanked_; }
    /// Looks at these now, without waiting for the watch to tell of them. Nothing while the search
    /// is running, which comes by them.
    void askAgain(const std::vector<URL>& urls);
    std::int64_t visitedCount() const;
    /// Files whose text was not read because they are too large.
    std::int64_t tooLargeCount() const;
    /// Seconds from the start to the end, or to now.
    double elapsed() const;

    /// The query of the results asks for text in files, so that each has a line of it to show.
    bool asksForTexts() const;
    PaneSnippets& snippets() { return snippets_; }

    /// The first `count` rows were on the screen.
    void rowsSeen(int count);
    /// Someone has selected, scrolled or pointed at rows: they stay where they are to the end.
    void holdRows() { isHeld_ = true; }

signals:
    void rowsChanged();
    /// After the last rowsChanged() of a search that was not cancelled.
    void finished();

private:
    /// What one search has found; shared with its threads.
    struct Found {
        Guarded<std::vector<FileItem>> items;
        std::atomic<bool> isTold{false};  ///< The main thread knows that there is something new.
    };

    void batchArrived(std::uint64_t run);
    void taskEnded(std::uint64_t run);
    void publish();
    void ordered(std::uint64_t run, std::uint64_t order, SharedRows rows, bool isLast);
    void watchResults();
    void changed(const std::vector<std::string>& paths);
    void applyChanges();
    void changesApplied(bool isDifferent);
    void retireTask();

    std::shared_ptr<SearchTask> task_;
    PaneSnippets snippets_;
    std::shared_ptr<Found> found_;
    SearchOptions options_;
    SortOrder sort_;
    bool isRanked_ = true;
    SortOrder rowsSort_;
    bool rowsAreRanked_ = true;
    bool isRepeat_ = false;
    bool isRunning_ = false;
    bool hasEnded_ = false;  ///< The task is done; its last results are being ordered.
    bool isOrdering_ = false;
    bool isDirty_ = false;  ///< Results have come since the last ordering began.
    bool isHeld_ = false;
    int seen_ = 0;
    std::uint64_t run_ = 0;    ///< Counts searches; what belongs to an older one is dropped.
    std::uint64_t order_ = 0;  ///< Counts changes of the order.
    SharedRows rows_;
    PaneWatcher watcher_;
    std::set<URL> watched_;
    QTimer publishTimer_;
    QElapsedTimer clock_;
    double elapsed_ = 0;
    SerialQueue queue_{"tarn.ordering"};
    ChangedPaths changes_{queue_};
    SerialQueue retired_{"tarn.retired"};  ///< Ends old tasks, which wait for their threads.
};

}  // namespace tarn
