#include <gtest/gtest.h>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/Locale.h"

namespace tarn {
namespace {

Date at(const char* text) { return Date::fromISO8601(text).value(); }

TEST(Date, isoFormReadsAndPrints) {
    EXPECT_EQ(at("2001-01-01T00:00:00Z").seconds, 0);
    EXPECT_EQ(at("2026-03-15T12:00:00+02:00"), at("2026-03-15T10:00:00Z"));
    EXPECT_EQ(at("2026-03-15T12:00:00.5Z") - at("2026-03-15T12:00:00Z"), 0.5);
    EXPECT_EQ(at("1969-12-31T23:59:59Z").unixSeconds(), -1);
    EXPECT_EQ(at("2026-03-15T12:00:00Z").iso8601(), "2026-03-15T12:00:00Z");
    for (const char* text :
         {"", "2026", "2026-02-30", "2026-03-15T25:00:00Z", "2026-03-15T12:00:00",
          "2026-03-15T12:00:00Zx", "2026-3-15", "-026-03-15"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(Date::fromISO8601(text));
    }
}

TEST(Calendar, periodsHoldTheirInstant) {
    const Calendar berlin("Europe/Berlin", 2);
    const struct {
        CalendarUnit unit;
        const char* date;
        const char* start;
        const char* end;
    } cases[] = {
        {CalendarUnit::day, "2026-03-29T10:00:00Z", "2026-03-28T23:00:00Z",
         "2026-03-29T22:00:00Z"},  // 23 hours
        {CalendarUnit::day, "2026-10-25T10:00:00Z", "2026-10-24T22:00:00Z",
         "2026-10-25T23:00:00Z"},  // 25 hours
        {CalendarUnit::week, "2026-03-15T12:00:00Z", "2026-03-08T23:00:00Z",
         "2026-03-15T23:00:00Z"},  // Sunday ends it
        {CalendarUnit::month, "2026-03-31T22:30:00Z", "2026-03-31T22:00:00Z",
         "2026-04-30T22:00:00Z"},
        {CalendarUnit::year, "2026-01-01T00:00:00Z", "2025-12-31T23:00:00Z",
         "2026-12-31T23:00:00Z"},
        {CalendarUnit::hour, "2026-03-15T12:34:56Z", "2026-03-15T12:00:00Z",
         "2026-03-15T13:00:00Z"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.date);
        const DateInterval period = berlin.interval(c.unit, at(c.date));
        EXPECT_EQ(period.start.iso8601(), c.start);
        EXPECT_EQ(period.end.iso8601(), c.end);
    }
    // Half an hour off UTC: hours begin on the local clock.
    const Calendar kolkata("Asia/Kolkata", 1);
    EXPECT_EQ(kolkata.interval(CalendarUnit::hour, at("2026-03-15T12:10:00Z")).start,
              at("2026-03-15T11:30:00Z"));
}

TEST(Calendar, aDayWithoutMidnightBeginsWhenItCan) {
    const Calendar saoPaulo("America/Sao_Paulo", 1);  // clocks went from 24:00 to 01:00
    EXPECT_EQ(saoPaulo.start({2018, 11, 4}).iso8601(), "2018-11-04T03:00:00Z");
    const Calendar berlin("Europe/Berlin", 2);
    EXPECT_EQ(berlin.at({2026, 3, 29}, 2, 30).iso8601(), "2026-03-29T01:30:00Z");
}

TEST(Calendar, addingKeepsTheClockAndTheDay) {
    const Calendar berlin("Europe/Berlin", 2);
    const struct {
        CalendarUnit unit;
        int count;
        const char* from;
        const char* to;
    } cases[] = {
        {CalendarUnit::day, 1, "2026-03-28T11:00:00Z", "2026-03-29T10:00:00Z"},
        {CalendarUnit::hour, 24, "2026-03-28T11:00:00Z", "2026-03-29T11:00:00Z"},
        {CalendarUnit::month, 1, "2026-01-31T11:00:00Z", "2026-02-28T11:00:00Z"},
        {CalendarUnit::month, -1, "2024-03-31T11:00:00Z",
         "2024-02-29T12:00:00Z"},  // 12 CEST is 13 o'clock local
        {CalendarUnit::year, -1, "2024-02-29T11:00:00Z", "2023-02-28T11:00:00Z"},
        {CalendarUnit::week, -2, "2026-01-05T11:00:00Z", "2025-12-22T11:00:00Z"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.from);
        EXPECT_EQ(berlin.adding(c.unit, c.count, at(c.from)).iso8601(), c.to);
    }
    // Far out of range stays a date.
    EXPECT_EQ(berlin.adding(CalendarUnit::year, 2'000'000'000, CivilDay{2026, 1, 1}).year, 30000);
    EXPECT_LT(berlin.adding(CalendarUnit::year, -2'000'000'000, at("2026-01-01T00:00:00Z")),
              at("2026-01-01T00:00:00Z"));
    EXPECT_FALSE((CivilDay{2023, 2, 29}).isValid());
    EXPECT_FALSE((CivilDay{2023, 13, 1}).isValid());
}

TEST(Calendar, daysAreCountedByMidnights) {
    const Calendar newYork("America/New_York", 1);
    EXPECT_EQ(newYork.daysBetween(at("2026-03-15T03:59:00Z"), at("2026-03-15T04:01:00Z")), 1);
    EXPECT_EQ(newYork.daysBetween(at("2026-03-15T04:01:00Z"), at("2026-03-16T03:59:00Z")), 0);
    EXPECT_EQ(newYork.weekday(at("2026-03-15T03:59:00Z")), 7);
    EXPECT_EQ(newYork.day(at("2026-03-15T03:59:00Z")), (CivilDay{2026, 3, 14}));
}

TEST(Locale, namesAndForms) {
    const Calendar utc("UTC", 1);
    EXPECT_EQ(Locale("de_DE").monthName(3), "März");
    EXPECT_EQ(Locale("en_US").weekdayName(1), "Sunday");
    EXPECT_EQ(Locale("en_US").format(at("2023-11-14T12:00:00Z"), "dMMMyyyy", utc), "Nov 14, 2023");
    EXPECT_EQ(Locale("en_GB").format(at("2023-11-14T12:00:00Z"), "dMMMyyyy", utc), "14 Nov 2023");
    EXPECT_FALSE(Locale("en_US").writesDayBeforeMonth());
    EXPECT_TRUE(Locale("de_DE").writesDayBeforeMonth());
    EXPECT_EQ(Locale("en_US").firstWeekday(), 1);
    EXPECT_EQ(Locale("de_DE").firstWeekday(), 2);
    EXPECT_EQ(Locale("no such locale").monthName(13), "");
}

}  // namespace
}  // namespace tarn
