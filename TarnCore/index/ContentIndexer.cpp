#include "TarnCore/index/ContentIndexer.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <iterator>
#include <optional>
#include <span>
#include <thread>
#include <tuple>
#include <utility>

#include <unistd.h>

#include "TarnCore/base/DatabaseMemory.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/base/TokenFinder.h"
#include "TarnCore/files/TreeWalker.h"
#include "TarnCore/index/CandidateWalk.h"
#include "TarnCore/index/IndexingQueue.h"
#include "TarnCore/index/TextIndex.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/RecognitionLanguages.h"

namespace tarn {
namespace {

using ReadOutcome = TextReader::Outcome;

/// Of texts between readers and writer; half of it is stored in one transaction. The writer's own
/// memory comes on top (TextTables).
constexpr std::size_t bytesOnTheWay = 20 << 20;
/// What was read is stored after that long, so that a crash loses no more.
constexpr std::chrono::milliseconds longestOnTheWay(2000);
constexpr std::chrono::milliseconds betweenReports(100);
constexpr std::chrono::milliseconds betweenPauseQuestions(100);

/// The most that a text takes in the database, postings included: usual text takes 1.45 times its
/// size, one in which no word comes twice nearly three times.
std::int64_t mostBytesInIndex(const TextIndex::Entry& entry) {
    return static_cast<std::int64_t>(3 * entry.text.size() + 2 * entry.path.size()) + 1024;
}

/// Rights change without a trace in a file's time.
bool mayBeRead(const URL& url) { return access(url.c_str(), R_OK) == 0; }

/// One call of ContentIndexer::run.
class Run {
public:
    Run(TextIndex& index, const ContentIndexer::Options& options, const ContentIndexer::Read& read,
        const std::vector<std::string>& recognizedBy,
        std::span<const ContentIndexer::Candidate> candidates, const CancelToken& token,
        const ContentIndexer::Pause& pause, std::size_t readers)
        : index_(index),
          options_(options),
          recognizedBy_(recognizedBy),
          read_(read),
          candidates_(candidates),
          token_(token),
          pause_(pause),
          readers_(readers),
          queue_(bytesOnTheWay, readers) {}

    ContentIndexer::Outcome run(const ContentIndexer::Progress& progress) {
        DatabaseMemory::useLargePages();
        // Threads of its own, since a lowered priority cannot be raised again.
        TaskPool pool(readers_ + 1);
        for (std::size_t i = 0; i < readers_; ++i)
            pool.run([this] {
                lowerPriority();
                readAll();
                queue_.finish();
            });
        pool.run([this] {
            lowerPriority();
            storeAll();
            queue_.close();
            index_.settle();
            state_.lock()->isDone = true;
            changed_.notify_all();
        });
        report(progress);
        outcome_.wasPaused = wasPaused_ && std::cmp_less(done_.load(), candidates_.size());
        return outcome_;
    }

private:
    struct State {
        std::string name;  ///< Of the file that was read last.
        bool isDone = false;
    };

    void lowerPriority() const {
        if (const auto& load = Platform::current().load; options_.background && load)
            load->lowerPriorityOfThread();
    }

    bool isStopped() const { return token_.isCancelled() || stop_.isCancelled(); }

    void readAll() {
        TokenFinder tokenFinder;
        while (!isStopped()) {
            waitWhilePaused();
            if (wasPaused_) return;
            const std::size_t next = next_.fetch_add(1);
            if (next >= candidates_.size() || isStopped()) return;
            readOne(candidates_[next], tokenFinder);
            ++done_;
        }
    }

    void waitWhilePaused() {
        while (!isStopped() && !wasPaused_ && pause_ && pause_()) {
            if (options_.endsWhenPaused) {
                wasPaused_ = true;
                return;
            }
            auto state = state_.lock();
            changed_.wait_for(state.mutex(), betweenPauseQuestions);
        }
    }

