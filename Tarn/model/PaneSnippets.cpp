#include "Tarn/model/PaneSnippets.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "Tarn/model/MainThread.h"
#include "TarnCore/search/SearchTask.h"

namespace tarn {
namespace {

/// Read before the rows are told; a few, so that the first ones show at once.
constexpr std::size_t atOnce = 6;
/// Rows that wait: more than any screen has. Older ones are asked for again when they come back.
constexpr std::size_t mostWanted = 200;

}  // namespace

PaneSnippets::PaneSnippets(QObject* parent) : QObject(parent) {}

PaneSnippets::~PaneSnippets() { stop(); }

void PaneSnippets::start(std::shared_ptr<const SearchTask> task) {
    stop();
    token_ = CancelToken();
    task_ = std::move(task);
    matches_.clear();
}

void PaneSnippets::stop() {
    ++run_;
    token_.cancel();
    task_.reset();
    wanted_.clear();
    asked_.clear();
    isReading_ = false;
}

const TextMatch* PaneSnippets::match(const FileItem& item) {
    const auto found = matches_.find(item.path());
    if (found != matches_.end()) return &found->second;
    if (!task_ || !asked_.insert(item.path()).second) return nullptr;
    wanted_.push_back(item);
    if (wanted_.size() > mostWanted) {
        asked_.erase(wanted_.front().path());
        wanted_.erase(wanted_.begin());
    }
    readSome();
    return nullptr;
}

void PaneSnippets::readSome() {
    if (isReading_ || wanted_.empty() || !task_) return;
    isReading_ = true;
    // A view asks for its rows from top to bottom; of what it asked for last, the top comes first.
    const std::size_t count = std::min(atOnce, wanted_.size());
    std::vector<FileItem> items(std::make_move_iterator(wanted_.end() - std::ptrdiff_t(count)),
                                std::make_move_iterator(wanted_.end()));
    wanted_.resize(wanted_.size() - count);
    queue_.run([self = QPointer<PaneSnippets>(this), run = run_, task = task_, token = token_,
                items = std::move(items)] {
        Matches matches;
        for (const FileItem& item : items) {
            if (token.isCancelled()) return;
            matches.emplace_back(item.path(), task->match(item, token));
        }
        MainThread::post(self, [run, matches = std::move(matches)](PaneSnippets& snippets) {
            snippets.arrived(run, matches);
        });
    });
}

void PaneSnippets::arrived(std::uint64_t run, Matches matches) {
    if (run != run_) return;
    for (auto& [path, match] : matches) {
        asked_.erase(path);
        matches_.insert_or_assign(std::move(path), std::move(match));
    }
    isReading_ = false;
    readSome();
    emit changed();
}

}  // namespace tarn
