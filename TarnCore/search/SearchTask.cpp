#include "TarnCore/search/SearchTask.h"

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/files/TreeWalker.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/search/CandidateQueue.h"
#include "TarnCore/search/IndexedContent.h"
#include "TarnCore/search/NameTerms.h"
#include "TarnCore/search/QueryMatcher.h"
#include "TarnCore/search/SearchResults.h"
#include "TarnCore/search/SearchWalk.h"

namespace tarn {
namespace {

using ImageScores = std::unordered_map<std::string, float>;

/// Pictures below this show something else, and so do those much worse than the best one.
constexpr float lowestScore = 0.05F;
constexpr float scoreSpread = 0.03F;
constexpr std::size_t mostImages = 500;

Guarded<SearchTask::DescribeImages>& describeImages() {
    static Guarded<SearchTask::DescribeImages> hook;
    return hook;
}

/// What a picture is to show: the words, when the query may be about pictures at all.
std::optional<std::string> imageDescription(const SearchQuery& query) {
    if (query.terms.empty() || !query.containing.empty()) return std::nullopt;
    const auto isPicture = [](SearchKind kind) {
        return kind == SearchKind::image || kind == SearchKind::photo ||
               kind == SearchKind::screenshot || kind == SearchKind::raw;
    };
    if (!query.kinds.empty() && std::none_of(query.kinds.begin(), query.kinds.end(), isPicture))
        return std::nullopt;
    return Text::join(query.terms, " ");
}

/// The best ones, best first.
std::vector<URL> bestImages(const ImageScores& scores) {
    std::vector<std::pair<float, const std::string*>> order;
    for (const auto& [path, score] : scores)
        if (score >= lowestScore) order.emplace_back(score, &path);
    std::sort(order.begin(), order.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first > b.first : *a.second < *b.second;
    });
    std::vector<URL> urls;
    for (const auto& [score, path] : order) {
        if (score < order.front().first - scoreSpread || urls.size() == mostImages) break;
        urls.push_back(URL::fromPath(*path));
    }
    return urls;
}

SearchOptions prepared(SearchOptions options) {
    auto& place = options.query.place;
    if (place && place->which == PlaceFilter::Case::currentFolder) {
        if (options.currentFolder)
            place = PlaceFilter::folder(options.currentFolder->path());
        else if (!options.roots.empty())
            place = PlaceFilter::folder(options.roots.front().path());
    }
    // The Trash lies behind a hidden folder, where no walk would come by.
    const URL trash = Paths::trash();
    const bool isBelowRoot =
        std::any_of(options.roots.begin(), options.roots.end(),
                    [&](const URL& root) { return trash != root && trash.isInside(root); });
    if (!options.hidesTrash && isBelowRoot) options.roots.push_back(trash);
    if (!place || place->which != PlaceFilter::Case::folder) return options;

    // Nothing outside the place can match, so nothing else is walked; and whoever names a folder
    // wants what is in it, be it hidden or the Trash.
    const URL folder = URL::fromPath(place->text);
    if (Paths::isInTrash(folder.appending("any"))) options.hidesTrash = false;
    std::vector<URL> roots;
    for (const URL& root : options.roots) {
        if (folder.isInside(root))
            roots.push_back(folder);
        else if (root.isInside(folder))
            roots.push_back(root);
    }
    options.roots = std::move(roots);
    return options;
}

}  // namespace

struct SearchTask::State {
    explicit State(SearchOptions given)
        : options(prepared(std::move(given))),
          matcher(options.query, options.textIndex,
                  options.indexesOnly ? nullptr : options.readDocument),
          indexed(options.textIndex, options.query,
                  {options.roots, options.lastWordIsPrefix, options.indexesOnly}) {}

    const SearchOptions options;
    const QueryMatcher matcher;
    const IndexedContent indexed;
    CancelToken stop;  ///< Cancelled, or as many results as there may be.
    std::atomic<bool> isCancelled{false};
    SearchCounts counts;
    Guarded<ImageScores> imageScores;

    std::mutex mutex;
    std::condition_variable finished;
    bool isRunning = false;

