#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/Locale.h"
#include "TarnCore/search/QueryTokens.h"
#include "TarnCore/search/SearchQuery.h"

namespace tarn {

/// Reads what a person types into the search field. There are no operators and no errors: words
/// and phrases that are recognised become filters, fillers are dropped, the rest are name terms.
/// Pure: the same text, instant, calendar and locale give the same query. Any bytes are accepted;
/// time grows linearly with their number. Callable from any thread.
///
/// At every word the readings are tried in this order: a quotation, "text in images", a phrase of
/// the content ("containing total"), a folder by name ("in taxes folder"), a word that says which
/// date is meant ("created"), a size, a date, a source, camera or place behind "from" and the like,
/// a place, two words for a kind ("screen shots"), an extension, a kind, a source by name, a
/// camera, a filler; what is none of these is a term. "from", "in", "on", "at", "of", "during" and
/// "the" go with the date, size, place, source or camera right behind them, and are words like any
/// other elsewhere ("letter from alice").
///
/// A second filter of a sort replaces the first, except that a lower and an upper bound of sizes,
/// or a start and an end of dates, are taken together ("over 5 mb under 1 gb").
class QueryParser {
public:
    QueryParser(Date now, Calendar calendar, Locale locale);

    /// For this moment, by the platform's clock, in the user's time zone and language.
    static QueryParser current();

    SearchQuery parse(std::string_view text) const;

    static QueryTokens tokenize(std::string_view text) { return QueryTokens(text); }
    /// The date that a word speaks of: "edited", "taken", "downloaded", "used"; in lower case.
    static std::optional<DateField> dateFieldWord(std::string_view word);
    /// Decimal digits or a number word; too large a number is the largest. In lower case.
    static std::optional<std::int64_t> parseNumber(std::string_view word);

private:
    Date now_;
    Calendar calendar_;
    Locale locale_;
};

}  // namespace tarn
