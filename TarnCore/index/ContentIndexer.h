#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/index/TextExtractor.h"

namespace tarn {

class TextIndex;

/// Fills a TextIndex with the text of the files below some folders.
///
/// Any thread; `run` works on the calling thread and the pool and returns within a second after
/// its token was set. What was stored before a cancel or a crash stays; the next run goes on.
class ContentIndexer {
public:
    struct Options {
        bool ocr = false;                    ///< Pictures and scanned pages too.
        std::vector<std::string> languages;  ///< Of recognition, BCP 47.
        std::vector<URL> excluded;           ///< Folders of which nothing is read.
        std::int64_t mostBytesOnDisk = 0;    ///< Of the index; 0: no limit.
        bool background = false;             ///< Idle priority for processor and disk.
    };
    ContentIndexer(std::shared_ptr<TextIndex> index, Options options);

    struct Candidate {
        URL url;
        double mtime = 0;  ///< Seconds since 1970.
        std::int64_t size = 0;
        TextExtractor::Method method = TextExtractor::Method::plain;
    };
    /// The files that the index does not know as they are now: newest first, pictures last. Hidden
    /// items, application data, excluded folders, folders with ".nomedia" or a valid CACHEDIR.TAG
    /// and the insides of packages are left out.
    std::vector<Candidate> candidates(const std::vector<URL>& folders,
                                      const CancelToken& token) const;

    /// Called at a bounded rate, from one thread at a time. `name` is the file's, as it is shown.
    using Progress =
        std::function<void(std::int64_t done, std::int64_t total, const std::string& name)>;
    /// Asked before each file; while it returns true nothing is begun. Any thread.
    using Pause = std::function<bool()>;
    struct Outcome {
        std::int64_t indexed = 0;
        std::int64_t withoutText = 0;
        bool reachedBudget = false;
        bool couldNotWrite = false;
    };
    Outcome run(const std::vector<Candidate>& candidates, const CancelToken& token,
                const Pause& pause, const Progress& progress);

private:
    std::shared_ptr<TextIndex> index_;
    Options options_;
};

}  // namespace tarn
