#include "Tarn/model/ContentIndexService.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include <QtCore/QLocale>

#include "Tarn/model/ActivityList.h"
#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/Counts.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/MainThread.h"
#include "TarnCore/index/ContentIndexer.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

/// Changed paths that are looked at one by one; more are as much work as all folders.
constexpr std::size_t mostChanges = 5000;

/// Milliseconds; what a long run has done is told now and then.
constexpr qint64 betweenStatuses = 5000;

int milliseconds(double seconds) { return static_cast<int>(seconds * 1000); }

}  // namespace

/// What a run is to do, in this order.
struct ContentIndexService::Job {
    URL file;
    IndexSettings settings;
    std::vector<URL> forgotten;
    bool rebuilds = false;
    bool whole = false;
    std::shared_future<void> watching;
    std::vector<std::string> changed;
    CancelToken token;
    std::shared_ptr<MachinePause> pause;
    Self self;

    ContentIndexer::Options options() const {
        ContentIndexer::Options options;
        options.ocr = settings.ocr;
        options.languages = settings.languages;
        options.excluded = settings.excluded;
        options.mostBytesOnDisk = settings.mostBytesOnDisk;
        options.background = true;
        options.endsWhenPaused = true;
        return options;
    }
};

struct ContentIndexService::Ended {
    bool wasElsewhere = false;
    bool hasRead = false;  ///< There was something to read.
    bool reachedBudget = false;
    QString problem;
};

ContentIndexService::ContentIndexService(ActivityList& activities, URL file,
                                         ContentIndexTiming timing, QObject* parent)
    : QObject(parent), activities_(activities), file_(std::move(file)), timing_(timing) {
    for (QTimer* timer : {&startTimer_, &retryTimer_, &wholeTimer_}) timer->setSingleShot(true);
    connect(&startTimer_, &QTimer::timeout, this, &ContentIndexService::begin);
    connect(&retryTimer_, &QTimer::timeout, this, &ContentIndexService::runNext);
    connect(&wholeTimer_, &QTimer::timeout, this, [this] {
        wantsWhole_ = true;
        runNext();
    });
    connect(&folders_, &PaneWatcher::changed, this, &ContentIndexService::filesChanged);
    connect(&index_, &PaneWatcher::changed, this, &ContentIndexService::indexChanged);
}

ContentIndexService::~ContentIndexService() { cancelRun(); }

void ContentIndexService::cancelRun() {
    token_.cancel();
    if (pause_) pause_->wake();
}

void ContentIndexService::start() {
    Q_ASSERT(MainThread::isCurrent());
    if (isStarted_ || startTimer_.isActive()) return;
    startTimer_.start(milliseconds(timing_.start));
}

void ContentIndexService::begin() {
    isStarted_ = true;
    index_.watch({file_.parent()}, WatchDepth::children, timing_.latency, {});
    apply();
}

void ContentIndexService::setSettings(const IndexSettings& settings) {
    if (settings == settings_) return;
    settings_ = settings;
    if (isStarted_)
        apply();
    else
        runNext();
}

void ContentIndexService::apply() {
    cancelRun();
    wasStopped_ = false;
    if (!isOn()) {
        watched_.clear();
        folders_.stop();
        dirty_.clear();
        wantsWhole_ = false;
    } else {
        if (settings_.folders != watched_) {
            watched_ = settings_.folders;
            const auto begun = std::make_shared<std::promise<void>>();
            watching_ = begun->get_future().share();
            folders_.watch(watched_, WatchDepth::tree, timing_.latency,
                           [begun] { begun->set_value(); });
        }
        wantsWhole_ = true;
    }
    runNext();
}

void ContentIndexService::runNow() {
    wasStopped_ = false;
    wantsWhole_ = true;
    if (startTimer_.isActive() || !isStarted_) {
        startTimer_.stop();
        return begin();
    }
    runNext();
}

void ContentIndexService::rebuild() {
    cancelRun();
    wantsRebuild_ = true;
    runNow();
}

void ContentIndexService::forget(const URL& folder) {
    cancelRun();
    forgotten_.push_back(folder);
    runNext();
}

// --- Runs

void ContentIndexService::runNext() {
    if (isRunning_) return;
    const bool mayRead = isStarted_ && isOn() && !wasStopped_;
    const bool wants =
        !forgotten_.empty() || wantsRebuild_ || (mayRead && (wantsWhole_ || !dirty_.empty()));
    if (!wants) {
        setState(!isOn()       ? State::off
                 : !isStarted_ ? State::waiting
                 : wasStopped_ ? State::stopped
                               : State::upToDate);
        return;
    }
    retryTimer_.stop();
    token_ = CancelToken();
    pause_ = std::make_shared<MachinePause>(
        Platform::current().load, timing_.machine,
        [self = Self(this)](std::optional<MachinePause::Reason> reason) {
            MainThread::post(
                self, [reason](ContentIndexService& service) { service.holdChanged(reason); });
        });
    Job job = nextJob();
    if (!mayRead) {
        job.whole = false;
        job.changed.clear();
    }
    isRunning_ = true;
    isForgetting_ = !job.forgotten.empty() || job.rebuilds;
    sinceBegin_.start();
    setState(State::running);
    queue_.run([job = std::move(job)] {
        Ended result = work(job);
        MainThread::post(
            job.self, [job, result](ContentIndexService& service) { service.ended(job, result); });
    });
}

