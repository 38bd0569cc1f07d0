#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/base/TextTokens.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/index/TextExtractor.h"

namespace tarn {

struct FileAttributes;

/// The text inside files, searchable: a SQLite database with an FTS5 table, described in
/// docs/formats/text-index.md.
///
/// Callable from any thread; the statements of one object run one after the other, on the threads
/// of the callers. Several objects and processes may share a file: a search does not wait for an
/// indexing run that uses an object of its own. The file is opened at first use, and made when
/// something is stored; when that fails, everything does nothing and answers empty or false. A
/// damaged file is set aside as "NAME.unreadable" ("NAME.unreadable 2", …) and a new one begun,
/// except while another program has claimed it, which does that itself. Paths are absolute and
/// valid UTF-8; a path that is not is never stored.
///
/// Times are seconds since 1970, as `time` gives them; those within a microsecond are the same.
class TextIndex {
public:
    explicit TextIndex(URL file);
    ~TextIndex();
    TextIndex(const TextIndex&) = delete;
    TextIndex& operator=(const TextIndex&) = delete;

    /// The index of the user, "text-index.sqlite" in the support folder; one object a process.
    static std::shared_ptr<TextIndex> shared();
    static URL sharedFile();

    static double time(Date modified);

    /// While one lives, `claim` gives no other, in this process or another.
    class Claim {
    public:
        explicit Claim(FileDescriptor lock) : lock_(std::move(lock)) {}

    private:
        FileDescriptor lock_;
    };
    /// The right to fill the index; null when another program has it, or the disk refuses, as
    /// `problem` then says. Single files may be stored without.
    std::shared_ptr<const Claim> claim();

    /// Tells other processes that the index has changed: writes to `changesFile`, so that those
    /// who watch its folder hear of it.
    void announceChange() const;
    /// "tarn.contentindex.changes", beside the database; empty, and missing before the first
    /// change.
    URL changesFile() const;

    /// No row, or one with another time or size.
    bool needsIndex(const std::string& path, double mtime, std::int64_t size) const;

    struct Entry {
        std::string path;
        double mtime = 0;
        std::int64_t size = 0;
        TextExtractor::Method method = TextExtractor::Method::plain;
        std::string text;  ///< Empty for files without text, so that they are not read again.
        /// Of a picture, or a document with pages that are pictures: the data of languages by which
        /// its text was recognised, none where it was not. Absent for every other file.
        std::optional<std::vector<std::string>> recognizedBy{};
        /// Of the text, found by a TokenFinder; without any they are found while it is stored,
        /// which makes the one who stores wait.
        TextTokens tokens{};
    };
    void store(const std::string& path, double mtime, std::int64_t size,
               TextExtractor::Method method, std::string_view text);
    /// All of them in one transaction, or those that came before the token was set. Returns false
    /// when nothing could be written.
    bool store(std::span<const Entry> entries, const CancelToken& token = {});
    /// Brings what was stored from the log into the database itself, and empties the log, unless
    /// someone reads in it. For the end of a run: reading is faster afterwards.
    void settle();
    /// Why the latest change could not be written, or the claim not be had, as a finished sentence;
    /// absent when it could.
    std::optional<std::string> problem() const;
    /// The files with text in pictures that was recognised without one of these data of languages.
    std::vector<std::string> notRecognizedBy(const std::vector<std::string>& data) const;
    void remove(const std::string& path);
    /// Forgets files below the folder that no longer exist; how many.
    std::int64_t pruneMissing(const URL& under, const CancelToken& token = {});
    /// Forgets everything below the folder and gives the room back to the disk; how many files.
    /// Takes seconds where the index is large.
    std::int64_t forget(const URL& under);
    /// Forgets everything. Returns false when nothing could be written.
    bool clear();

    struct Scope {
        std::vector<URL> under{};  ///< Empty: everywhere.
        bool imagesOnly = false;
        bool lastWordIsPrefix = false;  ///< The last word is still being typed.
        std::int64_t limit = -1;        ///< Negative: all.
    };
    /// What the index knows of a file when it was last read.
    struct Known {
        double mtime = 0;
        std::int64_t size = 0;
        bool operator==(const Known& other) const;
        /// Of a file as it is. For a package these are the facts of the folder itself.
        static Known of(const FileAttributes& attributes);
    };
    struct Hit {
        std::string path;
        Known known;
    };
    /// `search` with what the index knows of each file, handed on some hits at a time while others
    /// are looked for. `onHits` must not ask the index, which is held meanwhile. False when it
    /// ended before its end: there is no index, it is damaged, or the token was set.
    using OnHits = std::function<void(std::vector<Hit>)>;
    bool hits(const std::vector<std::string>& phrases, const Scope& scope, const OnHits& onHits,
              const CancelToken& token = {}) const;
    /// Paths of the files whose text has every phrase. A phrase is words that stand side by side;
    /// case and diacritics do not matter. No phrases give nothing, but with `imagesOnly` every
    /// picture with text. A file may have changed or gone since it was read: see `known`. Empty
    /// soon after the token was set.
    std::vector<std::string> search(const std::vector<std::string>& phrases, const Scope& scope,
                                    const CancelToken& token = {}) const;

    std::optional<Known> known(const std::string& path) const;
    /// All files below the folders, by path; for tests of many files.
    std::unordered_map<std::string, Known> known(const std::vector<URL>& under) const;

    std::optional<std::string> text(const std::string& path) const;
    bool isIndexed(const std::string& path) const;
    std::int64_t fileCount() const;
    std::vector<std::string> indexedPaths(const URL& under) const;

    struct Status {
        std::int64_t files = 0;  ///< Rows.
        std::int64_t withText = 0;
        std::int64_t images = 0;  ///< Of those with text.
        std::int64_t characters = 0;
        std::int64_t bytesOnDisk = 0;
        std::optional<double> lastIndexed;  ///< Seconds since 1970.
    };
    Status status() const;
    /// Of the database and what was not yet written into it.
    std::int64_t bytesOnDisk() const;

private:
    std::int64_t removeAll(std::span<const std::string> paths, const CancelToken& token);

    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tarn
