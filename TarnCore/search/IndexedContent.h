#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/index/TextLookup.h"
#include "TarnCore/platform/FileSystem.h"
#include "TarnCore/search/SearchQuery.h"

namespace tarn {

/// What an index of texts knows about one search. Callable from any thread.
class IndexedContent {
public:
    struct Scope {
        std::vector<URL> roots;
        bool lastWordIsPrefix = false;
        bool indexesOnly = false;
    };
    /// Without an index, or roots to look below, it knows nothing.
    IndexedContent(std::shared_ptr<const TextLookup> index, const SearchQuery& query, Scope scope);

    /// The query asks for texts, and there is an index.
    bool isAsked() const {
        return index_ && !scope_.roots.empty() && (!phrases_.empty() || imagesOnly_);
    }
    /// Some terms of the query may be in texts, while others are in names.
    bool isAskedForTerms() const;

    struct Candidate {
        URL url;
        TextIndex::Known state;
        bool isCertain = true;  ///< The text matches, if the file is still in that state.
    };
    /// What is to be looked at: the hits of the index; where it cannot look for such phrases, the
    /// files of which no other than the index knows the text. Some at a time, while the index goes
    /// on; `onCandidates` asks nothing of it.
    using OnCandidates = std::function<void(std::vector<Candidate>)>;
    void candidates(const OnCandidates& onCandidates, const CancelToken& token) const;
    /// Files that have some of the terms in their names, and all others in their texts.
    void candidatesByTerms(const OnCandidates& onCandidates, const CancelToken& token) const;

    /// The index knows the file as it is now, so that it is among `candidates` or does not match.
    /// Reads what the index knows of all files when first asked.
    bool answers(const std::string& path, const FileAttributes& attributes) const;
    /// False when it will not for any attributes, and for any file.
    bool mayAnswer(const std::string& path) const;
    bool mayAnswer() const { return index_ && knowsWords_ && !hasFailed_; }
    /// It could not give all of the candidates, though files may have been left to it: the index
    /// turned out to be damaged. From then on it answers for none.
    bool hasFailed() const;

private:
    const std::unordered_map<std::string, TextIndex::Known>& known() const;

    std::shared_ptr<const TextLookup> index_;
    std::vector<std::string> phrases_;
    std::vector<std::string> terms_;
    bool imagesOnly_ = false;
    bool knowsWords_ = true;  ///< Of every phrase.
    mutable std::atomic<bool> hasFailed_ = false;
    Scope scope_;
    mutable std::once_flag isKnown_;
    mutable std::unordered_map<std::string, TextIndex::Known> known_;
};

}  // namespace tarn
