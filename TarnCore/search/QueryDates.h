#pragma once

#include <cstddef>
#include <optional>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/Locale.h"
#include "TarnCore/search/DateFilter.h"
#include "TarnCore/search/QueryNumbers.h"
#include "TarnCore/search/QueryTokens.h"

/// The dates that people write in queries, all in the user's calendar.
///
/// Periods: "today", "this week", "last month" (the whole one before this), "friday" (the latest
/// that is not in the future), "last friday" (the latest before today), "friday last week",
/// "this friday" (of this week), "march" (the latest that is not in the future), "march 2024",
/// "5th of march", "2 weeks ago" (that week), "2024-03-05", "5.3.2024" or "3/5/24" (in the order of
/// the locale; in the other one where only that is a date), and a year alone behind "in", "from",
/// "during", "since", "before", "after" and in ranges.
///
/// Spans end now: "last 3 days", "within 3 days", "in the past month", "over the last week",
/// "recent" (7 days). They begin with the day so long ago; hours and minutes are exact.
///
/// Open ranges: "before march" ends as March begins, "after march" begins as it ends, "since march"
/// begins with it; "older than 2 weeks" and "over 2 weeks old" end exactly two weeks ago, "newer
/// than 2 weeks" begins there.
///
/// Ranges hold the whole of both periods: "between jan and march", "from monday to friday",
/// "2024-01-01 to 2024-02-01". A month or weekday without a year is the latest that fits before the
/// other end; periods in the wrong order are exchanged.
///
/// Numbers that reach further back than two thousand years reach back two thousand years.
namespace tarn::QueryDates {

/// The date expression that begins at a token, perhaps with "in", "from", "on", "at", "of",
/// "during" or "the" before it; absent when none does. Its field is `modified`.
std::optional<Reading<DateFilter>> parseDate(const QueryTokens& tokens, std::size_t index, Date now,
                                             const Calendar& calendar, const Locale& locale);

/// Both filters at once, when one of them has only a start and the other only a later end: "since
/// january before march".
std::optional<DateFilter> combined(const DateFilter& first, const DateFilter& second);

}  // namespace tarn::QueryDates
