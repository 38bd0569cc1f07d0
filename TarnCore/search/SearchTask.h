#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/search/FileTexts.h"
#include "TarnCore/search/SearchQuery.h"
#include "TarnCore/search/TextMatch.h"

namespace tarn {

class TextLookup;

/// What a search is and where it looks.
struct SearchOptions {
    SearchQuery query;
    std::vector<URL> roots;
    bool includeHidden = false;
    bool hidesTrash = true;     ///< When false, the home Trash below a root is walked too.
    bool useSpotlight = true;   ///< Ask the metadata index, when there is one.
    std::int64_t limit = 5000;  ///< Most results delivered.
    TaskPriority priority = TaskPriority::userWaits;
    std::shared_ptr<const TextLookup> textIndex;
    /// Reads documents that the text index does not know; without it, only plain text is read.
    FileTexts::ReadDocument readDocument;
    bool lastWordIsPrefix = false;  ///< The query is being typed: its last phrase may go on.
    bool indexesOnly = false;       ///< No folder is looked at and no file read.
    bool tags = true;  ///< Results tell their tags, which takes a system call for each.
    /// What `currentFolder` in the query's place means; the first root when absent.
    std::optional<URL> currentFolder;
};

/// Runs one search: the metadata index, the content index, pictures by description and a walk of
/// the roots, at once; every result is delivered once, in batches, until the limit is reached.
/// Documents that no index knows are read when the walk is done, the newest first.
///
/// `start`, or one of `run` and `runAll`, may be called once. `onBatch` comes from worker threads,
/// one at a time; `onDone` comes once, after the last batch, on a worker thread, also after
/// `cancel`. No batch follows a `cancel`, except one that was on its way. Any thread may cancel,
/// and so may `onBatch`. The destructor cancels and waits, so it must not run in a callback.
///
/// Folders on servers are entered only where a root lies on one. A root on a server that no longer
/// answers keeps its thread in the kernel: results from other roots still come, but `onDone`, and
/// with it the destructor, wait until the kernel gives up.
class SearchTask {
public:
    explicit SearchTask(SearchOptions options);
    ~SearchTask();
    SearchTask(const SearchTask&) = delete;
    SearchTask& operator=(const SearchTask&) = delete;

    void start(std::function<void(std::vector<FileItem>)> onBatch, std::function<void()> onDone);
    /// Runs to the end on this thread and the pool; `onBatch` comes from any of them, one at a
    /// time.
    void run(const std::function<void(std::vector<FileItem>)>& onBatch);
    /// The same, and returns everything accepted.
    std::vector<FileItem> runAll();
    void cancel();

    /// Why a result was found. Reads the text of the file, from the index or the disk, when the
    /// query asks for texts, so it is for rows that are shown. Any thread, also after the end.
    TextMatch match(const FileItem& item, const CancelToken& token = {}) const;

    std::optional<float> imageScore(const URL& url) const;
    /// Files and folders that the walk has looked at so far; for "Searched 214,000 files".
    std::int64_t visitedCount() const;
    /// Files so far that the walk would have had to read, but which are larger than
    /// `TextExtractor::sizeLimit`; for “2 files are too large to be read”.
    std::int64_t tooLargeCount() const;

    /// Scores of pictures for "a photo of …", by path; absent when image search is off. Installed
    /// by the application, callable from any thread.
    using DescribeImages = std::function<std::optional<std::unordered_map<std::string, float>>(
        const std::string& description)>;
    static void setDescribeImages(DescribeImages describe);

private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace tarn
