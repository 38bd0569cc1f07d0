#include "TarnCore/search/QueryParser.h"

#include <algorithm>
#include <string>
#include <unordered_set>
#include <utility>

#include "TarnCore/platform/Platform.h"
#include "TarnCore/search/QueryDates.h"
#include "TarnCore/search/QueryNumbers.h"
#include "TarnCore/search/QueryOrigins.h"
#include "TarnCore/search/QueryPlaces.h"
#include "TarnCore/search/QuerySizes.h"
#include "TarnCore/search/QueryVocabulary.h"

namespace tarn {
namespace {

constexpr std::size_t longestExtension = 16;

/// ".md", "*.md", or a bare word that is nothing but an extension; without the dot.
std::optional<std::string_view> matchExtension(const Token& token) {
    std::string_view text = token.text;
    if (text.starts_with("*.")) text.remove_prefix(1);
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        const bool isExtension = !text.empty() && text.size() <= longestExtension &&
                                 text.find_first_of("./*") == text.npos;
        return isExtension ? std::optional(text) : std::nullopt;
    }
    if (token.word != nullptr && token.word->isSafeExtension) return token.text;
    return std::nullopt;
}

/// One walk over the tokens of a query. Every `read…` looks at the token at `index_`; it either
/// takes tokens, moves on and returns true, or leaves everything as it was.
class Walk {
public:
    Walk(const QueryTokens& tokens, Date now, const Calendar& calendar, const Locale& locale)
        : tokens_(tokens), now_(now), calendar_(calendar), locale_(locale) {}

    SearchQuery run(std::string_view text) {
        query_.raw = text;
        while (index_ < tokens_.size()) readNext();
        if (query_.camera && query_.kinds.empty() && query_.extensions.empty()) {
            query_.kinds.push_back(SearchKind::photo);
        }
        // "pdfs from slack last week" arrived last week, whenever they were written.
        if (query_.source && query_.date && !hasExplicitField_)
            query_.date->field = DateField::added;
        return std::move(query_);
    }

private:
    void readNext() {
        if (readQuotation()) return;
        if (readTextInImages() || readContent() || readFolderName() || readField()) return;
        if (readSize(0) || readDate() || readIntroduced() || readPlace()) return;
        if (readKindPhrase() || readExtension() || readKind()) return;
        if (readSource() || readCamera()) return;
        if (!word().isFiller) query_.terms.emplace_back(tokens_[index_].original);
        ++index_;
    }

    const QueryWord& word() const { return tokens_.word(index_); }

    bool take(std::size_t count) {
        index_ += count;
        return true;
    }

    bool readQuotation() {
        const Token& token = tokens_[index_];
        if (!token.quoted) return false;
        const bool isContent = index_ == quotedContent_ ||
                               (index_ > 0 && tokens_.word(index_ - 1).introducesQuotation);
        (isContent ? query_.containing : query_.terms).emplace_back(token.original);
        return take(1);
    }

    bool isTextInImages(std::size_t index) const {
        return tokens_.is(index, "text") && tokens_.is(index + 1, "in") &&
               tokens_.word(index + 2).isImageWord;
    }

    bool readTextInImages() {
        if (!isTextInImages(index_)) return false;
        query_.textInImages = true;
        if (tokens_.is(index_ + 2, "screenshots")) addKind(SearchKind::screenshot);
        return take(3);
    }

    /// How many tokens say that a phrase of the content follows.
    std::size_t contentIntroducer() const {
        if (word().introducesContent) return 1;
        if (tokens_.is(index_, "with") && tokens_.is(index_ + 1, "text") &&
            !isTextInImages(index_ + 1)) {
            return 2;
        }
        if (tokens_.is(index_, "that") &&
            tokens_.isAny(index_ + 1, {"contain", "contains", "say", "mention"})) {
            return 2;
        }
        return 0;
    }

    bool readContent() {
        const std::size_t introducer = contentIntroducer();
        if (introducer == 0) return false;
        std::size_t next = index_ + introducer;
        if (tokens_.is(next, "the") && next + 2 < tokens_.size() &&
            tokens_.isAny(next + 1, {"word", "words", "phrase", "text"})) {
            next += 2;
        } else if (tokens_.is(next, "word") && next + 1 < tokens_.size()) {
            next += 1;
        }
        if (const Token* token = tokens_.unquoted(next)) {
            query_.containing.emplace_back(token->original);
            ++next;
        } else {
            quotedContent_ = next;
        }
        index_ = next;
        return true;
    }

    /// "in taxes folder", before "taxes" can become anything else.
    bool readFolderName() {
        if (!tokens_.isAny(index_, {"in", "inside", "from"})) return false;
        const std::size_t article = tokens_.isAny(index_ + 1, {"my", "the"}) ? 1 : 0;
        auto place = QueryPlaces::matchFolderName(tokens_, index_ + 1 + article);
        if (!place) return false;
        query_.place = std::move(place->value);
        return take(1 + article + place->count);
    }

    bool readField() {
        const auto field = word().field;
        if (!field) return false;
        field_ = *field;
        if (query_.date) query_.date->field = *field;
        // These two are also the name of a folder, and say little about which date is meant.
        if (!tokens_.isAny(index_, {"download", "downloads"})) hasExplicitField_ = true;
        return readIntroduced() || take(1);
    }

