#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <QtCore/QObject>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/search/TextMatch.h"

namespace tarn {

class SearchTask;

/// Why the results of a search were found, for the rows that are on the screen.
///
/// Main thread only. Texts are read on a queue of its own, those that were asked for last first,
/// so that scrolling through thousands of results reads what stays in sight.
class PaneSnippets final : public QObject {
    Q_OBJECT
public:
    explicit PaneSnippets(QObject* parent = nullptr);
    ~PaneSnippets() override;

    /// Forgets what it knew of another search.
    void start(std::shared_ptr<const SearchTask> task);
    void stop();

    /// What is known of a result; null until it was read, for which this asks.
    const TextMatch* match(const FileItem& item);

signals:
    /// match() has more to tell.
    void changed();

private:
    using Matches = std::vector<std::pair<std::string, TextMatch>>;

    void readSome();
    void arrived(std::uint64_t run, Matches matches);

    std::shared_ptr<const SearchTask> task_;
    std::unordered_map<std::string, TextMatch> matches_;  ///< By path.
    std::vector<FileItem> wanted_;                        ///< The latest behind.
    std::unordered_set<std::string> asked_;               ///< Wanted or being read.
    bool isReading_ = false;
    std::uint64_t run_ = 0;  ///< Counts searches; what belongs to an older one is dropped.
    CancelToken token_;
    SerialQueue queue_{"tarn.snippets"};
};

}  // namespace tarn
