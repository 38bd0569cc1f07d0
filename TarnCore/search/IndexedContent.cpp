#include "TarnCore/search/IndexedContent.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "TarnCore/search/FileTexts.h"
#include "TarnCore/search/NameTerms.h"
#include "TarnCore/search/PhraseFinder.h"

namespace tarn {
namespace {

/// Terms that are looked for in texts: as many as there are bits, which is more than anyone types.
constexpr std::size_t mostTerms = 64;
/// Candidates that are handed on together.
constexpr std::size_t atOnce = 64;

}  // namespace

IndexedContent::IndexedContent(std::shared_ptr<const TextLookup> index, const SearchQuery& query,
                               Scope scope)
    : index_(std::move(index)),
      terms_(query.terms),
      imagesOnly_(query.textInImages),
      scope_(std::move(scope)) {
    for (const std::string& phrase : query.containing)
        if (!PhraseFinder(phrase).isEmpty()) phrases_.push_back(phrase);
    knowsWords_ = std::ranges::all_of(phrases_, TextLookup::knowsWordsOf);
}

bool IndexedContent::isAskedForTerms() const {
    return index_ && !scope_.roots.empty() && !isAsked() && terms_.size() > 1 &&
           terms_.size() <= mostTerms;
}

void IndexedContent::candidates(const OnCandidates& onCandidates, const CancelToken& token) const {
    if (knowsWords_) {
        const auto handOn = [&](std::vector<TextLookup::Hit> hits) {
            std::vector<Candidate> candidates;
            candidates.reserve(hits.size());
            for (TextLookup::Hit& hit : hits) candidates.push_back({std::move(hit.url), hit.state});
            onCandidates(std::move(candidates));
        };
        hasFailed_ = !index_->filesContaining(
            {phrases_, scope_.roots, imagesOnly_, scope_.lastWordIsPrefix}, handOn, token);
        return;
    }
    std::vector<Candidate> candidates;
    const FileTexts texts;
    for (const auto& [path, state] : known()) {
        if (token.isCancelled()) break;
        URL url = URL::fromPath(path);
        const auto method = TextExtractor::method(url);
        const bool isPicture = method == TextExtractor::Method::image;
        if (isPicture || scope_.indexesOnly) candidates.push_back({std::move(url), state, false});
        if (candidates.size() == atOnce) onCandidates(std::exchange(candidates, {}));
    }
    if (!candidates.empty()) onCandidates(std::move(candidates));
}

void IndexedContent::candidatesByTerms(const OnCandidates& onCandidates,
                                       const CancelToken& token) const {
    struct InText {
        TextIndex::Known state;
        std::uint64_t terms = 0;
    };
    const NameTerms names(terms_);
    std::unordered_map<std::string, InText> texts;
    for (std::size_t i = 0; i < terms_.size() && !token.isCancelled(); ++i) {
        const std::string& stem = names.stems()[i];
        if (!TextLookup::knowsWordsOf(stem)) continue;
        const auto note = [&](const std::vector<TextLookup::Hit>& hits) {
            for (const TextLookup::Hit& hit : hits) {
                InText& text = texts[hit.url.path()];
                text.state = hit.state;
                text.terms |= std::uint64_t{1} << i;
            }
        };
        index_->filesContaining({{stem}, scope_.roots, false, true}, note, token);
    }
    std::vector<Candidate> candidates;
    for (const auto& [path, text] : texts) {
        if (token.isCancelled()) break;
        URL url = URL::fromPath(path);
        const auto missing = names.missingFrom(url.name());
        if (missing.empty() || missing.size() == terms_.size()) continue;
        const bool isComplete =
            std::ranges::all_of(missing, [&](std::size_t i) { return (text.terms >> i & 1) != 0; });
        if (isComplete) candidates.push_back({std::move(url), text.state});
        if (candidates.size() == atOnce) onCandidates(std::exchange(candidates, {}));
    }
    if (!candidates.empty()) onCandidates(std::move(candidates));
}

bool IndexedContent::answers(const std::string& path, const FileAttributes& attributes) const {
    if (!mayAnswer()) return false;
    const auto found = known().find(path);
    return found != known().end() && found->second == TextIndex::Known::of(attributes);
}

bool IndexedContent::mayAnswer(const std::string& path) const {
    return mayAnswer() && known().contains(path);
}

bool IndexedContent::hasFailed() const { return hasFailed_ && !known().empty(); }

const std::unordered_map<std::string, TextIndex::Known>& IndexedContent::known() const {
    std::call_once(isKnown_, [this] { known_ = index_->known(scope_.roots); });
    return known_;
}

}  // namespace tarn