    /// `skipped`: words before the size that go with it.
    bool readSize(std::size_t skipped) {
        auto size = QuerySizes::parseSize(tokens_, index_ + skipped);
        if (!size) return false;
        std::optional<SizeFilter> both;
        if (query_.size) both = QuerySizes::combined(*query_.size, size->value);
        query_.size = both ? std::move(*both) : std::move(size->value);
        return take(skipped + size->count);
    }

    bool readDate() {
        auto date = QueryDates::parseDate(tokens_, index_, now_, calendar_, locale_);
        if (!date) return false;
        date->value.field = field_;
        std::optional<DateFilter> both;
        if (query_.date) both = QueryDates::combined(*query_.date, date->value);
        query_.date = both ? std::move(*both) : std::move(date->value);
        return take(date->count);
    }

    /// A size, source, camera or place behind a word that leads to it: "from slack", "sent via my
    /// iphone", "on the desktop".
    bool readIntroduced() {
        const bool isArrival = tokens_.isAny(index_, {"downloaded", "sent"});
        const bool namesSource = isArrival || word().introducesSource;
        const bool isConnector =
            tokens_.isAny(index_, {"from", "in", "on", "at", "of", "during", "the"});
        if (!namesSource && !isConnector && !tokens_.is(index_, "inside")) return false;
        if (isConnector && readSize(1)) return true;
        std::size_t words = 1;
        if (isArrival && tokens_.isAny(index_ + words, {"from", "via", "on"})) ++words;
        // "sent pictures" are pictures, "sent from pictures" came out of the folder.
        const bool namesPlace = isArrival ? words == 2
                                          : word().introducesSource ||
                                                tokens_.isAny(index_, {"in", "on", "at", "inside"});
        const bool hasArticle = tokens_.isAny(index_ + words, {"my", "the"});
        if (readOrigin(words + (hasArticle ? 1 : 0), namesSource, namesPlace)) return true;
        return hasArticle && readPlace(words, namesPlace);
    }

    bool readOrigin(std::size_t skipped, bool namesSource, bool namesPlace) {
        const auto names =
            namesSource ? QueryOrigins::SourceNames::any : QueryOrigins::SourceNames::unambiguous;
        return readSource(skipped, names) || readCamera(skipped) || readPlace(skipped, namesPlace);
    }

    bool readSource(std::size_t skipped = 0,
                    QueryOrigins::SourceNames names = QueryOrigins::SourceNames::unambiguous) {
        auto source = QueryOrigins::matchSource(tokens_, index_ + skipped, names);
        if (!source) return false;
        query_.source = std::move(source->value);
        return take(skipped + source->count);
    }

    bool readCamera(std::size_t skipped = 0) {
        const auto camera = QueryOrigins::matchCamera(tokens_, index_ + skipped);
        if (!camera) return false;
        query_.camera = camera->value;
        return take(skipped + camera->count);
    }

    bool readPlace(std::size_t skipped = 0, bool isIntroduced = false) {
        auto place = QueryPlaces::matchPlace(tokens_, index_ + skipped, isIntroduced);
        if (!place) return false;
        query_.place = std::move(place->value);
        return take(skipped + place->count);
    }

    bool readKindPhrase() {
        const Token* second = tokens_.unquoted(index_ + 1);
        if (second == nullptr) return false;
        const auto* phrase = QueryVocabulary::findKindPhrase(tokens_[index_].text, second->text);
        if (phrase == nullptr) return false;
        addKind(phrase->kind);
        return take(2);
    }

    bool readExtension() {
        const auto extension = matchExtension(tokens_[index_]);
        if (!extension) return false;
        if (extensions_.insert(*extension).second) query_.extensions.emplace_back(*extension);
        return take(1);
    }

    bool readKind() {
        if (!word().kind) return false;
        addKind(*word().kind);
        return take(1);
    }

    void addKind(SearchKind kind) {
        auto& all = query_.kinds;
        if (std::find(all.begin(), all.end(), kind) == all.end()) all.push_back(kind);
    }

    const QueryTokens& tokens_;
    Date now_;
    const Calendar& calendar_;
    const Locale& locale_;
    SearchQuery query_;
    std::unordered_set<std::string_view> extensions_;  ///< Those of the query, to find repetitions.
    std::size_t index_ = 0;
    DateField field_ = DateField::modified;
    bool hasExplicitField_ = false;
    /// A quotation at this token is content, because of the words that were read before it.
    std::size_t quotedContent_ = static_cast<std::size_t>(-1);
};

}  // namespace

QueryParser::QueryParser(Date now, Calendar calendar, Locale locale)
    : now_(now), calendar_(std::move(calendar)), locale_(std::move(locale)) {}

QueryParser QueryParser::current() {
    const Locale locale = Locale::current();
    return {Platform::current().clock->now(), Calendar::current(locale), locale};
}

SearchQuery QueryParser::parse(std::string_view text) const {
    const QueryTokens tokens(text);
    return Walk(tokens, now_, calendar_, locale_).run(text);
}

std::optional<DateField> QueryParser::dateFieldWord(std::string_view word) {
    const QueryWord* known = QueryVocabulary::find(word);
    return known == nullptr ? std::nullopt : known->field;
}

std::optional<std::int64_t> QueryParser::parseNumber(std::string_view word) {
    return QueryNumbers::parseNumber(word);
}

}  // namespace tarn
