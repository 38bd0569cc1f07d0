#include "Tarn/commands/TitleMatch.h"

#include <algorithm>
#include <limits>
#include <string>

#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

constexpr int impossible = std::numeric_limits<int>::max() / 2;

/// The letters of a text as they are compared, without blanks.
struct Typed {
    std::vector<char32_t> letters;
    std::vector<bool> isWordStart;
};

Typed prepared(std::string_view text) {
    const std::string folded = Text::folded(text);
    Typed typed;
    bool isAfterBlank = false;
    for (std::size_t i = 0; i < folded.size();) {
        const char32_t letter = Text::nextCharacter(folded, i);
        if (Text::isSpace(letter)) {
            isAfterBlank = true;
            continue;
        }
        typed.letters.push_back(letter);
        typed.isWordStart.push_back(isAfterBlank);
        isAfterBlank = false;
    }
    return typed;
}

bool isSeparator(char32_t letter) {
    return Text::isSpace(letter) || letter == U'/' || letter == U'-' || letter == U'_' ||
           letter == U'.' || letter == U'(';
}

}  // namespace

MatchedTitle::MatchedTitle(std::string_view title) {
    bool isStart = true;
    for (std::size_t i = 0; i < title.size();) {
        const std::size_t begin = i;
        const char32_t letter = Text::nextCharacter(title, i);
        if (Text::isSpace(letter)) {
            isStart = true;
            continue;
        }
        // One letter may fold into several ("ß"), or into none (a combining accent).
        const std::string folded = Text::folded(title.substr(begin, i - begin));
        for (std::size_t j = 0; j < folded.size();) {
            letters_.push_back({Text::nextCharacter(folded, j), begin, i, isStart});
            isStart = false;
        }
        isStart = isStart || isSeparator(letter);
    }
}

std::optional<TitleMatch> MatchedTitle::match(std::string_view typed) const {
    const Typed text = prepared(typed);
    if (text.letters.empty()) return TitleMatch{TitleMatch::Rank::start, 0, {}};
    if (text.letters.size() > letters_.size()) return std::nullopt;
    if (std::equal(text.letters.begin(), text.letters.end(), letters_.begin(),
                   [](char32_t one, const Letter& other) { return one == other.folded; })) {
        const bool isWhole = text.letters.size() == letters_.size();
        return TitleMatch{isWhole ? TitleMatch::Rank::whole : TitleMatch::Rank::start,
                          1,
                          {{letters_.front().begin, letters_[text.letters.size() - 1].end}}};
    }
    if (auto found = align(text.letters, text.isWordStart, true)) return found;
    return align(text.letters, text.isWordStart, false);
}

/// Finds the alignment with the fewest runs, and among these the one that begins first.
std::optional<TitleMatch> MatchedTitle::align(const std::vector<char32_t>& letters,
                                              const std::vector<bool>& isWordStart,
                                              bool atWordsOnly) const {
    const std::size_t rows = letters.size();
    const std::size_t columns = letters_.size();
    // runs[i][j]: the fewest runs that the letters from i on need when i stands at j.
    std::vector<int> runs(rows * columns, impossible);
    const auto cell = [&](std::size_t i, std::size_t j) -> int& { return runs[i * columns + j]; };
    const auto mayStartRun = [&](std::size_t j) { return !atWordsOnly || letters_[j].isWordStart; };
    for (std::size_t i = rows; i-- > 0;) {
        int bestLater = impossible;  // Of the next letter as the start of a run behind j.
        for (std::size_t j = columns; j-- > 0;) {
            if (letters_[j].folded == letters[i]) {
                int best = i + 1 == rows ? 1 : impossible;
                if (i + 1 < rows) {
                    const bool staysTogether =
                        j + 1 < columns && (!isWordStart[i + 1] || letters_[j + 1].isWordStart);
                    if (staysTogether) best = cell(i + 1, j + 1);
                    best = std::min(best, bestLater + 1);
                }
                if (best < impossible) cell(i, j) = best;
            }
            if (i + 1 < rows && mayStartRun(j)) bestLater = std::min(bestLater, cell(i + 1, j));
        }
    }
    std::size_t at = columns;
    int fewest = impossible;
    for (std::size_t j = 0; j < columns; ++j) {
        if (mayStartRun(j) && cell(0, j) < fewest) {
            fewest = cell(0, j);
            at = j;
        }
    }
    if (at == columns) return std::nullopt;

    TitleMatch match{
        atWordsOnly ? TitleMatch::Rank::wordStarts : TitleMatch::Rank::subsequence, fewest, {}};
    match.ranges.emplace_back(letters_[at].begin, letters_[at].end);
    for (std::size_t i = 0; i + 1 < rows; ++i) {
        const int left = cell(i, at);
        const bool staysTogether = at + 1 < columns && cell(i + 1, at + 1) == left &&
                                   (!isWordStart[i + 1] || letters_[at + 1].isWordStart);
        if (staysTogether) {
            ++at;
            match.ranges.back().second = letters_[at].end;
            continue;
        }
        do ++at;
        while (!mayStartRun(at) || cell(i + 1, at) != left - 1);
        match.ranges.emplace_back(letters_[at].begin, letters_[at].end);
    }
    return match;
}

}  // namespace tarn
