#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "TarnCore/files/Format.h"
#include "TarnCore/search/QueryParser.h"

namespace tarn {

/// Parses at a fixed moment, and writes instants as clocks on the wall show them.
class QueryTime {
public:
    /// `now` is "2026-03-18 14:30" in the zone.
    QueryTime(const char* zone, int firstWeekday, const char* locale, const char* now)
        : calendar_(zone, firstWeekday), locale_(locale), now_(at(now)) {
        Format::use(Locale("en_US"), calendar_);
    }

    SearchQuery parse(std::string_view text) const {
        return QueryParser(now_, calendar_, locale_).parse(text);
    }

    /// "2026-03-18" is the first instant of that day.
    Date at(const char* wall) const {
        CivilDay day;
        int hour = 0;
        int minute = 0;
        const int fields =
            std::sscanf(wall, "%d-%d-%d %d:%d", &day.year, &day.month, &day.day, &hour, &minute);
        EXPECT_TRUE(fields == 3 || fields == 5) << wall;
        return fields == 3 ? calendar_.start(day) : calendar_.at(day, hour, minute);
    }

    /// An empty text is an open end.
    std::optional<Date> bound(std::string_view wall) const {
        if (wall.empty()) return std::nullopt;
        return at(std::string(wall).c_str());
    }

    std::string wall(std::optional<Date> date) const {
        if (!date) return "open";
        const CivilDay day = calendar_.day(*date);
        const auto minutes = static_cast<int>((*date - calendar_.startOfDay(*date)) / 60);
        char text[64];
        std::snprintf(text, sizeof text, "%d-%02d-%02d + %d min", day.year, day.month, day.day,
                      minutes);
        return text;
    }

    const Calendar& calendar() const { return calendar_; }
    Date now() const { return now_; }

private:
    Calendar calendar_;
    Locale locale_;
    Date now_;
};

/// A Wednesday afternoon, eleven days before the clocks change; weeks begin on Monday.
inline QueryTime berlin(const char* now = "2026-03-18 14:30") {
    return {"Europe/Berlin", 2, "en_US", now};
}

/// The same in New York, ten days after the clocks have changed; weeks begin on Sunday.
inline QueryTime newYork(const char* now = "2026-03-18 14:30") {
    return {"America/New_York", 1, "en_US", now};
}

}  // namespace tarn
