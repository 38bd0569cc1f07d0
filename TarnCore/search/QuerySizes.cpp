#include "TarnCore/search/QuerySizes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

#include "TarnCore/files/Format.h"
#include "TarnCore/search/QueryVocabulary.h"

namespace tarn::QuerySizes {
namespace {

struct Unit {
    std::string_view name;
    double bytes;
};

constexpr double kibi = 1024;
constexpr Unit units[] = {
    {"b", 1},
    {"byte", 1},
    {"bytes", 1},
    {"k", 1e3},
    {"kb", 1e3},
    {"kilobyte", 1e3},
    {"kilobytes", 1e3},
    {"kib", kibi},
    {"kibibyte", kibi},
    {"kibibytes", kibi},
    {"m", 1e6},
    {"mb", 1e6},
    {"meg", 1e6},
    {"megs", 1e6},
    {"megabyte", 1e6},
    {"megabytes", 1e6},
    {"mib", kibi* kibi},
    {"mebibyte", kibi* kibi},
    {"mebibytes", kibi* kibi},
    {"g", 1e9},
    {"gb", 1e9},
    {"gig", 1e9},
    {"gigs", 1e9},
    {"gigabyte", 1e9},
    {"gigabytes", 1e9},
    {"gib", kibi* kibi* kibi},
    {"gibibyte", kibi* kibi* kibi},
    {"gibibytes", kibi* kibi* kibi},
    {"t", 1e12},
    {"tb", 1e12},
    {"terabyte", 1e12},
    {"terabytes", 1e12},
    {"tib", kibi* kibi* kibi* kibi},
    {"tebibyte", kibi* kibi* kibi* kibi},
    {"tebibytes", kibi* kibi* kibi* kibi},
    {"pb", 1e15},
    {"petabyte", 1e15},
    {"petabytes", 1e15},
    {"pib", kibi* kibi* kibi* kibi* kibi},
};

/// Up to three words; the rest are empty.
using Phrase = std::array<std::string_view, 3>;

constexpr Phrase lowerBounds[] = {
    {"over"},
    {"above"},
    {"more", "than"},
    {"larger", "than"},
    {"bigger", "than"},
    {"greater", "than"},
    {"at", "least"},
    {">"},
    {">="},
    {"≥"},
    {"min"},
    {"minimum"},
    {"exceeding"},
    {"heavier", "than"},
};
constexpr Phrase upperBounds[] = {
    {"under"},
    {"below"},
    {"less", "than"},
    {"smaller", "than"},
    {"at", "most"},
    {"<"},
    {"<="},
    {"≤"},
    {"max"},
    {"maximum"},
    {"up", "to"},
    {"lighter", "than"},
    {"no", "more", "than"},
    {"no", "bigger", "than"},
    {"no", "larger", "than"},
};

enum class Bound { lower, upper };

SizeFilter filter(Bound bound, std::int64_t bytes) {
    if (bound == Bound::lower) return {bytes, std::nullopt, "Over " + Format::bytes(bytes)};
    return {std::nullopt, bytes, "Under " + Format::bytes(bytes)};
}

SizeFilter rangeFilter(std::int64_t a, std::int64_t b) {
    const auto [least, most] = std::minmax(a, b);
    std::string label = Format::bytes(least);
    if (least != most) label += " to " + Format::bytes(most);
    return {least, most, std::move(label)};
}

/// A number, perhaps with its unit.
struct Amount {
    double number = 0;
    std::optional<double> unit;
    std::size_t count = 0;  ///< Tokens.