    void readOne(const ContentIndexer::Candidate& candidate, TokenFinder& tokenFinder) {
        const std::string& path = candidate.url.path();
        const auto attributes = Platform::current().files->attributes(candidate.url, Links::keep);
        if (!attributes || attributes->type == FileType::symlink || !Text::isValidUTF8(path))
            return;
        state_.lock()->name = candidate.url.name();
        const TextIndex::Known known = TextIndex::Known::of(*attributes);
        TextReader::Result result = read_(candidate.url, known.size, stop_);
        if (result.outcome == ReadOutcome::cancelled || result.outcome == ReadOutcome::unable)
            return;
        if (result.outcome == ReadOutcome::noText && !mayBeRead(candidate.url)) return;
        if (result.outcome != ReadOutcome::read) result.text.clear();
        TextIndex::Entry entry{path, known.mtime, known.size, candidate.method,
                               std::move(result.text)};
        entry.tokens = tokenFinder.tokens(entry.text);
        if (result.hasPictures)
            entry.recognizedBy =
                result.lacksRecognition ? std::vector<std::string>() : recognizedBy_;
        queue_.push(std::move(entry));
    }

    void storeAll() {
        std::vector<TextIndex::Entry> entries;
        while (!isStopped()) {
            if (entries.empty()) entries = queue_.take(longestOnTheWay);
            if (entries.empty()) return;
            auto fitting = std::span(entries).first(fittingCount(entries));
            if (fitting.empty()) {
                // What is in the log may be in the database as well.
                index_.settle();
                fitting = std::span(entries).first(fittingCount(entries));
            }
            if (fitting.empty()) {
                outcome_.reachedBudget = true;
                stop_.cancel();
                return;
            }
            if (!index_.store(fitting, token_)) {
                outcome_.couldNotWrite = true;
                stop_.cancel();
                return;
            }
            if (token_.isCancelled()) return;
            const auto withText = std::ranges::count_if(
                fitting, [](const TextIndex::Entry& entry) { return !entry.text.empty(); });
            outcome_.indexed += withText;
            outcome_.withoutText += static_cast<std::int64_t>(fitting.size()) - withText;
            entries.erase(entries.begin(),
                          entries.begin() + static_cast<std::ptrdiff_t>(fitting.size()));
        }
    }

    /// How many of the entries surely stay within the budget. What they really took is known when
    /// they have been stored, so that the rest gets another chance.
    std::size_t fittingCount(const std::vector<TextIndex::Entry>& entries) const {
        if (options_.mostBytesOnDisk <= 0) return entries.size();
        std::int64_t room = options_.mostBytesOnDisk - index_.bytesOnDisk();
        const auto first = std::ranges::find_if(entries, [&](const TextIndex::Entry& entry) {
            room -= mostBytesInIndex(entry);
            return room < 0;
        });
        return static_cast<std::size_t>(first - entries.begin());
    }

    void report(const ContentIndexer::Progress& progress) {
        const auto total = static_cast<std::int64_t>(candidates_.size());
        std::int64_t reported = -1;
        for (bool isDone = false; !isDone;) {
            std::string name;
            {
                auto state = state_.lock();
                changed_.wait_for(state.mutex(), betweenReports, [&] { return state->isDone; });
                isDone = state->isDone;
                name = state->name;
            }
            if (token_.isCancelled()) {
                stop_.cancel();
                queue_.close();
            }
            const std::int64_t done = std::min<std::int64_t>(done_, total);
            if (progress && done != std::exchange(reported, done)) progress(done, total, name);
        }
    }

    TextIndex& index_;
    const ContentIndexer::Options& options_;
    const std::vector<std::string>& recognizedBy_;
    const ContentIndexer::Read& read_;
    const std::span<const ContentIndexer::Candidate> candidates_;
    const CancelToken token_;
    const ContentIndexer::Pause& pause_;
    const std::size_t readers_;

