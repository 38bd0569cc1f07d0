#pragma once

#include <cstdint>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QTimer>

#include "Tarn/model/ActivityTask.h"
#include "Tarn/model/MachinePause.h"
#include "Tarn/model/PaneWatcher.h"
#include "Tarn/model/records/IndexSettings.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/index/ContentIndexer.h"
#include "TarnCore/index/TextIndex.h"

namespace tarn {

class ActivityList;

/// When a ContentIndexService does what, in seconds.
struct ContentIndexTiming {
    double start = 8;               ///< From `start` to the first run.
    double latency = 2;             ///< Of the watch over the folders.
    double shown = 2;               ///< A run that is shorter shows no activity.
    double retry = 60;              ///< While another program reads.
    double betweenWholeRuns = 600;  ///< Where the watch may have missed something.
    MachinePause::Timing machine{};
};

/// Keeps the index of file contents as the settings want it: reads what is new when the program
/// has started, then follows the folders, and holds while the machine has better things to do.
///
/// Main thread only; reading, the index and the watches have queues of their own. Of several
/// programs of a user one reads at a time; the others hear of its changes. The destructor stops
/// what runs, within a second, and waits for it.
class ContentIndexService final : public QObject {
    Q_OBJECT
public:
    enum class State {
        off,       ///< By the settings.
        waiting,   ///< For its time to come.
        upToDate,  ///< Nothing is left to read, as far as is known.
        running,
        stopped,   ///< By the user, until something else begins it.
        elsewhere  ///< Another program reads.
    };

    /// `file` is the index's database. `activities` outlives the service.
    explicit ContentIndexService(ActivityList& activities, URL file = TextIndex::sharedFile(),
                                 ContentIndexTiming timing = {}, QObject* parent = nullptr);
    ~ContentIndexService() override;

    /// Takes effect at once, also on a run that is under way.
    void setSettings(const IndexSettings& settings);
    /// Begins to work, after a while; once.
    void start();

    State state() const { return state_; }
    /// Why a run holds; absent when it does not.
    std::optional<MachinePause::Reason> held() const { return held_; }
    bool isPaused() const { return activity_ && activity_->isPaused(); }
    static QString sentence(MachinePause::Reason reason);
    /// Files done in this run, and in all; 0 while they are being counted.
    std::int64_t done() const { return done_; }
    std::int64_t total() const { return total_; }
    /// What the index holds; absent until it was asked.
    const std::optional<TextIndex::Status>& status() const { return status_; }
    /// The index has reached the room it may take.
    bool reachedBudget() const { return reachedBudget_; }
    /// Why the index could not be written; empty when it could.
    const QString& problem() const { return problem_; }

    /// What was read is being forgotten, which takes a while where it was much.
    bool isForgetting() const { return isForgetting_; }

    /// Asks again what the index holds.
    void refreshStatus();
    /// Reads what is not in the index as it is now, whether or not it was stopped before.
    void runNow();
    /// Forgets everything and begins afresh.
    void rebuild();
    /// Forgets what is below the folder and gives its room back. The settings say whether it is
    /// read again.
    void forget(const URL& folder);

signals:
    /// State, progress or what the index holds.
    void changed();
    /// The index answers differently than before; this program or another has filled it.
    void contentsChanged();

private:
    struct Job;
    struct Ended;
    using Self = QPointer<ContentIndexService>;

    void begin();
    void apply();
    void runNext();
    Job nextJob();
    static Ended work(const Job& job);
    /// Until nothing is left, or the machine needs its time; absent when there was nothing to read.
    /// The caller holds the claim.
    static void waitForWatch(const Job& job);
    static std::optional<ContentIndexer::Outcome> readOnce(const Job& job, TextIndex& index,
                                                           ContentIndexer& indexer,
                                                           std::int64_t& doneBefore,
                                                           bool& hasChanged);
    void ended(const Job& job, const Ended& result);
    void progressed(std::int64_t done, std::int64_t total, const std::string& name);
    void holdChanged(std::optional<MachinePause::Reason> reason);
    /// The one that is running.
    void cancelRun();
    void showActivity();
    void followActivity();
    void setState(State state);
    bool isOn() const { return settings_.isOn && !settings_.folders.empty(); }
    bool isUnwanted(const std::string& path) const;
    void filesChanged(const std::vector<std::string>& paths);
    void wholeRunSoon();
    void indexChanged(const std::vector<std::string>& paths);

    ActivityList& activities_;
    const URL file_;
    const ContentIndexTiming timing_;
    IndexSettings settings_;
    bool isStarted_ = false;  ///< The time of the first run has come.
    bool isRunning_ = false;
    bool wantsWhole_ = false;
    bool wantsRebuild_ = false;
    bool isForgetting_ = false;
    std::vector<URL> forgotten_;      ///< To be forgotten before anything else.
    std::vector<std::string> dirty_;  ///< Changed paths that no run has looked at.
    std::vector<URL> watched_;
    std::shared_future<void> watching_;  ///< Ready once changes of those are noticed.
    CancelToken token_;
    std::shared_ptr<MachinePause> pause_;
    State state_ = State::waiting;
    std::optional<MachinePause::Reason> held_;
    std::int64_t done_ = 0;
    std::int64_t total_ = 0;
    QString name_;  ///< Of the file that was read last.
    std::optional<TextIndex::Status> status_;
    bool reachedBudget_ = false;
    bool isAskingStatus_ = false;
    bool asksStatusAgain_ = false;
    bool wasStopped_ = false;
    QString problem_;
    QPointer<ActivityTask> activity_;
    QElapsedTimer sinceBegin_;     ///< Of the run.
    QElapsedTimer sinceWholeRun_;  ///< Since the end of one.
    QElapsedTimer sinceStatus_;    ///< Since the index was asked what it holds.
    QTimer startTimer_;
    QTimer retryTimer_;
    QTimer wholeTimer_;
    PaneWatcher folders_;
    PaneWatcher index_;
    SerialQueue statusQueue_{"tarn.indexstatus"};
    SerialQueue queue_{"tarn.contentindex"};  ///< Last, so that it ends first.
};

}  // namespace tarn
