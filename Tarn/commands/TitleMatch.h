#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace tarn {

/// How well a typed text fits a title. Lower in the enumeration is better; within one, fewer runs.
struct TitleMatch {
    enum class Rank {
        whole,        ///< All of the title.
        start,        ///< How the title starts.
        wordStarts,   ///< Starts of its words: “gtd” or “go desk” for “Go to Desktop”.
        subsequence,  ///< Its letters are there, in their order.
    };
    Rank rank = Rank::subsequence;
    /// Into how many pieces the text fell.
    int runs = 1;
    /// Half-open ranges of bytes of the title, in order: what to show in bold.
    std::vector<std::pair<std::size_t, std::size_t>> ranges;
};

/// A title made ready to be compared with what is typed, over and over. A value; any thread.
///
/// Upper and lower case and accents make no difference, nor do blanks in what is typed, except that
/// a word after one is looked for at the start of a word. The cost is the product of the lengths.
class MatchedTitle {
public:
    explicit MatchedTitle(std::string_view title);

    /// Absent when the title does not have the letters in that order. An empty text fits all.
    std::optional<TitleMatch> match(std::string_view typed) const;

private:
    std::optional<TitleMatch> align(const std::vector<char32_t>& letters,
                                    const std::vector<bool>& isWordStart, bool atWordsOnly) const;

    struct Letter {
        char32_t folded;
        std::size_t begin;  ///< Bytes of the title that it stands for.
        std::size_t end;
        bool isWordStart;
    };
    std::vector<Letter> letters_;  ///< Without blanks.
};

}  // namespace tarn
