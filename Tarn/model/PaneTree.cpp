#include "Tarn/model/PaneTree.h"

#include <algorithm>
#include <utility>

#include "Tarn/model/CoreSentences.h"
#include "Tarn/model/MainThread.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/ListingError.h"

namespace tarn {
namespace {

constexpr double latency = 0.25;  // seconds

}  // namespace

PaneTree::PaneTree(TaskPool& pool, QObject* parent) : QObject(parent), pool_(pool) {
    connect(&watcher_, &PaneWatcher::changed, this, [this](const std::vector<std::string>& paths) {
        if (holds_) {
            missedChanges_ = true;
            return;
        }
        std::vector<URL> folders;
        for (const auto& [folder, branch] : branches_) {
            const auto isMeant = [&folder](const std::string& path) {
                const URL url = URL::fromPath(path);
                return url == folder || url.parent() == folder;
            };
            if (std::any_of(paths.begin(), paths.end(), isMeant)) folders.push_back(folder);
        }
        for (const URL& folder : folders) list(folder);
    });
}

PaneTree::~PaneTree() { token_.cancel(); }

void PaneTree::loadChildren(const URL& folder) {
    const auto [place, isNew] = branches_.try_emplace(folder);
    if (!isNew && std::exchange(place->second.isUnfolded, true)) return;
    list(folder);
    watch();
    if (place->second.rows) emit changed();
}

void PaneTree::fold(const URL& folder) {
    const auto branch = branches_.find(folder);
    if (branch == branches_.end() || !std::exchange(branch->second.isUnfolded, false)) return;
    emit changed();
}

bool PaneTree::isUnfolded(const URL& folder) const {
    const auto branch = branches_.find(folder);
    return branch != branches_.end() && branch->second.isUnfolded;
}

SharedRows PaneTree::children(const URL& folder) const {
    const auto branch = branches_.find(folder);
    return branch != branches_.end() && branch->second.isUnfolded ? branch->second.rows : nullptr;
}

std::map<URL, SharedRows> PaneTree::treeChildren() const {
    std::map<URL, SharedRows> children;
    for (const auto& [folder, branch] : branches_)
        if (branch.isUnfolded && branch.rows) children.emplace(folder, branch.rows);
    return children;
}

void PaneTree::setShowsHidden(bool shows) {
    if (std::exchange(showsHidden_, shows) != shows) reload();
}

void PaneTree::reload() {
    if (holds_) {
        missedChanges_ = true;
        return;
    }
    for (const auto& [folder, branch] : branches_) list(folder);
}

void PaneTree::clear() {
    if (branches_.empty()) return;
    token_.cancel();
    token_ = CancelToken();
    watcher_.stop();
    branches_.clear();
    missedChanges_ = false;
}

void PaneTree::setHolds(bool holds) {
    holds_ = holds;
    if (!holds_ && std::exchange(missedChanges_, false)) reload();
}

void PaneTree::watch() {
    std::vector<URL> folders;
    for (const auto& [folder, branch] : branches_) folders.push_back(folder);
    // What changed before the watch was there is read again.
    watcher_.watch(std::move(folders), WatchDepth::children, latency,
                   [self = QPointer<PaneTree>(this)] {
                       MainThread::post(self, [](PaneTree& tree) { tree.reload(); });
                   });
}

void PaneTree::list(const URL& folder) {
    const std::uint64_t listing = ++listings_;
    branches_[folder].listing = listing;
    pool_.run(
        [folder, listing, hidden = showsHidden_, token = token_, self = QPointer<PaneTree>(this)] {
            if (token.isCancelled()) return;
            try {
                auto rows = std::make_shared<const PaneRows>(DirectoryLister::list(
                    folder, hidden, token, DirectoryLister::AttributeReading::always));
                MainThread::post(self, [folder, listing, rows](PaneTree& tree) {
                    tree.listed(folder, listing, rows);
                });
            } catch (const ListingError& error) {
                const bool isGone = error.reason() == ListingError::Reason::notFound ||
                                    error.reason() == ListingError::Reason::notAFolder;
                MainThread::post(self, [folder, listing, isGone,
                                        sentence = coreSentence(error.what())](PaneTree& tree) {
                    tree.listingFailed(folder, listing, isGone, sentence);
                });
            }
        });
}

void PaneTree::listed(const URL& folder, std::uint64_t listing, SharedRows rows) {
    const auto branch = branches_.find(folder);
    if (branch == branches_.end() || branch->second.listing != listing) return;
    const SharedRows& old = branch->second.rows;
    const bool isSame = old && std::ranges::equal(old->items(), rows->items());
    if (isSame) return;
    if (holds_ && old) {  // It was asked for before the rows had to stay.
        missedChanges_ = true;
        return;
    }
    branch->second.rows = std::move(rows);
    emit changed();
}

void PaneTree::listingFailed(const URL& folder, std::uint64_t listing, bool isGone,
                             const QString& sentence) {
    const auto branch = branches_.find(folder);
    if (branch == branches_.end() || branch->second.listing != listing) return;
    branches_.erase(branch);
    emit changed();
    if (!isGone) emit failed(sentence);
}

}  // namespace tarn
