#include "TarnCore/search/SearchTask.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/files/TreeWalker.h"
#include "TarnCore/index/TextLookup.h"
#include "TarnCore/platform/Platform.h"
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
        : options(prepared(std::move(given))), matcher(options.query, options.textIndex) {}

    const SearchOptions options;
    const QueryMatcher matcher;
    CancelToken stop;  ///< Cancelled, or as many results as there may be.
    std::atomic<bool> isCancelled{false};
    std::atomic<std::int64_t> visited{0};
    Guarded<ImageScores> imageScores;

    std::mutex mutex;
    std::condition_variable finished;
    bool isRunning = false;

    void run(const SearchResults::OnBatch& onBatch);
    bool usesMetadataIndex() const;
    bool walks() const;
    void findImages(SearchResults& results);
    void askMetadataIndex(SearchResults& results);
    void askTextIndex(SearchResults& results);
    void walk(SearchResults& results);
    bool isInScope(const FileItem& item) const;
    std::vector<FileItem> load(const std::vector<URL>& urls, bool checksTerms) const;
};

bool SearchTask::State::usesMetadataIndex() const {
    return options.useSpotlight && Platform::current().index && matcher.spotlightQuery();
}

bool SearchTask::State::walks() const {
    const SearchQuery& query = options.query;
    if (options.roots.empty()) return false;
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
    if (options.textIndex && (!options.query.containing.empty() || options.query.textInImages))
        jobs.push_back([&] { askTextIndex(results); });
    if (walks()) jobs.push_back([&] { walk(results); });
    TaskPool::shared().forEach(jobs.size(), [&](std::size_t i) {
        if (!stop.isCancelled()) jobs[i]();
    });
    results.deliver();
}

void SearchTask::State::findImages(SearchResults& results) {
    const DescribeImages describe = *describeImages().lock();
    if (!describe) return;
    auto scores = describe("a photo of " + *imageDescription(options.query));
    if (!scores) return;
    const auto urls = bestImages(*scores);
    *imageScores.lock() = std::move(*scores);
    results.add(load(urls, false));
}

void SearchTask::State::askMetadataIndex(SearchResults& results) {
    try {
        Platform::current().index->find(
            *matcher.spotlightQuery(), options.roots, stop,
            // The index has looked for the terms in names and in texts.
            [&](const std::vector<URL>& urls) { results.add(load(urls, false)); });
    } catch (const Error&) {
        // A broken index takes nothing away from what the other jobs find.
    }
}

void SearchTask::State::askTextIndex(SearchResults& results) {
    const SearchQuery& query = options.query;
    results.add(load(options.textIndex->filesContaining(query.containing, options.roots,
                                                        query.textInImages, stop),
                     true));
}

void SearchTask::State::walk(SearchResults& results) {
    TreeWalker walker(options.roots);
    SearchWalk visitor(matcher, results, options.includeHidden, walker.threadCount(), stop,
                       visited);
    walker.walk(visitor, stop);
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

std::vector<FileItem> SearchTask::State::load(const std::vector<URL>& urls,
                                              bool checksTerms) const {
    std::vector<FileItem> items;
    for (const URL& url : urls) {
        if (stop.isCancelled()) break;
        auto item = FileItem::load(url);
        if (!item || !isInScope(*item) || !matcher.matchesFilters(*item, false)) continue;
        if (checksTerms && !matcher.termsMatch(*item)) continue;
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

std::vector<FileItem> SearchTask::runAll() {
    std::vector<FileItem> items;
    state_->run([&](std::vector<FileItem> batch) {
        std::move(batch.begin(), batch.end(), std::back_inserter(items));
    });
    return items;
}

void SearchTask::cancel() {
    state_->isCancelled = true;
    state_->stop.cancel();
}

std::optional<float> SearchTask::imageScore(const URL& url) const {
    const auto scores = state_->imageScores.lock();
    const auto found = scores->find(url.path());
    return found == scores->end() ? std::nullopt : std::optional(found->second);
}

std::int64_t SearchTask::visitedCount() const { return state_->visited; }

void SearchTask::setDescribeImages(DescribeImages describe) {
    *describeImages().lock() = std::move(describe);
}

}  // namespace tarn
