#include "TarnCore/search/SearchResults.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

/// Results that wait while the receiver is busy; with more of them, the jobs wait too.
constexpr std::size_t mostPending = 4096;

}  // namespace

SearchResults::SearchResults(Rules rules, OnBatch onBatch, CancelToken full)
    : rules_(std::move(rules)),
      home_(Paths::home()),
      trash_(Paths::trash()),
      onBatch_(std::move(onBatch)),
      full_(std::move(full)) {
    // Who searches inside a program's folder wants to see what is there.
    for (const URL& root : rules_.roots)
        if (Paths::isAppData(root, home_) || Paths::isAppData(root.appending("any"), home_))
            rootsInAppData_.push_back(root);
    if (rules_.limit <= 0) full_.cancel();
}

bool SearchResults::isExcluded(const URL& url) const {
    if (rules_.hidesTrash && Paths::isInTrash(url)) return true;
    return Paths::isAppData(url, home_) &&
           std::none_of(rootsInAppData_.begin(), rootsInAppData_.end(),
                        [&](const URL& root) { return url.isInside(root); });
}

bool SearchResults::isExcludedFolder(const std::string& path) const {
    const URL url = URL::fromPath(path);
    // Both of these hold folders that are no data of programs: cloud storage, and the Trash.
    return isExcluded(url) && url.name() != "Library" && !trash_.isInside(url);
}

void SearchResults::add(std::vector<FileItem> items) {
    std::erase_if(items, [this](const FileItem& item) { return isExcluded(item.url); });
    if (items.empty()) return;
    {
        const auto state = state_.lock();
        if (state->pending.empty()) state->pending.reserve(std::max(fullBatch, items.size()));
        for (FileItem& item : items) {
            if (state->emitted >= rules_.limit) break;
            if (!state->seen.insert(item.path()).second) continue;
            state->pending.push_back(std::move(item));
            ++state->emitted;
        }
        pendingCount_ = state->pending.size();
        if (state->emitted >= rules_.limit) full_.cancel();
    }
    deliverIfDue();
}

void SearchResults::deliverIfDue() {
    const std::size_t pending = pendingCount_.load(std::memory_order_relaxed);
    if (pending == 0) return;
    const Clock::rep last = lastDelivery_.load(std::memory_order_relaxed);
    const bool isDue = last == 0 || pending >= fullBatch ||
                       Clock::now().time_since_epoch() - Clock::duration(last) >= batchInterval;
    if (!isDue) return;
    std::unique_lock turn(turn_, std::defer_lock);
    if (pending >= mostPending)
        turn.lock();
    else if (!turn.try_lock())
        return;
    deliverHoldingTurn();
}

void SearchResults::deliver() {
    const std::lock_guard turn(turn_);
    deliverHoldingTurn();
}

void SearchResults::deliverHoldingTurn() {
    std::vector<FileItem> batch;
    {
        const auto state = state_.lock();
        batch.swap(state->pending);
        pendingCount_ = 0;
    }
    if (batch.empty()) return;
    lastDelivery_ = Clock::now().time_since_epoch().count();
    onBatch_(std::move(batch));
}

}  // namespace tarn