ContentIndexService::Job ContentIndexService::nextJob() {
    Job job;
    job.file = file_;
    job.settings = settings_;
    job.forgotten = std::exchange(forgotten_, {});
    job.rebuilds = std::exchange(wantsRebuild_, false);
    job.whole = std::exchange(wantsWhole_, false);
    job.watching = watching_;
    job.changed = std::exchange(dirty_, {});
    job.token = token_;
    job.pause = pause_;
    job.self = this;
    return job;
}

ContentIndexService::Ended ContentIndexService::work(const Job& job) {
    if (const auto& load = Platform::current().load) load->lowerPriorityOfThread();
    Ended result;
    // An object of its own, so that no search waits for the run.
    const auto index = std::make_shared<TextIndex>(job.file);
    bool hasChanged = false;
    for (const URL& folder : job.forgotten) hasChanged |= index->forget(folder) > 0;
    const auto finish = [&] {
        if (const auto problem = index->problem()) result.problem = coreSentence(*problem);
        if (hasChanged) index->announceChange();
        return result;
    };
    if (!job.rebuilds && !job.whole && job.changed.empty()) return finish();
    const auto elsewhere = [&] {
        result.wasElsewhere = true;
        return finish();
    };
    if (job.rebuilds) {
        const auto claim = index->claim();
        if (!claim) return elsewhere();
        hasChanged |= index->clear();
    }
    if (!job.whole && job.changed.empty()) return finish();
    MainThread::post(job.self, [](ContentIndexService& service) {
        if (!std::exchange(service.isForgetting_, false)) return;
        service.refreshStatus();
        emit service.changed();
    });
    ContentIndexer indexer(index, job.options());
    std::int64_t doneBefore = 0;
    for (bool isUnfinished = true; isUnfinished;) {
        // Without the claim: others may read while this program waits for the machine.
        job.pause->wait(job.token);
        const auto claim = index->claim();
        if (!claim) return elsewhere();
        const auto outcome = readOnce(job, *index, indexer, doneBefore, hasChanged);
        if (!outcome) break;
        isUnfinished = outcome->wasPaused && !job.token.isCancelled();
        result.hasRead = true;
        result.reachedBudget = outcome->reachedBudget;
        result.problem = coreSentence(outcome->problem);
    }
    return finish();
}

/// The watch comes first, so that no change falls between it and the run.
void ContentIndexService::waitForWatch(const Job& job) {
    constexpr std::chrono::milliseconds look(50);
    while (!job.token.isCancelled() && job.watching.valid() &&
           job.watching.wait_for(look) != std::future_status::ready) {
    }
}

std::optional<ContentIndexer::Outcome> ContentIndexService::readOnce(const Job& job,
                                                                     TextIndex& index,
                                                                     ContentIndexer& indexer,
                                                                     std::int64_t& doneBefore,
                                                                     bool& hasChanged) {
    std::vector<ContentIndexer::Candidate> candidates;
    if (job.whole) {
        waitForWatch(job);
        hasChanged |= indexer.forgetExcluded() > 0;
        for (const URL& folder : job.settings.folders)
            hasChanged |= index.pruneMissing(folder, job.token) > 0;
        candidates = indexer.candidates(job.settings.folders, job.token);
    } else {
        hasChanged |= indexer.forgetGone(job.changed, job.token) > 0;
        candidates = indexer.candidates(job.settings.folders, job.changed, job.token);
    }
    if (candidates.empty()) return std::nullopt;
    std::int64_t doneNow = 0;
    auto outcome = indexer.run(
        candidates, job.token, [pause = job.pause] { return pause->holds(); },
        [&, self = job.self](std::int64_t done, std::int64_t total, const std::string& name) {
            doneNow = done;
            MainThread::post(
                self, [done = done + doneBefore, total = total + doneBefore, name](
                          ContentIndexService& service) { service.progressed(done, total, name); });
        });
    doneBefore += doneNow;
    hasChanged |= outcome.indexed + outcome.withoutText > 0;
    return outcome;
}