    void run(const SearchResults::OnBatch& onBatch);
    bool usesMetadataIndex() const;
    bool walks() const;
    void findImages(SearchResults& results);
    void askMetadataIndex(SearchResults& results);
    using FindCandidates = std::function<void(const IndexedContent::OnCandidates&)>;
    void addFromTextIndex(SearchResults& results, const FindCandidates& find);
    void addMatching(SearchResults& results, const CandidateQueue::Candidates& candidates);
    bool textMatches(const IndexedContent::Candidate& candidate,
                     const FileAttributes& attributes) const;
    void walk(SearchResults& results);
    void readDocuments(SearchResults& results, std::vector<SearchWalk::Document> documents);
    bool isInScope(const FileItem& item) const;
    std::optional<FileItem> loadMatching(const URL& url) const;
    /// The same for less, of a file whose folder and attributes are known.
    std::optional<FileItem> loadMatching(const URL& url, const FileAttributes& attributes,
                                         const ResourceReader& folder) const;
    std::vector<FileItem> load(const std::vector<URL>& urls) const;
};

bool SearchTask::State::usesMetadataIndex() const {
    return options.useSpotlight && Platform::current().index && matcher.spotlightQuery();
}

bool SearchTask::State::walks() const {
    const SearchQuery& query = options.query;
    if (options.roots.empty() || options.indexesOnly) return false;
    if (query.textInImages && query.containing.empty()) return false;
    // The index knows better than the disk when a file was last opened.
    const bool leavesItToIndex = usesMetadataIndex() && !Paths::isIsolated() && query.date &&
                                 query.date->field == DateField::opened && query.containing.empty();
    return !leavesItToIndex;
}

void SearchTask::State::run(const SearchResults::OnBatch& onBatch) {
    SearchResults results(
        {options.roots, options.hidesTrash, options.limit},
        [&](std::vector<FileItem> items) {
            if (!isCancelled) onBatch(std::move(items));
        },
        stop);
    // The quick ones first, since a busy pool may leave them all to this thread.
    std::vector<std::function<void()>> jobs;
    if (imageDescription(options.query)) jobs.push_back([&] { findImages(results); });
    if (usesMetadataIndex()) jobs.push_back([&] { askMetadataIndex(results); });
    if (indexed.isAsked())
        jobs.push_back([&] {
            addFromTextIndex(results, [&](const auto& each) { indexed.candidates(each, stop); });
        });
    if (indexed.isAskedForTerms())
        jobs.push_back([&] {
            addFromTextIndex(results,
                             [&](const auto& each) { indexed.candidatesByTerms(each, stop); });
        });
    if (walks()) jobs.push_back([&] { walk(results); });
    const auto runJob = [&](std::size_t i) {
        if (!stop.isCancelled()) jobs[i]();
    };
    // A single job needs no other threads, which take longer to begin than an index to answer.
    if (jobs.size() == 1)
        runJob(0);
    else
        TaskPool::shared().forEach(jobs.size(), runJob);
    if (indexed.hasFailed() && walks() && !stop.isCancelled()) {
        counts.visited = counts.tooLarge = 0;
        walk(results);
    }
    results.deliver();
}

void SearchTask::State::findImages(SearchResults& results) {
    const DescribeImages describe = *describeImages().lock();
    if (!describe) return;
    auto scores = describe("a photo of " + *imageDescription(options.query));
    if (!scores) return;
    const auto urls = bestImages(*scores);
    *imageScores.lock() = std::move(*scores);
    results.add(load(urls));
}

void SearchTask::State::askMetadataIndex(SearchResults& results) {
    try {
        Platform::current().index->find(
            *matcher.spotlightQuery(), options.roots, stop,
            // The index has looked for the terms in names and in texts.
            [&](const std::vector<URL>& urls) { results.add(load(urls)); });
    } catch (const Error&) {
        // A broken index takes nothing away from what the other jobs find.
    }
}

void SearchTask::State::addFromTextIndex(SearchResults& results, const FindCandidates& find) {
    CandidateQueue queue(TaskPool::shared(), [&](const CandidateQueue::Candidates& candidates) {
        addMatching(results, candidates);
    });
    find([&](CandidateQueue::Candidates candidates) { queue.add(std::move(candidates)); });
    queue.finish();
}