    std::int64_t bytes(double defaultUnit) const {
        constexpr double limit = 9223372036854775808.0;  // 2 to the 63rd
        const double bytes = std::round(number * unit.value_or(defaultUnit));
        if (!(bytes < limit)) return std::numeric_limits<std::int64_t>::max();
        return static_cast<std::int64_t>(bytes);
    }
};

std::optional<double> findUnit(std::string_view name) {
    for (const Unit& unit : units) {
        if (unit.name == name) return unit.bytes;
    }
    return std::nullopt;
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

std::size_t skipDigits(std::string_view text, std::size_t from) {
    while (from < text.size() && isDigit(text[from])) ++from;
    return from;
}

/// Digits at the beginning of a text, as a number that from_chars reads.
struct Digits {
    std::string number;
    std::size_t length = 0;  ///< In the text.
};

/// "500", "1.5", "1,500" and "1,5": a comma before three digits groups them, any other one is a
/// decimal comma.
Digits readDigits(std::string_view text) {
    std::size_t end = skipDigits(text, 0);
    Digits digits{std::string(text.substr(0, end)), end};
    if (end == 0) return digits;
    const auto hasGroup = [&text](std::size_t at) {
        return at < text.size() && text[at] == ',' && skipDigits(text, at + 1) == at + 4;
    };
    const bool isGrouped = end <= 3 && hasGroup(end);
    for (; isGrouped && hasGroup(end); end += 4) digits.number += text.substr(end + 1, 3);
    const bool isPoint =
        end < text.size() && (text[end] == '.' || (text[end] == ',' && !isGrouped));
    if (isPoint && skipDigits(text, end + 1) > end + 1) {
        const std::size_t fraction = end + 1;
        end = skipDigits(text, fraction);
        digits.number += '.';
        digits.number += text.substr(fraction, end - fraction);
    }
    digits.length = end;
    return digits;
}

/// A number, perhaps with its unit right behind it.
std::optional<Amount> readFused(std::string_view text) {
    const auto [number, length] = readDigits(text);
    if (length == 0) return std::nullopt;
    Amount amount;
    amount.count = 1;
    const auto error =
        std::from_chars(number.data(), number.data() + number.size(), amount.number).ec;
    if (error == std::errc::result_out_of_range) {
        // Too large or too small for a double: the digits before the point tell.
        const bool isSmall =
            number.find_first_not_of('0') >= std::min(number.find('.'), number.size());
        amount.number = isSmall ? 0 : std::numeric_limits<double>::infinity();
    }
    if (length == text.size()) return amount;
    amount.unit = findUnit(text.substr(length));
    if (!amount.unit) return std::nullopt;
    return amount;
}

std::string_view withoutPlus(std::string_view text) {
    return text.ends_with('+') ? text.substr(0, text.size() - 1) : text;
}

/// Reads "500mb", "500 mb", "500" and "a gigabyte", whose unit may have a "+" behind it.
std::optional<Amount> readAmount(const QueryTokens& tokens, std::size_t index) {
    const Token* token = tokens.unquoted(index);
    if (token == nullptr) return std::nullopt;
    std::optional<Amount> amount = readFused(withoutPlus(token->text));
    if (!amount && tokens.word(index).number) {
        amount = Amount{static_cast<double>(*tokens.word(index).number), std::nullopt, 1};
    }
    if (!amount || amount->unit) return amount;
    if (const Token* next = tokens.unquoted(index + 1)) {
        amount->unit = findUnit(withoutPlus(next->text));
        if (amount->unit) amount->count = 2;
    }
    return amount;
}

/// How many tokens match a phrase that begins at `index`; 0 when they do not.
std::size_t match(const QueryTokens& tokens, std::size_t index, const Phrase& phrase) {
    std::size_t count = 0;
    for (const std::string_view word : phrase) {
        if (word.empty()) break;
        if (!tokens.is(index + count, word)) return 0;
        ++count;
    }
    return count;
}

struct BoundWords {
    Bound bound;
    std::size_t count;
};

std::optional<BoundWords> readBound(const QueryTokens& tokens, std::size_t index) {
    for (const Phrase& phrase : lowerBounds) {
        if (const auto count = match(tokens, index, phrase)) return BoundWords{Bound::lower, count};
    }
    for (const Phrase& phrase : upperBounds) {
        if (const auto count = match(tokens, index, phrase)) return BoundWords{Bound::upper, count};
    }
    return std::nullopt;
}

/// "size", "sized" or "in size" behind an amount.
std::size_t sizeWords(const QueryTokens& tokens, std::size_t index) {
    if (tokens.isAny(index, {"size", "sized"})) return 1;
    return tokens.is(index, "in") && tokens.is(index + 1, "size") ? 2 : 0;
}

using SizeReading = std::optional<Reading<SizeFilter>>;

SizeReading readBounded(const QueryTokens& tokens, std::size_t index) {
    const auto words = readBound(tokens, index);
    if (!words) return std::nullopt;
    const auto amount = readAmount(tokens, index + words->count);
    if (!amount || !amount->unit) return std::nullopt;
    const std::size_t count = words->count + amount->count;
    return Reading<SizeFilter>{filter(words->bound, amount->bytes(1)),
                               count + sizeWords(tokens, index + count)};
}

/// ">5mb", "<= 2gb" with or without the blank behind the amount's number.
SizeReading readSigned(const QueryTokens& tokens, std::size_t index) {
    const Token* token = tokens.unquoted(index);
    if (token == nullptr) return std::nullopt;
    std::string_view text = token->text;
    std::optional<Bound> bound;
    for (const std::string_view sign : {">=", ">", "≥"}) {
        if (!bound && text.starts_with(sign)) {
            bound = Bound::lower;
            text.remove_prefix(sign.size());
        }
    }
    for (const std::string_view sign : {"<=", "<", "≤"}) {
        if (!bound && text.starts_with(sign)) {
            bound = Bound::upper;
            text.remove_prefix(sign.size());
        }
    }
    if (!bound) return std::nullopt;
    auto amount = readFused(text);
    if (!amount) return std::nullopt;
    if (!amount->unit) {
        if (const Token* next = tokens.unquoted(index + 1)) amount->unit = findUnit(next->text);
        amount->count = 2;
    }
    if (!amount->unit) return std::nullopt;
    return Reading<SizeFilter>{filter(*bound, amount->bytes(1)),
                               amount->count + sizeWords(tokens, index + amount->count)};
}

/// "between A and B", "from A to B", "A to B"; one of the two may leave its unit to the other.
SizeReading readRange(const QueryTokens& tokens, std::size_t index) {
    const bool isBetween = tokens.is(index, "between");
    std::size_t count = isBetween || tokens.is(index, "from") ? 1 : 0;
    const auto first = readAmount(tokens, index + count);
    if (!first) return std::nullopt;
    count += first->count;
    if (!tokens.isAny(index + count, {"to", "-", "–"}) &&
        !(isBetween && tokens.is(index + count, "and"))) {
        return std::nullopt;
    }
    const auto second = readAmount(tokens, index + count + 1);
    if (!second || (!first->unit && !second->unit)) return std::nullopt;
    count += 1 + second->count;
    return Reading<SizeFilter>{
        rangeFilter(first->bytes(second->unit.value_or(1)), second->bytes(first->unit.value_or(1))),
        count + sizeWords(tokens, index + count)};
}

/// "500mb+", "500 mb plus", "500 mb or more".
SizeReading readDirected(const QueryTokens& tokens, std::size_t index) {
    const Token* token = tokens.unquoted(index);
    if (token == nullptr || token->text.empty() || !isDigit(token->text.front())) {
        return std::nullopt;
    }
    const auto amount = readAmount(tokens, index);
    if (!amount || !amount->unit) return std::nullopt;
    std::size_t count = amount->count;
    std::optional<Bound> bound;
    if (tokens[index + count - 1].text.ends_with('+')) bound = Bound::lower;
    count += sizeWords(tokens, index + count);
    if (!bound && tokens.isAny(index + count, {"+", "plus"})) {
        bound = Bound::lower;
        count += 1;
    }
    if (!bound && tokens.is(index + count, "or")) {
        if (tokens.isAny(index + count + 1, {"more", "bigger", "larger", "above"})) {
            bound = Bound::lower;
        } else if (tokens.isAny(index + count + 1, {"less", "smaller", "under", "below"})) {
            bound = Bound::upper;
        }
        count += 2;
    }
    if (!bound) return std::nullopt;
    return Reading<SizeFilter>{filter(*bound, amount->bytes(1)),
                               count + sizeWords(tokens, index + count)};
}

SizeReading readNamed(const QueryTokens& tokens, std::size_t index) {
    const auto isLarge = [&tokens](std::size_t at) {
        return tokens.isAny(at, {"large", "big", "biggest", "largest"});
    };
    if (isLarge(index)) return Reading<SizeFilter>{SizeFilter::large(), 1};
    if (tokens.is(index, "very") && isLarge(index + 1)) {
        return Reading<SizeFilter>{SizeFilter::huge(), 2};
    }
    if (tokens.isAny(index, {"huge", "massive", "giant", "enormous"})) {
        return Reading<SizeFilter>{SizeFilter::huge(), 1};
    }
    if (tokens.isAny(index, {"small", "smaller", "smallest"})) {
        return Reading<SizeFilter>{SizeFilter::small(), 1};
    }
    if (tokens.is(index, "tiny")) return Reading<SizeFilter>{SizeFilter::tiny(), 1};
    if (tokens.isAny(index, {"empty", "zero-byte"})) {
        return Reading<SizeFilter>{SizeFilter::empty(), 1};
    }
    return std::nullopt;
}

SizeReading readAmounts(const QueryTokens& tokens, std::size_t index) {
    if (auto bounded = readBounded(tokens, index)) return bounded;
    if (auto bounded = readSigned(tokens, index)) return bounded;
    if (auto range = readRange(tokens, index)) return range;
    return readDirected(tokens, index);
}

}  // namespace

std::optional<Reading<SizeFilter>> parseSize(const QueryTokens& tokens, std::size_t index) {
    if (auto reading = readAmounts(tokens, index)) return reading;
    // "size over 5 mb" says no more than "over 5 mb".
    if (tokens.isAny(index, {"size", "sized"})) {
        auto reading = readAmounts(tokens, index + 1);
        if (reading) reading->count += 1;
        return reading;
    }
    return readNamed(tokens, index);
}

std::optional<SizeFilter> combined(const SizeFilter& first, const SizeFilter& second) {
    const bool firstIsLower = first.min && !first.max && second.max && !second.min;
    const bool firstIsUpper = first.max && !first.min && second.min && !second.max;
    if (!firstIsLower && !firstIsUpper) return std::nullopt;
    const std::int64_t least = firstIsLower ? *first.min : *second.min;
    const std::int64_t most = firstIsLower ? *second.max : *first.max;
    if (least > most) return std::nullopt;
    return rangeFilter(least, most);
}

}  // namespace tarn::QuerySizes
