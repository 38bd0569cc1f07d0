#include "TarnCore/search/PhraseFinder.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "TarnCore/base/Text.h"
#include "TarnCore/search/CharacterFolding.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tarn {
namespace {

using CharacterFolding::Folded;
using CharacterFolding::isNonASCII;
using CharacterFolding::nextNonASCII;

/// Folded text that is gathered before it is searched.
constexpr std::size_t foldedAtOnce = 64 << 10;

/// How common a folded byte is in texts and source code, roughly: the more, the higher.
int frequency(char c) {
    constexpr std::string_view commonFirst = "etaoinsrhldcumfpgwybv.,0-k1x\"2'()_;:j=/z3q45";
    const std::size_t place = commonFirst.find(c);
    return place == commonFirst.npos ? 0 : static_cast<int>(commonFirst.size() - place);
}

std::size_t pair(char first, char second) {
    return static_cast<std::size_t>(static_cast<unsigned char>(first)) << 8 |
           static_cast<unsigned char>(second);
}

bool isLetter(char c) { return c >= 'a' && c <= 'z'; }

/// Of a byte of the text, for a comparison with a folded letter; other bytes are compared as
/// they stand.
char caseBit(char folded) { return isLetter(folded) ? '\x20' : '\0'; }

bool matches(char c, char folded) { return static_cast<char>(c | caseBit(folded)) == folded; }

}  // namespace

PhraseFinder::PhraseFinder(std::string_view phrase, Gaps gaps) : gaps_(gaps) {
    for (int i = 0; i < 0x80; ++i) {
        const auto c = static_cast<char>(i);
        isGap_[static_cast<std::size_t>(i)] = gaps == Gaps::blanks
                                                  ? CharacterFolding::isASCIIBlank(c)
                                                  : !CharacterFolding::isASCIIWordCharacter(c);
    }
    bool afterGap = true;
    for (std::size_t i = 0; i < phrase.size();) i = fold(phrase, i, afterGap, phrase_);
    if (phrase_.ends_with(' ')) phrase_.pop_back();
    isASCII_ = Text::isASCII(phrase_);
    for (const char c : phrase_) bytes_.set(static_cast<unsigned char>(c));
    for (std::size_t i = 1; i < phrase_.size(); ++i) pairs_.set(pair(phrase_[i - 1], phrase_[i]));
    if (isASCII_ && !phrase_.empty()) chooseBytes();
}

void PhraseFinder::chooseBytes() {
    int best = -1;
    for (std::size_t begin = 0; begin < phrase_.size();) {
        const std::size_t end = std::min(phrase_.find(' ', begin), phrase_.size());
        const std::size_t distance = end - begin > 1 ? 1 : 0;
        for (std::size_t i = begin; i + distance < end; ++i) {
            // A single byte says as little as one with the commonest beside it.
            const int score = frequency(phrase_[i]) +
                              (distance == 0 ? frequency('e') : frequency(phrase_[i + 1]));
            if (best >= 0 && score >= best) continue;
            best = score;
            first_ = i;
            second_ = i + distance;
        }
        begin = end + 1;
    }
}

bool PhraseFinder::occursIn(std::string_view text) const {
    bool isUTF8 = true;
    return occursIn(text, isUTF8);
}

bool PhraseFinder::occursIn(std::string_view text, bool& isUTF8) const {
    if (isASCII_ && !phrase_.empty()) return scan(text, isUTF8);
    if (!phrase_.empty() && findFolded(text, 0)) return true;
    isUTF8 = isUTF8 && Text::isValidUTF8(text);
    return false;
}

