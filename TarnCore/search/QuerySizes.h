#pragma once

#include <cstddef>
#include <optional>

#include "TarnCore/search/QueryNumbers.h"
#include "TarnCore/search/QueryTokens.h"
#include "TarnCore/search/SizeFilter.h"

/// The sizes that people write in queries.
///
/// Units are b, kb, mb, gb, tb and pb on the decimal scale, kib, mib, … on the binary one, k, m, g
/// and t for the decimal ones, and words like "megabytes" and "gigs"; a number without a unit is no
/// size. "1,500 kb" is grouped by its comma, "1,5 gb" has a decimal one. "over 5 mb", "at least 5
/// mb" and ">5mb" are labelled "Over 5 MB", "under 5 mb" and "at most 5 mb" "Under 5 MB", "between
/// 1 and 5 mb" "1 MB to 5 MB". Amounts that no 64-bit number of bytes can hold are the largest that
/// one can.
namespace tarn::QuerySizes {

/// The size expression that begins at a token; absent when none does.
std::optional<Reading<SizeFilter>> parseSize(const QueryTokens& tokens, std::size_t index);

/// Both filters at once, when one of them is only a lower and the other only a higher bound.
std::optional<SizeFilter> combined(const SizeFilter& first, const SizeFilter& second);

}  // namespace tarn::QuerySizes
