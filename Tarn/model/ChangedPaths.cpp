#include "Tarn/model/ChangedPaths.h"

#include "Tarn/model/MainThread.h"

namespace tarn {
namespace {

std::vector<std::string> outermost(const ChangedPaths::Set& paths) {
    std::vector<std::string> outer;
    for (const std::string& path : paths)
        if (!ChangedPaths::isAtOrBelow(std::string_view(path).substr(0, path.rfind('/')), paths))
            outer.push_back(path);
    return outer;
}

}  // namespace

bool ChangedPaths::isAtOrBelow(std::string_view path, const Set& places) {
    for (auto end = path.size(); end != path.npos && end > 0; end = path.rfind('/', end - 1))
        if (places.contains(path.substr(0, end))) return true;
    return false;
}

ChangedPaths::ChangedPaths(SerialQueue& queue, QObject* parent) : QObject(parent), queue_(queue) {}

ChangedPaths::~ChangedPaths() { clear(); }

void ChangedPaths::clear() {
    ++clears_;
    token_.cancel();
    waiting_.clear();
    isAsking_ = false;
}

void ChangedPaths::ask(const LiveQuery& query, Replace replace) {
    if (waiting_.empty() || isAsking_) return;
    isAsking_ = true;
    token_ = CancelToken();
    queue_.run([self = QPointer<ChangedPaths>(this), clears = clears_, token = token_, query,
                paths = outermost(waiting_), replace = std::move(replace)] {
        if (token.isCancelled()) return;
        std::vector<FileItem> now = query.find(paths, token);
        if (token.isCancelled()) return;
        MainThread::post(
            self, [clears, isDifferent = replace(paths, std::move(now))](ChangedPaths& changes) {
                if (clears != changes.clears_) return;
                changes.isAsking_ = false;
                emit changes.replaced(isDifferent);
            });
    });
    waiting_.clear();
}

}  // namespace tarn