/// Every match of an ASCII phrase has the two letters in it: as they are, side by side; or one of
/// them in another character, such as “é” or “ﬁ”; or with a mark between them. Each of these is
/// looked for, and what stands around it compared.
bool PhraseFinder::scan(std::string_view text, bool& isUTF8) const {
    const std::size_t distance = second_ - first_;
    const char first = phrase_[first_];
    const char second = phrase_[second_];
    std::size_t read = 0;      // Characters beyond ASCII before it were looked at.
    std::size_t marksEnd = 0;  // Marks before it are part of what was compared.
    const auto occursAbout = [&](std::size_t at) {
        std::size_t next = at;
        const char32_t c = CharacterFolding::next(text, next);
        read = next;
        if (c == CharacterFolding::brokenByte) {
            isUTF8 = false;
            return false;
        }
        return at >= marksEnd && mayStandForLetters(text, at, next, c) &&
               occursNear(text, at, &marksEnd);
    };
    std::size_t at = 0;
#if defined(__SSE2__)
    const auto load = [&](std::size_t i) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + i));
    };
    const auto places = [](__m128i bytes) {
        return static_cast<unsigned>(_mm_movemask_epi8(bytes));
    };
    const __m128i firsts = _mm_set1_epi8(first);
    const __m128i seconds = _mm_set1_epi8(second);
    const __m128i firstCase = _mm_set1_epi8(caseBit(first));
    const __m128i secondCase = _mm_set1_epi8(caseBit(second));
    for (; at + distance + 16 <= text.size(); at += 16) {
        const __m128i block = load(at);
        const __m128i equal =
            _mm_and_si128(_mm_cmpeq_epi8(_mm_or_si128(block, firstCase), firsts),
                          _mm_cmpeq_epi8(_mm_or_si128(load(at + distance), secondCase), seconds));
        if (places(_mm_or_si128(equal, block)) == 0) continue;
        for (unsigned left = places(equal); left != 0; left &= left - 1)
            if (occursAt(text, at + static_cast<std::size_t>(std::countr_zero(left)))) return true;
        for (unsigned left = places(block); left != 0; left &= left - 1) {
            const std::size_t place = at + static_cast<std::size_t>(std::countr_zero(left));
            if (place >= read && occursAbout(place)) return true;
        }
    }
#endif
    for (; at < text.size(); ++at) {
        if (isNonASCII(text[at])) {
            if (at >= read && occursAbout(at)) return true;
        } else if (at + distance < text.size() && matches(text[at], first) &&
                   matches(text[at + distance], second) && occursAt(text, at)) {
            return true;
        }
    }
    return false;
}

/// With the two letters in place at `at`.
bool PhraseFinder::occursAt(std::string_view text, std::size_t at) const {
    bool metOther = false;
    return verify(text, 0, at, metOther) || (metOther && occursNear(text, at));
}

/// Whether one of the two letters can be in what a character folds to, or the character be a mark
/// between them.
bool PhraseFinder::mayStandForLetters(std::string_view text, std::size_t at, std::size_t next,
                                      char32_t character) const {
    const char first = phrase_[first_];
    const char second = phrase_[second_];
    const Folded& folded = CharacterFolding::fold(character);
    if (folded.length == 0) {
        const auto isOther = [&](char c, char letter) {
            return !isNonASCII(c) && !matches(c, letter);
        };
        return first_ != second_ && at > 0 && next < text.size() && !isOther(text[at - 1], first) &&
               !isOther(text[next], second);
    }
    const std::string_view bytes = folded.text();
    if (bytes.find(first) == bytes.npos && bytes.find(second) == bytes.npos) return false;
    return !folded.isSingle || fitsNeighbours(text, at, next, bytes);
}

/// Folds as much of the text around a character as a match through it can take. `marksEnd` gets the
/// end of the marks that follow, around which the same would be folded.
bool PhraseFinder::occursNear(std::string_view text, std::size_t at, std::size_t* marksEnd) const {
    thread_local std::string folded;
    folded.clear();
    bool afterGap = false;
    std::size_t i = reachBack(text, at);
    while (i < at) i = fold(text, i, afterGap, folded);
    const std::size_t before = folded.size();
    const std::size_t most = before + Folded::longest + phrase_.size() - 1;
    while (i < text.size() && folded.size() < most) {
        i = fold(text, i, afterGap, folded);
        if (marksEnd && folded.size() == before) *marksEnd = i;
    }
    return folded.find(phrase_) != folded.npos;
}

/// As far back from `at` as a match could begin that reaches to it.
std::size_t PhraseFinder::reachBack(std::string_view text, std::size_t at) const {
    bool inGap = false;
    for (std::size_t left = phrase_.size() - 1; left > 0 && at > 0;) {
        const std::size_t start = CharacterFolding::startOfLast(text, at);
        std::size_t next = start;
        const char32_t c = CharacterFolding::next(text, next);
        const bool isBroken = c == CharacterFolding::brokenByte;
        const Folded& character = CharacterFolding::fold(c);
        if (isBroken || character.length > 0) {
            const bool wasInGap = inGap;
            inGap = c < 0x80                ? isGap(text[start])
                    : gaps_ == Gaps::blanks ? !isBroken && character.isBlank
                                            : isBroken || !character.isWordCharacter;
            const std::size_t length = isBroken ? 1 : inGap ? 1 : character.length;
            if (!inGap || !wasInGap) left -= std::min(left, length);
        }
        at = start;
    }
    return at;
}

