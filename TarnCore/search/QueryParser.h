#pragma once

#include <string_view>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/Locale.h"
#include "TarnCore/search/SearchQuery.h"

namespace tarn {

/// Reads what a person types into the search field. There are no operators and no errors: words
/// and phrases that are recognised become filters, fillers are dropped, the rest are name terms.
/// Pure: the same text, instant, calendar and locale give the same query. Any bytes are accepted;
/// time grows linearly with their number. Callable from any thread.
class QueryParser {
public:
    QueryParser(Date now, Calendar calendar, Locale locale);

    SearchQuery parse(std::string_view text) const;

private:
    Date now_;
    Calendar calendar_;
    Locale locale_;
};

}  // namespace tarn
