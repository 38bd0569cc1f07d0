#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TarnCore/files/Format.h"
#include "TarnCore/files/LocalisedPatterns.h"
#include "TarnCore/platform/Platform.h"
#include "tests/support/ScopedPlatform.h"

namespace tarn {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// 15 March 2026, 13:00 in Berlin.
const Date now = *Date::fromISO8601("2026-03-15T12:00:00Z");

class FormatTest : public testing::Test {
protected:
    FormatTest() : platform_(at(now)) { use("en_US", "UTC"); }
    ~FormatTest() override { use("en_US", "UTC"); }

    static void use(const char* locale, const char* zone) {
        Format::use(Locale(locale), Calendar(zone, 1));
    }

private:
    static Platform at(Date date) {
        Platform platform = Platform::current();
        platform.clock = std::make_shared<FixedClock>(date);
        return platform;
    }
    ScopedPlatform platform_;
};

TEST_F(FormatTest, sizesAreDecimalAndShort) {
    const struct {
        std::int64_t count;
        const char* adaptive;
        const char* whole;
    } cases[] = {
        {0, "Zero KB", "Zero KB"},
        {1, "1 byte", "1 byte"},
        {3, "3 bytes", "3 bytes"},
        {999, "999 bytes", "999 bytes"},
        {1000, "1 KB", "1 KB"},
        {12'345, "12 KB", "12 KB"},
        {999'499, "999 KB", "999 KB"},
        {999'500, "1 MB", "1 MB"},
        {1'500'000, "1.5 MB", "2 MB"},
        {999'940'000, "999.9 MB", "1 GB"},
        {999'960'000, "1 GB", "1 GB"},
        {1'234'567'890, "1.23 GB", "1 GB"},
        {1'200'000'000'000, "1.2 TB", "1 TB"},
        {1'234'500'000'000'000, "1,234.5 TB", "1,235 TB"},
        {-1'500'000, "-1.5 MB", "-2 MB"},
        {std::numeric_limits<std::int64_t>::min(), "-9,223,372.04 TB", "-9,223,372 TB"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.count);
        EXPECT_EQ(Format::bytes(c.count), c.adaptive);
        EXPECT_EQ(Format::shortBytes(c.count), c.whole);
    }
}

TEST_F(FormatTest, speeds) {
    EXPECT_EQ(Format::speed(12'300'000), "12.3 MB/s");
    EXPECT_EQ(Format::speed(0.4), "Zero KB/s");
    for (const double none : {0.0, -1.0, std::nan("")}) EXPECT_EQ(Format::speed(none), "");
    EXPECT_EQ(Format::speed(std::numeric_limits<double>::infinity()), "9,223,372.04 TB/s");
}

TEST_F(FormatTest, daysAreCalendarDaysOfTheZone) {
    const struct {
        const char* date;
        const char* zone;
        const char* day;
        const char* full;
    } cases[] = {
        {"2026-03-15T14:05:59Z", "UTC", "Today", "Today at 2:05\u202FPM"},
        {"2026-03-15T00:00:00Z", "UTC", "Today", "Today at 12:00\u202FAM"},
        {"2026-03-14T23:59:59Z", "UTC", "Yesterday", "Yesterday at 11:59\u202FPM"},
        {"2026-03-14T23:59:59Z", "Europe/Berlin", "Today", "Today at 12:59\u202FAM"},
        {"2026-03-16T00:00:00Z", "UTC", "Tomorrow", "Tomorrow at 12:00\u202FAM"},
        {"2026-03-13T12:00:00Z", "UTC", "Mar 13, 2026", "Mar 13, 2026 at 12:00\u202FPM"},
        {"2023-11-14T23:30:00Z", "Asia/Kolkata", "Nov 15, 2023", "Nov 15, 2023 at 5:00\u202FAM"},
        // The clocks of Berlin skip from 2:00 to 3:00.
        {"2025-03-30T00:59:00Z", "Europe/Berlin", "Mar 30, 2025", "Mar 30, 2025 at 1:59\u202FAM"},
        {"2025-03-30T01:00:00Z", "Europe/Berlin", "Mar 30, 2025", "Mar 30, 2025 at 3:00\u202FAM"},
        {"1601-01-01T00:00:00Z", "UTC", "Jan 1, 1601", "Jan 1, 1601 at 12:00\u202FAM"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.date) + " " + c.zone);
        use("en_US", c.zone);
        EXPECT_EQ(Format::day(Date::fromISO8601(c.date)), c.day);
        EXPECT_EQ(Format::date(Date::fromISO8601(c.date)), c.full);
    }
    EXPECT_EQ(Format::day(std::nullopt), "—");
    EXPECT_EQ(Format::date(std::nullopt), "—");
}

/// The spaces and the glue between day and time differ from one ICU to the next.
TEST_F(FormatTest, otherLanguages) {
    const struct {
        const char* locale;
        const char* today;
        const char* day;
        std::pair<const char*, const char*> megabytes;
        const char* threeBytes;
    } cases[] = {
        {"en_GB", "Today at ", "14 Nov 2023", {"1.5", "MB"}, "bytes"},
        {"de_DE", "Heute", "14.11.2023", {"1,5", "MB"}, "Byte"},
        {"fr_FR", "Aujourd’hui", "14 nov. 2023", {"1,5", "Mo"}, "octets"},
        {"ja_JP", "今日", "2023/11/14", {"1.5", "MB"}, "バイト"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.locale);
        use(c.locale, "UTC");
        EXPECT_THAT(Format::date(Date::fromISO8601("2026-03-15T14:05:00Z")),
                    AllOf(StartsWith(c.today), EndsWith(" 14:05"), Not(HasSubstr("'"))));
        EXPECT_EQ(Format::day(Date::fromISO8601("2023-11-14T14:05:00Z")), c.day);
        EXPECT_THAT(Format::bytes(1'500'000),
                    AllOf(StartsWith(c.megabytes.first), EndsWith(c.megabytes.second)));
        EXPECT_THAT(Format::bytes(3), AllOf(StartsWith("3"), EndsWith(c.threeBytes)));
        EXPECT_THAT(Format::count(12'345, "item"), AllOf(StartsWith("12"), EndsWith("345 items")));
    }
}

/// en_US is written out by hand, so it must say what ICU says.
TEST_F(FormatTest, americanFormsAreThoseOfICU) {
    LocalisedPatterns ours("en_US");
    LocalisedPatterns icu("en_US@calendar=gregorian");
    for (int month = 1; month <= 12; ++month)
        for (const int year : {1, 999, 1970, 2024, 12024}) {
            const CivilDay day{year, month, month * 2};
            EXPECT_EQ(ours.date(day), icu.date(day));
        }
    for (int hour = 0; hour < 24; ++hour) EXPECT_EQ(ours.time(hour, hour), icu.time(hour, hour));
    for (const std::int64_t n : {0LL, 7LL, 999LL, 1000LL, -1234LL, 123456LL, 1234567890LL})
        EXPECT_EQ(ours.integer(n), icu.integer(n));
    for (const double value : {0.5, 1.0, 12.25, 1234.5})
        EXPECT_EQ(ours.size(value, 2, 3), icu.size(value, 2, 3));
}

TEST_F(FormatTest, durationsAndRemainingTimes) {
    const double never = std::numeric_limits<double>::infinity();
    const struct {
        double seconds;
        const char* duration;
        const char* remaining;
    } cases[] = {
        {0, "0 sec", "A few seconds left"},        {4.9, "4 sec", "A few seconds left"},
        {5, "5 sec", "About 5 seconds left"},      {59.9, "59 sec", "About 59 seconds left"},
        {60, "1:00", "About 2 minutes left"},      {187, "3:07", "About 4 minutes left"},
        {3599, "59:59", "About 60 minutes left"},  {3600, "1:00:00", "About 1 h 0 min left"},
        {3661, "1:01:01", "About 1 h 1 min left"}, {360'000, "100:00:00", "About 100 h 0 min left"},
        {-1, "—", "A few seconds left"},           {never, "—", "Estimating…"},
        {std::nan(""), "—", "Estimating…"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.seconds);
        EXPECT_EQ(Format::duration(c.seconds), c.duration);
        EXPECT_EQ(Format::timeRemaining(c.seconds), c.remaining);
    }
    EXPECT_EQ(Format::timeRemaining(std::nullopt), "Estimating…");
}

TEST_F(FormatTest, counts) {
    EXPECT_EQ(Format::count(1, "item"), "1 item");
    EXPECT_EQ(Format::count(0, "item"), "0 items");
    EXPECT_EQ(Format::count(1204, "item"), "1,204 items");
    EXPECT_EQ(Format::count(2, "copy", "copies"), "2 copies");
    EXPECT_EQ(Format::count(1, "copy", "copies"), "1 copy");
    EXPECT_EQ(Format::count(-1, "item"), "-1 items");
}

}  // namespace
}  // namespace tarn
