#include "TarnCore/index/MatchExpression.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "TarnCore/base/Text.h"

namespace tarn::MatchExpression {
namespace {

/// A place that is looked for in both spellings doubles the expression; those behind are looked for
/// as they were typed.
constexpr unsigned mostPlaces = 4;

constexpr std::string_view sharpS[] = {"ß", "ẞ"};

/// The length of an “ss” or “ß” at `at`; 0 where there is none.
std::size_t lengthOfDoubleS(std::string_view text, std::size_t at) {
    const std::string_view rest = text.substr(at);
    for (const std::string_view letter : sharpS)
        if (rest.starts_with(letter)) return letter.size();
    const auto isS = [](char c) { return c == 's' || c == 'S'; };
    return rest.size() >= 2 && isS(rest[0]) && isS(rest[1]) ? 2 : 0;
}

unsigned countDoubleS(std::string_view text) {
    unsigned count = 0;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = lengthOfDoubleS(text, at);
        count += length > 0;
        at += std::max<std::size_t>(length, 1);
    }
    return count;
}

/// Each of the first places is spelled as its bit of `spelling` says, and counted in `place`.
void appendString(std::string& out, std::string_view phrase, unsigned spelling, unsigned& place) {
    out += '"';
    for (std::size_t at = 0; at < phrase.size();) {
        const std::size_t length = lengthOfDoubleS(phrase, at);
        if (length > 0) {
            if (place < mostPlaces)
                out += (spelling >> place & 1) != 0 ? sharpS[0] : std::string_view("ss");
            else
                out += phrase.substr(at, length);
            ++place;
            at += length;
            continue;
        }
        const char character = phrase[at++];
        if (character == '"') out += '"';
        out += character == '\0' ? ' ' : character;  // An expression ends at a NUL.
    }
    out += '"';
}

}  // namespace

std::string of(const std::vector<std::string>& phrases, bool lastWordIsPrefix) {
    std::vector<std::string> sanitized;
    unsigned places = 0;
    for (const std::string& phrase : phrases) {
        sanitized.push_back(Text::sanitized(phrase));
        places += countDoubleS(sanitized.back());
    }
    if (sanitized.empty()) return R"("")";
    // Strings side by side are joined by an AND that leaves out those without a token, which an
    // AND that is written does not. It also binds tighter than an OR.
    std::string expression;
    for (unsigned spelling = 0; spelling < 1U << std::min(places, mostPlaces); ++spelling) {
        if (spelling > 0) expression += " OR ";
        unsigned place = 0;
        for (const std::string& phrase : sanitized) {
            if (&phrase != &sanitized.front()) expression += ' ';
            appendString(expression, phrase, spelling, place);
        }
        if (lastWordIsPrefix) expression += '*';
    }
    return expression;
}

}  // namespace tarn::MatchExpression
