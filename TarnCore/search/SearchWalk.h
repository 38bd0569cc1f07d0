#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/PageBuffer.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/files/TreeWalker.h"
#include "TarnCore/search/IndexedContent.h"
#include "TarnCore/search/QueryMatcher.h"
#include "TarnCore/search/SearchResults.h"

namespace tarn {

/// What a search has come by so far. Callable from any thread.
struct SearchCounts {
    std::atomic<std::int64_t> visited{0};   ///< Files and folders.
    std::atomic<std::int64_t> tooLarge{0};  ///< Files that match but for their text, which is not
                                            ///< read because they are too large.
};

/// The part of a search that looks at the folders themselves.
///
/// A name is tested where the kernel put it; only what passes is copied, asked for its attributes,
/// and made a FileItem when these pass too. Hidden items are left out unless asked for, and so
/// are a root's own "Library", folders that hold no results, and the insides of packages, which
/// are one item each.
///
/// Where the query asks for phrases, plain text is read on the way. Documents, which take longer,
/// are only gathered, so that whatever is quick comes first; files that the index of texts knows as
/// they are now are left to it.
class SearchWalk final : public TreeWalker::Visitor {
public:
    struct Rules {
        bool includeHidden = false;
        ResourceKeys keys;  ///< Of the results.
    };
    SearchWalk(const QueryMatcher& matcher, const IndexedContent& indexed, SearchResults& results,
               const Rules& rules, std::size_t threads, CancelToken token, SearchCounts& counts);

    /// A file whose text must be read by others; everything else about it matches as far as its
    /// name and attributes tell.
    struct Document {
        URL url;
        std::int64_t size = 0;
        Date modified;
    };
    /// After the walk.
    std::vector<Document> takeDocuments();

    void visit(TreeWalker::Folder& folder, std::span<const FolderEntry> entries) override;
    void leave(TreeWalker::Folder& folder) override;
    void idle() override { results_.deliver(); }

private:
    struct Candidate {
        std::string name;
        FileType type = FileType::unknown;
    };
    /// What a thread keeps of the folder that it reads.
    struct Worker {
        std::vector<Candidate> candidates;  ///< The first `candidateCount` are in use.
        std::size_t candidateCount = 0;
        std::vector<std::string> subfolders;  ///< Names, likewise.
        std::size_t subfolderCount = 0;
        bool hasHiddenList = false;     ///< A ".hidden" was among the names so far.
        bool mayHaveHiddenList = true;  ///< Or may still come.
        std::optional<ResourceReader> resources;
        std::vector<Document> documents;
        PageBuffer bytes;  ///< Of files.
    };

    bool isToBeEntered(const TreeWalker::Folder& folder, std::string_view name) const;
    static const ResourceReader& resources(const TreeWalker::Folder& folder, Worker& worker);
    void test(const TreeWalker::Folder& folder, Worker& worker);
    std::optional<FileItem> match(const TreeWalker::Folder& folder, const Candidate& candidate,
                                  Worker& worker) const;
    bool needsOnlyText(const TreeWalker::Folder& folder, const Candidate& candidate) const;
    bool hasTextHere(const TreeWalker::Folder& folder, const std::string& name,
                     Worker& worker) const;
    bool mayHaveTerms(std::string_view name) const;
    bool hasText(std::string_view name, const URL& url, const FileAttributes& attributes,
                 Worker& worker) const;

    const QueryMatcher& matcher_;
    const IndexedContent& indexed_;
    SearchResults& results_;
    const bool includeHidden_;
    const ResourceKeys keys_;
    const bool readsTexts_;
    const bool checksNames_;  ///< False when the text of a file may make up for its name.
    const CancelToken token_;
    SearchCounts& counts_;
    std::vector<Worker> workers_;
};

}  // namespace tarn
