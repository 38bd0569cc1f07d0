#include "TarnCore/search/QueryTokens.h"

#include "TarnCore/base/Text.h"
#include "TarnCore/search/QueryVocabulary.h"

namespace tarn {
namespace {

constexpr char32_t leftDouble = U'“';
constexpr char32_t rightDouble = U'”';
constexpr char32_t leftSingle = U'‘';
constexpr char32_t rightSingle = U'’';

bool opensAnywhere(char32_t character) {
    return character == U'"' || character == leftDouble || character == rightDouble ||
           character == leftSingle;
}

bool closes(char32_t character, char32_t opening) {
    return character == opening || (opening == leftDouble && character == rightDouble) ||
           (opening == leftSingle && character == rightSingle);
}

constexpr std::string_view punctuation = ",;!?()[]{}";

constexpr std::string_view possessives[] = {"'s", "’s"};
constexpr std::size_t shortestPossessive = 4;  // characters, so that "x's" stays whole

std::string_view withoutPossessive(std::string_view text) {
    for (const std::string_view ending : possessives) {
        if (text.ends_with(ending) && Text::length(text) >= shortestPossessive) {
            return text.substr(0, text.size() - ending.size());
        }
    }
    return text;
}

const QueryWord unknownWord;

}  // namespace

QueryTokens::QueryTokens(std::string_view text) : text_(text), lower_(Text::lowercasedASCII(text)) {
    constexpr std::size_t none = std::string::npos;
    std::size_t wordStart = none;
    std::size_t quotationStart = none;
    char32_t opening = 0;
    for (std::size_t next = 0; next < text_.size();) {
        const std::size_t here = next;
        const char32_t character = Text::nextCharacter(text_, next);
        if (quotationStart != none) {
            if (!closes(character, opening)) continue;
            addQuotation(quotationStart, here);
            quotationStart = none;
        } else if (opensAnywhere(character) || (character == U'\'' && wordStart == none)) {
            if (wordStart != none) addWord(wordStart, here);
            wordStart = none;
            opening = character;
            quotationStart = next;
        } else if (Text::isSpace(character)) {
            if (wordStart != none) addWord(wordStart, here);
            wordStart = none;
        } else if (wordStart == none) {
            wordStart = here;
        }
    }
    if (wordStart != none) addWord(wordStart, text_.size());
    if (quotationStart != none) addQuotation(quotationStart, text_.size());
}

std::string_view QueryTokens::lowered(std::size_t from, std::size_t size) {
    const std::string_view ascii = std::string_view(lower_).substr(from, size);
    if (Text::isASCII(ascii)) return ascii;
    return folded_.emplace_back(Text::lowercased(std::string_view(text_).substr(from, size)));
}

void QueryTokens::addQuotation(std::size_t from, std::size_t to) {
    if (from == to) return;
    const std::string_view original = std::string_view(text_).substr(from, to - from);
    tokens_.push_back({lowered(from, to - from), original, true, nullptr});
}

void QueryTokens::addWord(std::size_t from, std::size_t to) {
    while (from < to && punctuation.find(text_[from]) != punctuation.npos) ++from;
    while (to > from && punctuation.find(text_[to - 1]) != punctuation.npos) --to;
    if (from == to) return;
    const std::string_view original = std::string_view(text_).substr(from, to - from);
    std::string_view text = lowered(from, to - from);
    if (text.size() >= 2 && text.ends_with('.') && !text.starts_with('.')) text.remove_suffix(1);
    text = withoutPossessive(text);
    tokens_.push_back({text, original, false, QueryVocabulary::find(text)});
}

const QueryWord& QueryTokens::word(std::size_t index) const {
    if (index >= tokens_.size() || tokens_[index].word == nullptr) return unknownWord;
    return *tokens_[index].word;
}

}  // namespace tarn
