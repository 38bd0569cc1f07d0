#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tarn {

/// What a reader of a query found at a token, and how many tokens it takes up.
template <class Value>
struct Reading {
    Value value;
    std::size_t count = 0;
};

namespace QueryNumbers {

/// Decimal digits, or a number word ("three", "a", "couple"); too large a number is the largest.
/// `word` is in lower case.
std::optional<std::int64_t> parseNumber(std::string_view word);

/// Decimal digits alone, `least` to `most` of them.
std::optional<std::int64_t> parseDigits(std::string_view word, std::size_t least, std::size_t most);

}  // namespace QueryNumbers

}  // namespace tarn