    IndexingQueue queue_;
    std::atomic<std::size_t> next_ = 0;
    std::atomic<std::int64_t> done_ = 0;
    std::atomic<bool> wasPaused_ = false;
    const CancelToken stop_;  ///< Ours: `token` was set, or nothing more can be stored.
    Guarded<State> state_;
    std::condition_variable changed_;
    ContentIndexer::Outcome outcome_;  ///< The writer's until it is done.
};

/// Without those that lie in an excluded one.
std::vector<URL> wanted(const std::vector<URL>& folders, const ContentIndexer::Options& options) {
    std::vector<URL> roots;
    std::ranges::copy_if(folders, std::back_inserter(roots), [&](const URL& folder) {
        return std::ranges::none_of(options.excluded,
                                    [&](const URL& excluded) { return folder.isInside(excluded); });
    });
    return roots;
}

std::vector<ContentIndexer::Candidate> walkFor(const std::vector<URL>& roots,
                                               const ContentIndexer::Options& options,
                                               const CandidateWalk::Files& known,
                                               const ChangedPaths* only, const CancelToken& token) {
    // The threads of a pool have the priority of who used it first, for good; all others need the
    // shared one.
    std::optional<TaskPool> own;
    if (options.background) own.emplace();
    TreeWalker walker(roots, own ? *own : TaskPool::shared());
    CandidateWalk walk(roots, options, known, only, walker.threadCount());
    walker.walk(walk, token);
    if (token.isCancelled()) return {};
    std::vector<ContentIndexer::Candidate> found = walk.found();
    std::ranges::sort(found, {}, [](const ContentIndexer::Candidate& candidate) {
        const bool isPicture = candidate.method == TextExtractor::Method::image;
        return std::tuple(isPicture, -candidate.mtime, std::string_view(candidate.url.path()));
    });
    return found;
}

/// By which data text is recognised here that is wanted in these languages.
std::vector<std::string> dataOf(std::vector<std::string> languages) {
    if (languages.empty()) {
        languages.assign(std::begin(TextExtractor::defaultOCRLanguages),
                         std::end(TextExtractor::defaultOCRLanguages));
    }
    return RecognitionLanguages::dataNames(
        languages, RecognitionLanguages::dataIn(RecognitionLanguages::dataFolder()));
}

}  // namespace

ContentIndexer::ContentIndexer(std::shared_ptr<TextIndex> index, Options options)
    : ContentIndexer(std::move(index), std::move(options), {}) {}

ContentIndexer::ContentIndexer(std::shared_ptr<TextIndex> index, Options options, Read read)
    : index_(std::move(index)), options_(std::move(options)), read_(std::move(read)) {
    if (options_.ocr) recognizedBy_ = dataOf(options_.languages);
}

void ContentIndexer::leaveOutUnrecognized(CandidateWalk::Files& known) const {
    if (recognizedBy_.empty()) return;
    for (const std::string& path : index_->notRecognizedBy(recognizedBy_)) known.erase(path);
}

std::vector<ContentIndexer::Candidate> ContentIndexer::candidates(const std::vector<URL>& folders,
                                                                  const CancelToken& token) const {
    const std::vector<URL> roots = wanted(folders, options_);
    CandidateWalk::Files known = index_->known(roots);
    leaveOutUnrecognized(known);
    return walkFor(roots, options_, known, nullptr, token);
}

std::vector<ContentIndexer::Candidate> ContentIndexer::candidates(
    const std::vector<URL>& folders, const std::vector<std::string>& changed,
    const CancelToken& token) const {
    CandidateWalk::Files known;
    std::vector<URL> below;
    for (const std::string& path : changed) {
        if (const auto file = index_->known(path)) known.emplace(path, *file);
        below.push_back(URL::fromPath(path));
    }
    known.merge(index_->known(below));
    leaveOutUnrecognized(known);
    const ChangedPaths only(changed);
    return walkFor(wanted(folders, options_), options_, known, &only, token);
}

std::int64_t ContentIndexer::forgetExcluded() const {
    std::int64_t forgotten = 0;
    for (const URL& folder : options_.excluded) forgotten += index_->forget(folder);
    return forgotten;
}

std::int64_t ContentIndexer::forgetGone(const std::vector<std::string>& changed,
                                        const CancelToken& token) const {
    std::int64_t forgotten = 0;
    for (const std::string& path : changed) {
        if (token.isCancelled()) break;
        const URL url = URL::fromPath(path);
        if (Platform::current().files->attributes(url, Links::keep)) continue;
        if (index_->isIndexed(path)) {
            index_->remove(path);
            ++forgotten;
        }
        forgotten += index_->pruneMissing(url, token);
    }
    return forgotten;
}

ContentIndexer::Outcome ContentIndexer::run(const std::vector<Candidate>& candidates,
                                            const CancelToken& token, const Pause& pause,
                                            const Progress& progress) {
    std::size_t readers = std::max(1U, std::thread::hardware_concurrency());
    if (read_)
        return Run(*index_, options_, read_, recognizedBy_, candidates, token, pause, readers)
            .run(progress);
    TextReader reader(
        {.ocr = options_.ocr, .languages = options_.languages, .background = options_.background});
    const Read read = [&](const URL& url, std::int64_t size, const CancelToken& stop) {
        return reader.read(url, size, stop);
    };
    readers = reader.processCount();
    Outcome outcome = Run(*index_, options_, read, recognizedBy_, candidates, token, pause, readers)
                          .run(progress);
    outcome.problem = reader.problem();
    return outcome;
}

}  // namespace tarn
