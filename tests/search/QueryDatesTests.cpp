#include "TarnCore/search/QueryDates.h"
#include "tests/search/QueryTestSupport.h"

namespace tarn {
namespace {

struct Row {
    const char* text;
    const char* start;  ///< "" for an open end
    const char* end;
    const char* label;
};

void expectDate(const QueryTime& time, const Row& row) {
    SCOPED_TRACE(row.text);
    const SearchQuery query = time.parse(row.text);
    ASSERT_TRUE(query.date);
    EXPECT_EQ(time.wall(query.date->start), time.wall(time.bound(row.start)));
    EXPECT_EQ(time.wall(query.date->end), time.wall(time.bound(row.end)));
    EXPECT_EQ(query.date->start, time.bound(row.start));
    EXPECT_EQ(query.date->end, time.bound(row.end));
    EXPECT_EQ(query.date->label, row.label);
    EXPECT_EQ(query.date->field, DateField::modified);
    EXPECT_EQ(query.terms, std::vector<std::string>());
    EXPECT_FALSE(query.size);
}

constexpr const char* now = "2026-03-18 14:30";

TEST(QueryDates, periodsAreHalfOpenInTheUsersCalendar) {
    const Row rows[] = {
        {"today", "2026-03-18", "2026-03-19", "Today"},
        {"tonight", "2026-03-18", "2026-03-19", "Today"},
        {"Yesterday", "2026-03-17", "2026-03-18", "Yesterday"},
        {"tomorrow", "2026-03-19", "2026-03-20", "Tomorrow"},
        {"this morning", "2026-03-18", "2026-03-18 12:00", "This morning"},
        {"this evening", "2026-03-18 18:00", "2026-03-19", "This evening"},
        {"this week", "2026-03-16", "2026-03-23", "This week"},
        {"current month", "2026-03-01", "2026-04-01", "This month"},
        {"this yr", "2026-01-01", "2027-01-01", "This year"},
        {"this hour", "2026-03-18 14:00", "2026-03-18 15:00", "This hour"},
        {"last week", "2026-03-09", "2026-03-16", "Last week"},
        {"from last week", "2026-03-09", "2026-03-16", "Last week"},
        {"previous month", "2026-02-01", "2026-03-01", "Last month"},
        {"during last month", "2026-02-01", "2026-03-01", "Last month"},
        {"last year", "2025-01-01", "2026-01-01", "Last year"},
        {"last day", "2026-03-17", "2026-03-18", "Last day"},
        {"last hour", "2026-03-18 13:00", "2026-03-18 14:00", "Last hour"},
        {"3 days ago", "2026-03-15", "2026-03-16", "3 days ago"},
        {"a week ago", "2026-03-09", "2026-03-16", "1 week ago"},
        {"a couple of weeks ago", "2026-03-02", "2026-03-09", "2 weeks ago"},
        {"two months ago", "2026-01-01", "2026-02-01", "2 months ago"},
        {"2 yrs ago", "2024-01-01", "2025-01-01", "2 years ago"},
        {"0 days ago", "2026-03-18", "2026-03-19", "0 days ago"},
    };
    for (const Row& row : rows) expectDate(berlin(), row);
}

TEST(QueryDates, weekdays) {
    const Row rows[] = {
        {"wednesday", "2026-03-18", "2026-03-19", "Wednesday"},  // today
        {"on friday", "2026-03-13", "2026-03-14", "Friday"},
        {"last friday", "2026-03-13", "2026-03-14", "Last Friday"},
        {"last wednesday", "2026-03-11", "2026-03-12", "Last Wednesday"},
        {"last tues", "2026-03-17", "2026-03-18", "Last Tuesday"},
        {"this monday", "2026-03-16", "2026-03-17", "This Monday"},
        {"this friday", "2026-03-20", "2026-03-21", "This Friday"},
        {"this sunday", "2026-03-22", "2026-03-23", "This Sunday"},
        {"monday last week", "2026-03-09", "2026-03-10", "Monday last week"},
        {"on tuesday of last week", "2026-03-10", "2026-03-11", "Tuesday last week"},
        {"last week's friday", "2026-03-13", "2026-03-14", "Friday last week"},
        {"sunday last week", "2026-03-15", "2026-03-16", "Sunday last week"},
    };
    for (const Row& row : rows) expectDate(berlin(), row);
    // Where weeks begin on Sunday, that of last week is seven days earlier.
    const Row sundays[] = {
        {"this sunday", "2026-03-15", "2026-03-16", "This Sunday"},
        {"sunday last week", "2026-03-08", "2026-03-09", "Sunday last week"},
        {"last week", "2026-03-08", "2026-03-15", "Last week"},
    };
    for (const Row& row : sundays) expectDate(newYork(), row);
}

TEST(QueryDates, monthsDaysAndYears) {
    const Row rows[] = {
        {"march", "2026-03-01", "2026-04-01", "March"},
        {"in February", "2026-02-01", "2026-03-01", "February"},
        {"april", "2025-04-01", "2025-05-01", "April 2025"},
        {"may", "2025-05-01", "2025-06-01", "May 2025"},
        {"sept", "2025-09-01", "2025-10-01", "September 2025"},
        {"march 2024", "2024-03-01", "2024-04-01", "March 2024"},
        {"march of 2026", "2026-03-01", "2026-04-01", "March 2026"},
        {"march last year", "2025-03-01", "2025-04-01", "March 2025"},
        {"last march", "2025-03-01", "2025-04-01", "March 2025"},
        {"last december", "2025-12-01", "2026-01-01", "December 2025"},
        {"this may", "2026-05-01", "2026-06-01", "May"},
        {"march 5", "2026-03-05", "2026-03-06", "Mar 5, 2026"},
        {"the 20th of march", "2025-03-20", "2025-03-21", "Mar 20, 2025"},
        {"5th march 2024", "2024-03-05", "2024-03-06", "Mar 5, 2024"},
        {"on march 1st, 2024", "2024-03-01", "2024-03-02", "Mar 1, 2024"},
        {"feb 29", "2024-02-29", "2024-03-01", "Feb 29, 2024"},  // the latest year that has one
        {"2024-2-29", "2024-02-29", "2024-03-01", "Feb 29, 2024"},
        {"3/4/2025", "2025-03-04", "2025-03-05", "Mar 4, 2025"},
        {"13/4/2025", "2025-04-13", "2025-04-14", "Apr 13, 2025"},
        {"3.4.25", "2025-03-04", "2025-03-05", "Mar 4, 2025"},
        {"in 2023", "2023-01-01", "2024-01-01", "2023"},
        {"from 2023", "2023-01-01", "2024-01-01", "2023"},
    };
    for (const Row& row : rows) expectDate(berlin(), row);
    const QueryTime german("Europe/Berlin", 2, "de_DE", now);
    expectDate(german, {"3/4/2025", "2025-04-03", "2025-04-04", "3. Apr. 2025"});
    expectDate(german, {"4/13/2025", "2025-04-13", "2025-04-14", "13. Apr. 2025"});
    expectDate(german, {"april", "2025-04-01", "2025-05-01", "April 2025"});
    expectDate(german, {"last friday", "2026-03-13", "2026-03-14", "Last Freitag"});
}

TEST(QueryDates, spansReachBackFromNow) {
    const Row rows[] = {
        {"last 3 days", "2026-03-15", now, "Last 3 days"},
        {"within 3 days", "2026-03-15", now, "Last 3 days"},
        {"in the last three days", "2026-03-15", now, "Last 3 days"},
        {"the last few weeks", "2026-02-25", now, "Last 3 weeks"},
        {"last couple of months", "2026-01-18", now, "Last 2 months"},
        {"in the past month", "2026-02-18", now, "Last 1 month"},
        {"past 2 weeks", "2026-03-04", now, "Last 2 weeks"},
        {"over the last week", "2026-03-11", now, "Last 1 week"},
        {"within the last year", "2025-03-18", now, "Last 1 year"},
        {"within the hour", "2026-03-18 13:30", now, "Last 1 hour"},
        {"last 2 hours", "2026-03-18 12:30", now, "Last 2 hours"},
        {"last 90 mins", "2026-03-18 13:00", now, "Last 90 minutes"},
        {"recently", "2026-03-11", now, "Last 7 days"},
        {"newest", "2026-03-11", now, "Last 7 days"},
    };
    for (const Row& row : rows) expectDate(berlin(), row);
}

TEST(QueryDates, openRanges) {
    const Row rows[] = {
        {"older than 2 weeks", "", "2026-03-04 14:30", "Older than 2 weeks"},
        {"over a year old", "", "2025-03-18 14:30", "Older than 1 year"},
        {"more than 3 months ago", "", "2025-12-18 14:30", "Older than 3 months"},
        {"older than 2020", "", "2020-01-01", "Older than 2020"},
        {"newer than 2 weeks", "2026-03-04 14:30", "", "Last 2 weeks"},
        {"less than 5 days old", "2026-03-13 14:30", "", "Last 5 days"},
        {"newer than march 2024", "2024-04-01", "", "After March 2024"},
        {"before march 2024", "", "2024-03-01", "Before March 2024"},
        {"prior to 2020", "", "2020-01-01", "Before 2020"},
        {"from before last week", "", "2026-03-09", "Before last week"},
        {"before 2 weeks ago", "", "2026-03-02", "Before 2 weeks ago"},
        {"after february", "2026-03-01", "", "After February"},
        {"after 2023", "2024-01-01", "", "After 2023"},
        {"since monday", "2026-03-16", "", "Since Monday"},
        {"since last month", "2026-02-01", "", "Since last month"},
        {"since the 5th of march", "2026-03-05", "", "Since Mar 5, 2026"},
        {"since 2023", "2023-01-01", "", "Since 2023"},
        {"since january before march", "2026-01-01", "2026-03-01", "Since January, before March"},
    };
    for (const Row& row : rows) expectDate(berlin(), row);
}

TEST(QueryDates, rangesHoldBothPeriods) {
    const Row rows[] = {
        {"between jan and march", "2026-01-01", "2026-04-01", "January to March"},
        {"between jan and april", "2025-01-01", "2025-05-01", "January to April 2025"},
        {"from november to january", "2025-11-01", "2026-02-01", "November 2025 to January"},
        {"november to april", "2024-11-01", "2025-05-01", "November 2024 to April 2025"},
        {"between march 2023 and may", "2023-03-01", "2023-06-01", "March to May 2023"},
        {"from march to may 2023", "2023-03-01", "2023-06-01", "March to May 2023"},
        {"between nov 2022 and feb", "2022-11-01", "2023-03-01", "November 2022 to February 2023"},
        {"from 2024-01-01 to 2024-02-01", "2024-01-01", "2024-02-02", "Jan 1, 2024 to Feb 1, 2024"},
        {"between 2024-02-01 and 2024-01-01", "2024-01-01", "2024-02-02",
         "Jan 1, 2024 to Feb 1, 2024"},
        {"between 2020 and 2022", "2020-01-01", "2023-01-01", "2020 to 2022"},
        {"in 2020 to 2022", "2020-01-01", "2023-01-01", "2020 to 2022"},
        {"from monday to friday", "2026-03-09", "2026-03-14", "Monday to Friday"},
        {"between sunday and tuesday", "2026-03-15", "2026-03-18", "Sunday to Tuesday"},
        {"from last month to yesterday", "2026-02-01", "2026-03-18", "Last month to yesterday"},
        {"from last week to friday", "2026-03-09", "2026-03-14", "Last week to Friday"},
        {"from yesterday to now", "2026-03-17", now, "Yesterday to now"},
        {"between march 5 and march 10", "2026-03-05", "2026-03-11", "Mar 5, 2026 to Mar 10, 2026"},
        {"from dec 24 to jan 2", "2025-12-24", "2026-01-03", "Dec 24, 2025 to Jan 2, 2026"},
    };
    for (const Row& row : rows) expectDate(berlin(), row);
}

TEST(QueryDates, yearsEndAndBegin) {
    const Row rows[] = {
        {"last month", "2024-12-01", "2025-01-01", "Last month"},
        {"december", "2024-12-01", "2025-01-01", "December 2024"},
        {"last week", "2024-12-23", "2024-12-30", "Last week"},
        {"yesterday", "2024-12-31", "2025-01-01", "Yesterday"},
        {"between nov and january", "2024-11-01", "2025-02-01", "November 2024 to January"},
    };
    for (const Row& row : rows) expectDate(berlin("2025-01-01 00:00"), row);
    // A month back from the 31st is the last day of a shorter one.
    expectDate(berlin("2025-03-31 10:00"),
               {"past month", "2025-02-28", "2025-03-31 10:00", "Last 1 month"});
    expectDate(berlin("2024-02-29 10:00"),
               {"older than a year", "", "2023-02-28 10:00", "Older than 1 year"});
}

TEST(QueryDates, daysAreThoseOfTheClockAcrossItsChanges) {
    const auto utc = [](const char* text) { return Date::fromISO8601(text); };
    // Berlin goes from UTC+1 to UTC+2 on the 29th of March at 2 o'clock.
    const auto day = berlin("2026-03-30 09:00").parse("yesterday").date;
    ASSERT_TRUE(day);
    EXPECT_EQ(day->start, utc("2026-03-28T23:00:00Z"));
    EXPECT_EQ(day->end, utc("2026-03-29T22:00:00Z"));
    // Hours are hours of the world, not of the clock.
    EXPECT_EQ(berlin("2026-03-29 04:00").parse("last 3 hours").date->start,
              utc("2026-03-28T23:00:00Z"));
    EXPECT_EQ(berlin("2026-03-29 04:00").parse("older than 1 day").date->end,
              utc("2026-03-28T03:00:00Z"));
    // New York goes back on the 1st of November: the week has 169 hours.
    const auto week = newYork("2026-11-10 12:00").parse("last week").date;
    EXPECT_EQ(week->start, utc("2026-11-01T04:00:00Z"));
    EXPECT_EQ(week->end, utc("2026-11-08T05:00:00Z"));
}

TEST(QueryDates, hugeNumbersReachBackToTheBeginning) {
    for (const char* text :
         {"last 99999999999 years", "older than 99999999999999999999999999 minutes",
          "last 9223372036854775807 days", "4000000000 weeks ago", "since 5000000 months"}) {
        SCOPED_TRACE(text);
        const auto date = berlin().parse(text).date;
        ASSERT_TRUE(date);
        const Date bound = date->start.value_or(date->end.value_or(Date{}));
        EXPECT_LT(bound, berlin().at("0100-01-01"));
        EXPECT_GT(bound, berlin().at("0001-01-01"));
    }
    EXPECT_EQ(berlin().parse("last 99999999999 years").date->label, "Last 99999999999 years");
}

TEST(QueryDates, wordsThatAreNoDatesStayWords) {
    const struct {
        const char* text;
        std::vector<std::string> terms;
    } cases[] = {
        {"2023", {"2023"}},
        {"tax 2023 return", {"tax", "2023", "return"}},
        {"the 2023 budget", {"2023", "budget"}},
        {"in 1066", {"in", "1066"}},
        {"2024-02-30", {"2024-02-30"}},
        {"2024-13-01 1/2/345 32/1/2024", {"2024-13-01", "1/2/345", "32/1/2024"}},
        {"last supper", {"last", "supper"}},
        {"this is it", {"this", "it"}},
        {"before sunrise", {"before", "sunrise"}},
        {"between two worlds", {"between", "two", "worlds"}},
        {"3 days", {"3", "days"}},
        {"“last week”", {"last week"}},
        {"“march” 2024", {"march", "2024"}},
        {"during the meeting", {"during", "meeting"}},
        {"letter from alice", {"letter", "from", "alice"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const SearchQuery query = berlin().parse(c.text);
        EXPECT_FALSE(query.date);
        EXPECT_EQ(query.terms, c.terms);
    }
}

}  // namespace
}  // namespace tarn
