#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/index/TextExtractor.h"
#include "TarnCore/index/TextIndex.h"
#include "TarnCore/index/TextReader.h"

namespace tarn {

/// Fills a TextIndex with the text of the files below some folders.
///
/// Any thread; `run` has threads of its own, whose priority is lowered where that is asked for, and
/// returns within a second after its token was set. What was stored before a cancel or a crash
/// stays; the next run goes on. Who runs it holds the claim of the index.
class ContentIndexer {
public:
    struct Options {
        bool ocr = false;                      ///< Pictures and scanned pages too.
        std::vector<std::string> languages{};  ///< Of recognition, BCP 47.
        std::vector<URL> excluded{};           ///< Folders of which nothing is read.
        std::int64_t mostBytesOnDisk = 0;      ///< Of the index; 0: no limit.
        bool background = false;               ///< Idle priority for processor and disk.
        /// A pause ends the run once the files that were begun are stored, so that others may have
        /// the claim meanwhile.
        bool endsWhenPaused = false;
    };
    /// Gets the text of a file; called from several threads at once.
    using Read = std::function<TextReader::Result(const URL& url, std::int64_t size,
                                                  const CancelToken& token)>;
    /// Reads through a TextReader, which lives as long as a run.
    ContentIndexer(std::shared_ptr<TextIndex> index, Options options);
    ContentIndexer(std::shared_ptr<TextIndex> index, Options options, Read read);

    struct Candidate {
        URL url;
        double mtime = 0;  ///< Seconds since 1970.
        std::int64_t size = 0;
        TextExtractor::Method method = TextExtractor::Method::plain;
    };
    /// The files that the index does not know as they are now, and with recognition those whose
    /// pictures were read without one of the languages: newest first, pictures last. Hidden
    /// items, application data, the Trash, excluded folders, folders with ".nomedia" or a valid
    /// CACHEDIR.TAG, the insides of packages and names that are not UTF-8 are left out.
    std::vector<Candidate> candidates(const std::vector<URL>& folders,
                                      const CancelToken& token) const;

    /// Of those, the files that are among the changed paths or below one; what else lies in the
    /// folders is not looked at.
    std::vector<Candidate> candidates(const std::vector<URL>& folders,
                                      const std::vector<std::string>& changed,
                                      const CancelToken& token) const;
    /// Forgets what was read in folders that are excluded, and gives its room back to the disk; how
    /// many files. Whoever calls it holds the claim of the index.
    std::int64_t forgetExcluded() const;

    /// Forgets what the index knows of changed paths that are gone, and of what was below them; how
    /// many files. Whoever calls it holds the claim of the index.
    std::int64_t forgetGone(const std::vector<std::string>& changed,
                            const CancelToken& token) const;

    /// Called at a bounded rate, from one thread at a time. `name` is the file's, as it is shown.
    using Progress =
        std::function<void(std::int64_t done, std::int64_t total, const std::string& name)>;
    /// Asked before each file; while it returns true nothing is begun. Any thread.
    using Pause = std::function<bool()>;
    struct Outcome {
        std::int64_t indexed = 0;      ///< Files with text.
        std::int64_t withoutText = 0;  ///< Remembered, so that they are not read again.
        bool wasPaused = false;        ///< Ended by a pause, with candidates left.
        bool reachedBudget = false;    ///< Stopped before the index would have become larger.
        bool couldNotWrite = false;    ///< Stopped; TextIndex::problem says why.
        std::string problem;           ///< Of reading (TextReader::problem); empty without one.
    };
    /// A file is stored with its time and size from before it was read, so that one that changes
    /// meanwhile is a candidate again. Files that are gone, or could not be read for want of a
    /// program or a library, are left as they are known.
    Outcome run(const std::vector<Candidate>& candidates, const CancelToken& token,
                const Pause& pause, const Progress& progress);

private:
    /// Takes out what is to be read again because its pictures were recognised otherwise.
    void leaveOutUnrecognized(std::unordered_map<std::string, TextIndex::Known>& known) const;

    std::shared_ptr<TextIndex> index_;
    Options options_;
    std::vector<std::string> recognizedBy_;  ///< Data of languages; empty without recognition.
    Read read_;
};

}  // namespace tarn
