#pragma once

#include <cstddef>
#include <deque>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

struct QueryWord;

/// A word of a query, or a phrase in quotation marks. Its views live as long as the QueryTokens
/// that it belongs to.
struct Token {
    std::string_view text;      ///< Lower case, without the punctuation around it and without 's.
    std::string_view original;  ///< As typed, without the punctuation around it.
    bool quoted = false;
    /// What the vocabulary knows about `text`; null for a quoted phrase and for unknown words.
    const QueryWord* word = nullptr;
};

/// The words of a query, from left to right.
///
/// ", “, ” and ‘ open a quotation wherever they stand; ' does so only at the beginning of a word,
/// so that "don't" stays one. A quotation runs to its closing mark or to the end of the text, and
/// is kept as typed. Other words end at white space and lose , ; ! ? and brackets around them, a
/// final dot ("screenshots.", but ".md" keeps its own) and a possessive ("mom's").
class QueryTokens {
public:
    /// Reads any bytes, in linear time. Keeps a copy of the text.
    explicit QueryTokens(std::string_view text);
    QueryTokens(const QueryTokens&) = delete;
    QueryTokens& operator=(const QueryTokens&) = delete;

    std::size_t size() const { return tokens_.size(); }
    const Token& operator[](std::size_t index) const { return tokens_[index]; }
    std::vector<Token>::const_iterator begin() const { return tokens_.begin(); }
    std::vector<Token>::const_iterator end() const { return tokens_.end(); }

    /// The token, when there is one and it is not a quotation; else null.
    const Token* unquoted(std::size_t index) const {
        return index < tokens_.size() && !tokens_[index].quoted ? &tokens_[index] : nullptr;
    }
    /// What the vocabulary knows about a token; an empty entry when it knows nothing.
    const QueryWord& word(std::size_t index) const;
    /// The token is this word, not a quotation.
    bool is(std::size_t index, std::string_view word) const {
        const Token* token = unquoted(index);
        return token != nullptr && token->text == word;
    }
    bool isAny(std::size_t index, std::initializer_list<std::string_view> words) const {
        const Token* token = unquoted(index);
        if (token == nullptr) return false;
        for (const std::string_view word : words) {
            if (token->text == word) return true;
        }
        return false;
    }

private:
    void addWord(std::size_t from, std::size_t to);
    void addQuotation(std::size_t from, std::size_t to);
    std::string_view lowered(std::size_t from, std::size_t size);

    std::string text_;
    std::string lower_;  ///< text_ with A to Z in lower case, byte for byte in the same places.
    std::deque<std::string> folded_;  ///< Lower case of words that are not ASCII.
    std::vector<Token> tokens_;
};

}  // namespace tarn