std::optional<TextRange> PhraseFinder::find(std::string_view text, std::size_t from) const {
    if (phrase_.empty() || from >= text.size()) return std::nullopt;
    auto found = isASCII_ ? findASCII(text, from) : std::nullopt;
    // What begins before it also ends before it.
    if (auto earlier = findFolded(found ? text.substr(0, found->end) : text, from)) found = earlier;
    if (!found) return std::nullopt;
    for (std::size_t next = found->end; next < text.size() && isNonASCII(text[next]);) {
        const char32_t c = CharacterFolding::next(text, next);
        if (c == CharacterFolding::brokenByte || CharacterFolding::fold(c).length != 0) break;
        found->end = next;
    }
    return found;
}

/// Where the bytes that were looked for are in place: the rest of the phrase around them, in ASCII.
/// `metOther` becomes true when something else stands where it would go on.
std::optional<TextRange> PhraseFinder::verify(std::string_view text, std::size_t from,
                                              std::size_t at, bool& metOther) const {
    const auto fails = [&](char c) {
        metOther = metOther || isNonASCII(c);
        return std::nullopt;
    };
    std::size_t end = at;
    for (std::size_t i = first_; i < phrase_.size(); ++i) {
        if (end == text.size()) return std::nullopt;
        if (phrase_[i] == ' ') {
            if (!isGap(text[end])) return fails(text[end]);
            while (end < text.size() && isGap(text[end])) ++end;
        } else if (!matches(text[end++], phrase_[i])) {
            return fails(text[end - 1]);
        }
    }
    std::size_t begin = at;
    for (std::size_t i = first_; i-- > 0;) {
        if (begin == from) return std::nullopt;
        if (phrase_[i] == ' ') {
            if (!isGap(text[begin - 1])) return fails(text[begin - 1]);
            while (begin > from && isGap(text[begin - 1])) --begin;
        } else if (!matches(text[--begin], phrase_[i])) {
            return fails(text[begin]);
        }
    }
    return TextRange{begin, end};
}

std::optional<TextRange> PhraseFinder::findASCII(std::string_view text, std::size_t from) const {
    const std::size_t distance = second_ - first_;
    const char first = phrase_[first_];
    const char second = phrase_[second_];
    bool metOther = false;
    std::size_t at = from;
#if defined(__SSE2__)
    const auto load = [&](std::size_t i) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text.data() + i));
    };
    const __m128i firsts = _mm_set1_epi8(first);
    const __m128i seconds = _mm_set1_epi8(second);
    const __m128i firstCase = _mm_set1_epi8(caseBit(first));
    const __m128i secondCase = _mm_set1_epi8(caseBit(second));
    for (; at + distance + 16 <= text.size(); at += 16) {
        const __m128i equal =
            _mm_and_si128(_mm_cmpeq_epi8(_mm_or_si128(load(at), firstCase), firsts),
                          _mm_cmpeq_epi8(_mm_or_si128(load(at + distance), secondCase), seconds));
        for (auto places = static_cast<unsigned>(_mm_movemask_epi8(equal)); places != 0;
             places &= places - 1) {
            const auto place = static_cast<std::size_t>(std::countr_zero(places));
            if (auto found = verify(text, from, at + place, metOther)) return found;
        }
    }
#endif
    for (; at + distance < text.size(); ++at) {
        if (!matches(text[at], first) || !matches(text[at + distance], second)) continue;
        if (auto found = verify(text, from, at, metOther)) return found;
    }
    return std::nullopt;
}

/// Appends the folded form of the character at `at`, and returns where the next one is.
std::size_t PhraseFinder::fold(std::string_view text, std::size_t at, bool& afterGap,
                               std::string& out) const {
    const char byte = text[at];
    if (!isNonASCII(byte)) {
        const bool gap = isGap(byte);
        if (!gap)
            out += CharacterFolding::lowerASCII(byte);
        else if (!afterGap)
            out += ' ';
        afterGap = gap;
        return at + 1;
    }
    std::size_t next = at;
    const char32_t c = CharacterFolding::next(text, next);
    const bool broken = c == CharacterFolding::brokenByte;
    const Folded& folded = CharacterFolding::fold(c);
    if (!broken && folded.length == 0) return next;
    const bool gap = gaps_ == Gaps::blanks ? folded.isBlank : broken || !folded.isWordCharacter;
    if (!gap) {
        if (broken)
            out += byte;
        else
            out += folded.text();
    } else if (!afterGap) {
        out += ' ';
    }
    afterGap = gap;
    return next;
}