void SearchTask::State::addMatching(SearchResults& results,
                                    const CandidateQueue::Candidates& candidates) {
    std::vector<FileItem> items;
    items.reserve(candidates.size());
    std::unordered_map<URL, ResourceReader> folders;  // Neighbours often share one.
    for (const IndexedContent::Candidate& candidate : candidates) {
        if (stop.isCancelled()) break;
        const auto attributes = Platform::current().files->attributes(candidate.url, Links::keep);
        if (!attributes || !matcher.mayMatch(*attributes)) continue;
        if (!textMatches(candidate, *attributes)) continue;
        const URL parent = candidate.url.parent();
        const auto& folder = folders.try_emplace(parent, parent);
        if (auto item = loadMatching(candidate.url, *attributes, folder.first->second))
            items.push_back(std::move(*item));
    }
    if (!items.empty()) results.add(std::move(items));
}

/// What the index said holds while the file is as it was then; otherwise the file itself is asked.
bool SearchTask::State::textMatches(const IndexedContent::Candidate& candidate,
                                    const FileAttributes& attributes) const {
    const std::string_view name = candidate.url.name();
    const auto test = [&](std::string_view text, bool& isUTF8) {
        return matcher.textMatches(name, text, isUTF8);
    };
    if (TextIndex::Known::of(attributes) == candidate.state) {
        const auto missing = matcher.termsMissingFromName(name);
        if (!missing) return false;
        if (candidate.isCertain && missing->empty()) return true;
        if (candidate.isCertain && indexed.isAskedForTerms()) return true;
        const auto text = matcher.texts().indexed(candidate.url);
        if (candidate.isCertain) return text && NameTerms(*missing).allIn(*text);
        bool isUTF8 = true;
        return text && test(*text, isUTF8);
    }
    // The walk reads what has changed, but for terms alone it reads nothing.
    if (options.indexesOnly || !indexed.isAskedForTerms()) return false;
    const FileTexts& texts = matcher.texts();
    return texts.test(candidate.url, texts.way(name), attributes.size, test, stop) ==
           FileTexts::Answer::yes;
}

void SearchTask::State::walk(SearchResults& results) {
    TreeWalker walker(options.roots);
    SearchWalk visitor(matcher, indexed, results,
                       {options.includeHidden, matcher.keys(options.tags)}, walker.threadCount(),
                       stop, counts);
    walker.walk(visitor, stop);
    readDocuments(results, visitor.takeDocuments());
}

/// Each keeps a helper busy for milliseconds or seconds, so they have a pool of their own: lists
/// and other searches of the process are not to wait for them.
void SearchTask::State::readDocuments(SearchResults& results,
                                      std::vector<SearchWalk::Document> documents) {
    if (documents.empty() || stop.isCancelled()) return;
    results.deliver();
    std::ranges::stable_sort(documents, std::ranges::greater(), &SearchWalk::Document::modified);
    TaskPool pool(TaskPool::shared().threadCount() - 1);
    pool.forEach(documents.size(), [&](std::size_t i) {
        if (stop.isCancelled()) return;
        const auto& [url, size, modified] = documents[i];
        const auto test = [&](std::string_view text, bool& isUTF8) {
            return matcher.textMatches(url.name(), text, isUTF8);
        };
        if (matcher.texts().test(url, FileTexts::Way::document, size, test, stop) ==
            FileTexts::Answer::yes)
            if (auto item = loadMatching(url)) {
                std::vector<FileItem> items;
                items.push_back(std::move(*item));
                results.add(std::move(items));
            }
        results.deliverIfDue();
    });
}

/// What a walk would have come by, as far as hidden items go.
bool SearchTask::State::isInScope(const FileItem& item) const {
    return std::any_of(options.roots.begin(), options.roots.end(), [&](const URL& root) {
        if (item.url == root || !item.url.isInside(root)) return false;
        if (options.includeHidden) return true;
        const std::size_t start = root.isRoot() ? 0 : root.path().size();
        return !item.isHidden && item.path().find("/.", start) == std::string::npos;
    });
}

/// A file whose name and text match, when everything else does as well.
std::optional<FileItem> SearchTask::State::loadMatching(const URL& url) const {
    auto item = FileItem::load(url);
    if (item && isInScope(*item) && matcher.matchesFacts(*item, false)) return item;
    return std::nullopt;
}

