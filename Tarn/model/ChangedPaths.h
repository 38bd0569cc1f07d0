#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <QtCore/QObject>

#include "Tarn/model/LiveQuery.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/SerialQueue.h"

namespace tarn {

/// Where something has changed below what a query has found, and what the query finds there now.
///
/// Main thread only, but for the asking itself, which happens on a queue. Paths that come meanwhile
/// are gathered for the next time.
class ChangedPaths final : public QObject {
    Q_OBJECT
public:
    using Set = std::set<std::string, std::less<>>;
    /// The path, or that of a folder it lies in, is among them.
    static bool isAtOrBelow(std::string_view path, const Set& places);

    /// Puts what is found now in the place of all that was found at or below `paths`, none of which
    /// lies below another. True when that is a difference. Called on the queue.
    using Replace =
        std::function<bool(const std::vector<std::string>& paths, std::vector<FileItem> now)>;

    /// `queue` outlives this.
    explicit ChangedPaths(SerialQueue& queue, QObject* parent = nullptr);
    ~ChangedPaths() override;

    void add(std::string path) { waiting_.insert(std::move(path)); }
    /// Forgets the paths, and drops the answer that is on its way.
    void clear();

    bool isAsking() const { return isAsking_; }
    /// Nothing when no path is waiting, or while it is asking.
    void ask(const LiveQuery& query, Replace replace);

signals:
    /// The paths of the last ask() have been looked at.
    void replaced(bool isDifferent);

private:
    SerialQueue& queue_;
    Set waiting_;
    bool isAsking_ = false;
    std::uint64_t clears_ = 0;  ///< An answer from before one is dropped.
    CancelToken token_;
};

}  // namespace tarn
