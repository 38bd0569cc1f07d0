#include "TarnCore/search/QueryNumbers.h"

#include <limits>

#include "TarnCore/search/QueryVocabulary.h"

namespace tarn {

std::optional<std::int64_t> QueryNumbers::parseDigits(std::string_view word, std::size_t least,
                                                      std::size_t most) {
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    if (word.empty() || word.size() < least || word.size() > most) return std::nullopt;
    std::int64_t value = 0;
    for (const char character : word) {
        if (character < '0' || character > '9') return std::nullopt;
        const int digit = character - '0';
        value = value > (largest - digit) / 10 ? largest : value * 10 + digit;
    }
    return value;
}

std::optional<std::int64_t> QueryNumbers::parseNumber(std::string_view word) {
    if (const auto digits = parseDigits(word, 1, word.npos)) return digits;
    const QueryWord* known = QueryVocabulary::find(word);
    if (known == nullptr || !known->number) return std::nullopt;
    return *known->number;
}

}  // namespace tarn