/// Whether what the character folds to can be part of the phrase; `next` is where the next one is.
bool PhraseFinder::mayTakePart(std::string_view text, std::size_t at, std::size_t& next) const {
    next = at;
    const char32_t c = CharacterFolding::next(text, next);
    const auto isOfPhrase = [this](char byte) {
        return bytes_.test(static_cast<unsigned char>(byte));
    };
    if (c == CharacterFolding::brokenByte)
        return gaps_ == Gaps::blanks ? isOfPhrase(text[at]) : isOfPhrase(' ');
    const Folded& folded = CharacterFolding::fold(c);
    if (folded.length == 0) return true;
    if (gaps_ == Gaps::blanks ? folded.isBlank : !folded.isWordCharacter) return isOfPhrase(' ');
    const std::string_view bytes = folded.text();
    // “ﬁ” can be the end of a match by its second letter alone.
    if (!folded.isSingle) return std::any_of(bytes.begin(), bytes.end(), isOfPhrase);
    return std::all_of(bytes.begin(), bytes.end(), isOfPhrase) &&
           fitsNeighbours(text, at, next, bytes);
}

/// False when what stands beside a character, where that is ASCII, cannot be beside it in a match.
/// In texts full of accents this is what spares folding around each of them.
bool PhraseFinder::fitsNeighbours(std::string_view text, std::size_t at, std::size_t next,
                                  std::string_view folded) const {
    const auto asFolded = [this](char c) {
        return isGap(c) ? ' ' : CharacterFolding::lowerASCII(c);
    };
    if (folded.front() != phrase_.front()) {
        if (at == 0) return false;
        const char before = text[at - 1];
        if (!isNonASCII(before) && !pairs_.test(pair(asFolded(before), folded.front())))
            return false;
    }
    if (folded.back() != phrase_.back()) {
        if (next >= text.size()) return false;
        const char after = text[next];
        if (!isNonASCII(after) && !pairs_.test(pair(folded.back(), asFolded(after)))) return false;
    }
    return true;
}

/// As far back from `at` as a match could begin that reaches to it.
std::size_t PhraseFinder::segmentStart(std::string_view text, std::size_t from,
                                       std::size_t at) const {
    for (std::size_t left = phrase_.size() - 1; left > 0 && at > from; --left) {
        if (isNonASCII(text[at - 1])) break;  // It can take no part, or would have begun this one.
        if (isGap(text[--at]))
            while (at > from && isGap(text[at - 1])) --at;
    }
    return at;
}

/// Folds from a little before each character that may take part in a match until the phrase could
/// not reach back to it any more, and looks for the phrase in that.
std::optional<TextRange> PhraseFinder::findFolded(std::string_view text, std::size_t from) const {
    thread_local std::string folded;
    std::size_t at = from;
    while ((at = nextNonASCII(text, at)) < text.size()) {
        std::size_t next = 0;
        if (!mayTakePart(text, at, next)) {
            at = next;
            continue;
        }
        const std::size_t start = segmentStart(text, from, at);
        std::size_t dropped = 0;  // folded bytes of the segment that are searched already
        bool afterGap = false;
        folded.clear();
        for (std::size_t i = start; i < at;) i = fold(text, i, afterGap, folded);
        std::size_t wanted = 0;  // of folded bytes, for the phrase to reach back to the last one
        const auto search = [&]() -> std::optional<TextRange> {
            const std::size_t found = folded.find(phrase_);
            if (found == folded.npos) return std::nullopt;
            return sourceOf(text, start, dropped + found);
        };
        while (at < text.size()) {
            if (isNonASCII(text[at])) {
                if (!mayTakePart(text, at, next)) break;
                at = fold(text, at, afterGap, folded);
                wanted = folded.size() + phrase_.size() - 1;
            } else {
                if (folded.size() >= wanted) break;
                at = fold(text, at, afterGap, folded);
            }
            if (folded.size() < foldedAtOnce + phrase_.size()) continue;
            if (auto found = search()) return found;
            const std::size_t searched = folded.size() - (phrase_.size() - 1);
            folded.erase(0, searched);
            dropped += searched;
            wanted -= std::min(wanted, searched);
        }
        if (auto found = search()) return found;
    }
    return std::nullopt;
}

/// The part of the text whose folded form has the phrase, `offset` bytes behind that of `start`.
TextRange PhraseFinder::sourceOf(std::string_view text, std::size_t start,
                                 std::size_t offset) const {
    TextRange range{start, start};
    std::string folded;
    std::size_t length = 0;
    bool afterGap = false;
    for (std::size_t at = start; at < text.size() && length < offset + phrase_.size();) {
        folded.clear();
        const std::size_t next = fold(text, at, afterGap, folded);
        if (length <= offset && length + folded.size() > offset) range.begin = at;
        length += folded.size();
        range.end = at = next;
    }
    return range;
}

}  // namespace tarn