void ContentIndexService::ended(const Job& job, const Ended& result) {
    isRunning_ = false;
    isForgetting_ = false;
    if (activity_) activities_.end(activity_->id());
    held_.reset();
    done_ = 0;
    total_ = 0;
    // A run over a few changes that found nothing to do says nothing about either.
    if (result.hasRead || job.whole || job.rebuilds || !result.problem.isEmpty()) {
        reachedBudget_ = result.reachedBudget;
        problem_ = result.problem;
    }
    refreshStatus();
    if (job.whole) sinceWholeRun_.start();
    const bool isUnfinished = result.wasElsewhere || (job.token.isCancelled() && !wasStopped_);
    if (isUnfinished && isOn()) {
        wantsWhole_ |= job.whole;
        dirty_.insert(dirty_.end(), job.changed.begin(), job.changed.end());
    }
    if (result.wasElsewhere) {
        wantsRebuild_ |= job.rebuilds;
        setState(State::elsewhere);
        retryTimer_.start(milliseconds(timing_.retry));
        return;
    }
    runNext();
}

void ContentIndexService::progressed(std::int64_t done, std::int64_t total,
                                     const std::string& name) {
    if (!isRunning_ || token_.isCancelled()) return;
    done_ = done;
    total_ = total;
    name_ = displayText(name);
    if (!activity_ && done < total && sinceBegin_.elapsed() >= milliseconds(timing_.shown))
        showActivity();
    if (activity_) followActivity();
    if (!sinceStatus_.isValid() || sinceStatus_.elapsed() >= betweenStatuses) refreshStatus();
    emit changed();
}

void ContentIndexService::holdChanged(std::optional<MachinePause::Reason> reason) {
    if (!isRunning_) return;
    held_ = reason;
    if (activity_) activity_->setPower(reason ? std::optional(sentence(*reason)) : std::nullopt);
    emit changed();
}

// --- What is shown of them

QString ContentIndexService::sentence(MachinePause::Reason reason) {
    switch (reason) {
        case MachinePause::Reason::battery:
            return tr("Waiting for mains power");
        case MachinePause::Reason::busy:
            return tr("Waiting until the computer has time");
    }
    return {};
}

void ContentIndexService::showActivity() {
    activity_ = &activities_.show(tr("Reading Files for Search"), "doc.text");
    if (held_) activity_->setPower(sentence(*held_));
    connect(activity_, &ActivityTask::changed, this, [this] {
        if (!activity_) return;
        if (activity_->isStopped() && !token_.isCancelled()) {
            wasStopped_ = true;
            cancelRun();
        }
        pause_->setPaused(activity_->isPaused());
        emit changed();
    });
}

void ContentIndexService::followActivity() {
    if (done_ == total_) return activity_->tell(tr("Writing what was read…"), 1.0);
    activity_->tell(
        tr("%1 of %2 · %3")
            .arg(QLocale().toString(static_cast<qlonglong>(done_)), Counts::files(total_), name_),
        static_cast<double>(done_) / static_cast<double>(std::max<std::int64_t>(1, total_)));
}

void ContentIndexService::setState(State state) {
    state_ = state;
    emit changed();
}

void ContentIndexService::refreshStatus() {
    sinceStatus_.start();
    if (isAskingStatus_) {
        asksStatusAgain_ = true;
        return;
    }
    isAskingStatus_ = true;
    statusQueue_.run([file = file_, self = Self(this)] {
        MainThread::post(self, [status = TextIndex(file).status()](ContentIndexService& service) {
            service.status_ = status;
            service.isAskingStatus_ = false;
            emit service.changed();
            if (std::exchange(service.asksStatusAgain_, false)) service.refreshStatus();
        });
    });
}

// --- Changes of files, and of the index by others

bool ContentIndexService::isUnwanted(const std::string& path) const {
    // Programs write into hidden folders all the time.
    for (const URL& folder : watched_) {
        if (!path.starts_with(folder.path())) continue;
        const std::size_t at = folder.isRoot() ? 0 : folder.path().size();
        if (path.find("/.", at) == path.npos) return false;
    }
    return true;
}

void ContentIndexService::filesChanged(const std::vector<std::string>& paths) {
    if (!isOn()) return;
    for (const std::string& path : paths) {
        const bool isRoot =
            std::any_of(watched_.begin(), watched_.end(),
                        [&path](const URL& folder) { return folder.path() == path; });
        if (isRoot || dirty_.size() >= mostChanges) return wholeRunSoon();
        if (!isUnwanted(path)) dirty_.push_back(path);
    }
    // The list of others who read is not waited for more often than is worth it.
    if (!retryTimer_.isActive()) runNext();
}

void ContentIndexService::wholeRunSoon() {
    dirty_.clear();
    if (wantsWhole_ || wholeTimer_.isActive()) return;
    const double since =
        sinceWholeRun_.isValid() ? static_cast<double>(sinceWholeRun_.elapsed()) / 1000 : 0;
    wholeTimer_.start(milliseconds(sinceWholeRun_.isValid()
                                       ? std::max(0.0, timing_.betweenWholeRuns - since)
                                       : timing_.betweenWholeRuns));
}

void ContentIndexService::indexChanged(const std::vector<std::string>& paths) {
    const std::string changes = TextIndex(file_).changesFile().path();
    if (std::find(paths.begin(), paths.end(), changes) == paths.end()) return;
    refreshStatus();
    emit contentsChanged();
}

}  // namespace tarn