std::optional<FileItem> SearchTask::State::loadMatching(const URL& url,
                                                        const FileAttributes& attributes,
                                                        const ResourceReader& folder) const {
    if (attributes.type == FileType::symlink) return std::nullopt;  // No index has the text of one.
    FileItem item = FileItem::make(
        url, folder.values(url, url.name(), attributes, std::nullopt, matcher.keys(options.tags)));
    if (isInScope(item) && matcher.matchesFacts(item, false)) return item;
    return std::nullopt;
}

/// Files that another index has found for their names or their texts.
std::vector<FileItem> SearchTask::State::load(const std::vector<URL>& urls) const {
    std::vector<FileItem> items;
    for (const URL& url : urls) {
        if (stop.isCancelled()) break;
        auto item = FileItem::load(url);
        if (!item || !isInScope(*item) || !matcher.matchesFilters(*item, false)) continue;
        items.push_back(std::move(*item));
    }
    return items;
}

SearchTask::SearchTask(SearchOptions options)
    : state_(std::make_shared<State>(std::move(options))) {}

SearchTask::~SearchTask() {
    cancel();
    std::unique_lock lock(state_->mutex);
    state_->finished.wait(lock, [this] { return !state_->isRunning; });
}

void SearchTask::start(std::function<void(std::vector<FileItem>)> onBatch,
                       std::function<void()> onDone) {
    {
        const std::lock_guard lock(state_->mutex);
        state_->isRunning = true;
    }
    TaskPool::shared().run(
        [state = state_, onBatch = std::move(onBatch), onDone = std::move(onDone)] {
            state->run(onBatch);
            if (onDone) onDone();
            const std::lock_guard lock(state->mutex);
            state->isRunning = false;
            state->finished.notify_all();
        },
        state_->options.priority);
}

void SearchTask::run(const std::function<void(std::vector<FileItem>)>& onBatch) {
    state_->run(onBatch);
}

std::vector<FileItem> SearchTask::runAll() {
    std::vector<FileItem> items;
    run([&](std::vector<FileItem> batch) {
        std::move(batch.begin(), batch.end(), std::back_inserter(items));
    });
    return items;
}

void SearchTask::cancel() {
    state_->isCancelled = true;
    state_->stop.cancel();
}

TextMatch SearchTask::match(const FileItem& item, const CancelToken& token) const {
    const QueryMatcher& matcher = state_->matcher;
    const SearchQuery& query = matcher.query();
    const auto missing = matcher.termsMissingFromName(item.name);
    const bool hasTermsInText = missing && !missing->empty();
    if (matcher.phrases().empty() && !query.textInImages && !hasTermsInText) return {};
    const FileTexts& texts = matcher.texts();
    TextMatch match;
    if (const auto text = texts.read(item.url, texts.way(item.url.name()), token)) {
        std::vector<PhraseFinder> phrases = matcher.phrases();
        const NameTerms inText(missing.value_or(std::vector<std::string>()));
        for (const std::string& stem : inText.stems()) phrases.emplace_back(stem);
        match = Snippet::of(*text, phrases);
        if (match.snippet.empty()) {
            // The index takes whatever stands between two words for a blank.
            for (PhraseFinder& phrase : phrases)
                phrase = PhraseFinder(phrase.phrase(), PhraseFinder::Gaps::separators);
            match = Snippet::of(*text, phrases);
        }
    }
    const bool isPicture = item.kind == FileKind::image;
    match.reason = isPicture ? TextMatch::Reason::textInImage : TextMatch::Reason::text;
    return match;
}

std::optional<float> SearchTask::imageScore(const URL& url) const {
    const auto scores = state_->imageScores.lock();
    const auto found = scores->find(url.path());
    return found == scores->end() ? std::nullopt : std::optional(found->second);
}

std::int64_t SearchTask::visitedCount() const { return state_->counts.visited; }

std::int64_t SearchTask::tooLargeCount() const { return state_->counts.tooLarge; }

void SearchTask::setDescribeImages(DescribeImages describe) {
    *describeImages().lock() = std::move(describe);
}

}  // namespace tarn
