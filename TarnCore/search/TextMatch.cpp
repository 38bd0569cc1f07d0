#include "TarnCore/search/TextMatch.h"

#include <algorithm>
#include <optional>

#include "TarnCore/base/Text.h"
#include "TarnCore/search/CharacterFolding.h"

namespace tarn {
namespace {

constexpr std::string_view ellipsis = "…";
/// Characters before the place; what follows tells more.
constexpr std::size_t before = 40;
/// Of a phrase that is longer than a line.
constexpr std::size_t mostOfPhrase = 200;
/// A cut is moved as far as this to fall between two words.
constexpr std::size_t longestTornWord = 24;

bool isControl(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

/// Puts a text on one line, character by character.
class Line {
public:
    void add(char32_t c) {
        if (c == CharacterFolding::brokenByte) c = 0xFFFD;
        if (Text::isSpace(c)) {
            isGapDue_ = !text.empty();
            return;
        }
        if (isControl(c)) return;
        if (isGapDue_) {
            text += ' ';
            ++characters;
        }
        isGapDue_ = false;
        Text::append(text, c);
        ++characters;
    }

    std::string text;
    std::size_t characters = 0;

private:
    bool isGapDue_ = false;
};

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

char32_t characterAt(std::string_view text, std::size_t at) {
    return CharacterFolding::next(text, at);
}

/// Where the character before `at` begins.
std::size_t previous(std::string_view text, std::size_t at) {
    std::size_t start = at - 1;
    while (start > 0 && at - start < 4 && isContinuation(text[start])) --start;
    std::size_t end = start;
    CharacterFolding::next(text, end);
    return end == at ? start : at - 1;
}

bool isMark(char32_t c) {
    return c >= 0x80 && c != CharacterFolding::brokenByte && CharacterFolding::fold(c).length == 0;
}

/// Where a line begins that shows what is at `place`: between two words, if there is a place to
/// cut.
std::size_t lineStart(std::string_view text, std::size_t place) {
    std::size_t start = place;
    std::size_t count = 0;
    bool inGap = false;
    std::optional<std::size_t> wordStart;
    while (start > 0 && count < before) {
        const std::size_t at = previous(text, start);
        const bool gap = Text::isSpace(characterAt(text, at));
        if (gap && !inGap) wordStart = start;
        if (!gap || !inGap) ++count;
        inGap = gap;
        start = at;
    }
    if (start == 0) return 0;
    if (wordStart && *wordStart - start <= longestTornWord) return *wordStart;
    while (start < place && isMark(characterAt(text, start))) CharacterFolding::next(text, start);
    return start;
}

bool hasMore(std::string_view text) { return !Text::trimmed(text).empty(); }

/// The text from `start` on, to the end of the line; `place` is in it.
TextMatch lineFrom(std::string_view text, std::size_t start, TextRange place) {
    Line line;
    TextMatch match;
    TextRange shown;
    std::size_t at = start;
    std::optional<std::size_t> cut;  // behind the last whole word, in the text
    std::size_t cutLength = 0;       // and in the line
    while (at < text.size()) {
        const std::size_t here = at;
        if (here == place.begin) shown.begin = line.text.size();
        const char32_t c = CharacterFolding::next(text, at);
        const bool inPlace = here >= place.begin && here < place.end;
        const bool isFull = line.characters >= Snippet::length &&
                            (!inPlace || line.characters >= before + mostOfPhrase);
        if (isFull && !isMark(c)) {
            at = here;
            break;
        }
        if (Text::isSpace(c) && here >= place.end) {
            cut = here;
            cutLength = line.text.size();
        }
        line.add(c);
        if (here < place.end) shown.end = line.text.size();
    }
    const bool isCut = hasMore(text.substr(at));
    if (isCut && cut && !Text::isSpace(characterAt(text, at)) &&
        line.text.size() - cutLength <= longestTornWord * 2)
        line.text.resize(cutLength);
    const bool begins = hasMore(text.substr(0, start));
    match.snippet = (begins ? std::string(ellipsis) : "") + line.text + (isCut ? "…" : "");
    if (place.end > place.begin) {
        // The blank before the place is not part of it.
        const std::size_t moved = begins ? ellipsis.size() : 0;
        if (shown.begin < shown.end && line.text[shown.begin] == ' ') ++shown.begin;
        match.ranges.push_back({shown.begin + moved, shown.end + moved});
    }
    return match;
}

/// In order, and those that touch made one.
void join(std::vector<TextRange>& ranges) {
    std::ranges::sort(ranges, {}, &TextRange::begin);
    std::vector<TextRange> joined;
    for (const TextRange& range : ranges) {
        if (!joined.empty() && range.begin <= joined.back().end)
            joined.back().end = std::max(joined.back().end, range.end);
        else
            joined.push_back(range);
    }
    ranges = std::move(joined);
}

}  // namespace

std::string_view TextMatch::rawValue(Reason reason) {
    switch (reason) {
        case Reason::text:
            return "text";
        case Reason::textInImage:
            return "textInImage";
        case Reason::name:
            break;
    }
    return "name";
}

TextMatch Snippet::of(std::string_view text, std::span<const PhraseFinder> phrases) {
    TextRange place;
    if (!phrases.empty()) {
        std::optional<TextRange> first;
        for (const PhraseFinder& phrase : phrases) {
            const auto found = phrase.find(text);
            if (found && (!first || found->begin < first->begin)) first = found;
        }
        if (!first) return {};
        place = *first;
    }
    TextMatch match = lineFrom(text, lineStart(text, place.begin), place);
    for (const PhraseFinder& phrase : phrases)
        for (auto found = phrase.find(match.snippet); found;
             found = phrase.find(match.snippet, found->end))
            match.ranges.push_back(*found);
    join(match.ranges);
    return match;
}

}  // namespace tarn
