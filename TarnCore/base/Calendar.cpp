#include "TarnCore/base/Calendar.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include <unicode/basictz.h>
#include <unicode/timezone.h>

#include "TarnCore/base/ICU.h"
#include "TarnCore/base/Locale.h"

namespace tarn {
namespace {

using Days = std::int64_t;  // since 1970-01-01

constexpr double secondsPerDay = 86400;
constexpr double unixOffset = static_cast<double>(Date::unixOffset);
/// Years outside are brought to the nearest inside; keeps all arithmetic in range of its types.
constexpr int firstYear = -30000;
constexpr int lastYear = 30000;

Days daysOf(CivilDay day) {
    // Any month is taken: 13 is the next January, 0 the December before.
    const std::int64_t months =
        static_cast<std::int64_t>(std::clamp(day.year, firstYear, lastYear)) * 12 + day.month - 1;
    const std::int64_t year = months >= 0 ? months / 12 : -((-months + 11) / 12);
    const auto month = static_cast<unsigned>(months - year * 12 + 1);
    const std::chrono::year_month_day first{
        std::chrono::year{static_cast<int>(std::clamp<std::int64_t>(year, firstYear, lastYear))},
        std::chrono::month{month}, std::chrono::day{1}};
    return std::chrono::sys_days{first}.time_since_epoch().count() + day.day - 1;
}

CivilDay civil(Days days) {
    constexpr Days limit = 11'000'000;  // about 30,000 years
    const std::chrono::year_month_day date{std::chrono::sys_days{
        std::chrono::days{static_cast<int>(std::clamp<Days>(days, -limit, limit))}}};
    return {int(date.year()), int(unsigned(date.month())), int(unsigned(date.day()))};
}

int lengthOfMonth(int year, int month) {
    return int(unsigned((std::chrono::year{year} /
                         std::chrono::month{static_cast<unsigned>(month)} / std::chrono::last)
                            .day()));
}

int weekdayOf(Days days) {  // 1970-01-01 was a Thursday, 5
    return static_cast<int>(((days + 4) % 7 + 7) % 7) + 1;
}

}  // namespace

bool CivilDay::isValid() const {
    return year >= firstYear && year <= lastYear && month >= 1 && month <= 12 && day >= 1 &&
           day <= lengthOfMonth(year, month);
}

struct Calendar::Zone {
    std::string name;
    std::unique_ptr<icu::TimeZone> icu;

    explicit Zone(const std::string& wanted) {
        icu.reset(icu::TimeZone::createTimeZone(ICU::text(wanted)));
        icu::UnicodeString id;
        icu->getID(id);
        name = ICU::utf8(id);
        if (name == "Etc/Unknown") {
            name = "UTC";
            icu.reset(icu::TimeZone::createTimeZone(ICU::text(name)));
        }
    }

    /// Seconds east of UTC at an instant.
    double offset(Date date) const {
        int32_t raw = 0;
        int32_t saving = 0;
        UErrorCode status = U_ZERO_ERROR;
        icu->getOffset((date.seconds + unixOffset) * 1000.0, 0, raw, saving, status);
        return U_SUCCESS(status) ? (raw + saving) / 1000.0 : 0;
    }

    /// The instant of a wall-clock time, given as seconds since 1970 as if it were UTC. A time that
    /// is skipped moves forward by the gap; of one that comes twice, the first is meant.
    Date instant(double wall) const {
        const double guess = wall - unixOffset;
        const double before = offset({guess - secondsPerDay});
        const double after = offset({guess + secondsPerDay});
        const Date early{guess - before};
        if (offset(early) == before) return early;
        const Date late{guess - after};
        if (offset(late) == after) return late;
        return early;
    }

    /// The first instant whose wall-clock time is at or after `wall`; differs from instant() only
    /// inside a gap, where it is the moment of the change itself.
    Date firstInstantAtOrAfter(double wall) const {
        const Date date = instant(wall);
        if (wallSeconds(date) == wall) return date;
        UErrorCode status = U_ZERO_ERROR;
        if (const auto* basic = dynamic_cast<const icu::BasicTimeZone*>(icu.get())) {
            icu::TimeZoneTransition change;
            if (basic->getPreviousTransition((date.seconds + unixOffset) * 1000.0, true, change) &&
                U_SUCCESS(status))
                return {change.getTime() / 1000.0 - unixOffset};
        }
        return date;
    }

    double wallSeconds(Date date) const { return date.seconds + unixOffset + offset(date); }
};

Calendar::Calendar(const std::string& timeZone, int firstWeekday)
    : zone_(std::make_shared<const Zone>(timeZone)),
      firstWeekday_(std::clamp(firstWeekday, 1, 7)) {}

Calendar Calendar::current(const Locale& locale) {
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString id;
    if (zone) zone->getID(id);
    return Calendar(ICU::utf8(id), locale.firstWeekday());
}

const std::string& Calendar::timeZone() const { return zone_->name; }

CivilDay Calendar::day(Date date) const {
    return civil(static_cast<Days>(std::floor(zone_->wallSeconds(date) / secondsPerDay)));
}

std::pair<CivilDay, int> Calendar::dayAndMinute(Date date) const {
    const double wall = zone_->wallSeconds(date);
    const double days = std::floor(wall / secondsPerDay);
    const double minute = std::floor((wall - days * secondsPerDay) / 60);
    return {civil(static_cast<Days>(days)), std::clamp(static_cast<int>(minute), 0, 24 * 60 - 1)};
}

int Calendar::weekday(Date date) const {
    return weekdayOf(static_cast<Days>(std::floor(zone_->wallSeconds(date) / secondsPerDay)));
}

int Calendar::weekday(CivilDay day) const { return weekdayOf(daysOf(day)); }

Date Calendar::startOfDay(Date date) const { return start(day(date)); }

Date Calendar::start(CivilDay day) const {
    return zone_->firstInstantAtOrAfter(static_cast<double>(daysOf(day)) * secondsPerDay);
}

Date Calendar::at(CivilDay day, int hour, int minute, int second) const {
    return zone_->instant(static_cast<double>(daysOf(day)) * secondsPerDay + hour * 3600.0 +
                          minute * 60.0 + second);
}

DateInterval Calendar::interval(CalendarUnit unit, Date date) const {
    const CivilDay today = day(date);
    switch (unit) {
        case CalendarUnit::minute:
        case CalendarUnit::hour: {
            const double length = unit == CalendarUnit::hour ? 3600 : 60;
            const double wall = zone_->wallSeconds(date);
            const Date start = date - (wall - std::floor(wall / length) * length);
            return {start, start + length};
        }
        case CalendarUnit::day:
            return {start(today), start(adding(unit, 1, today))};
        case CalendarUnit::week: {
            const int back = (weekday(today) - firstWeekday_ + 7) % 7;
            const CivilDay first = adding(CalendarUnit::day, -back, today);
            return {start(first), start(adding(CalendarUnit::day, 7, first))};
        }
        case CalendarUnit::month: {
            const CivilDay first{today.year, today.month, 1};
            return {start(first), start(adding(unit, 1, first))};
        }
        case CalendarUnit::year:
            return {start({today.year, 1, 1}), start({today.year + 1, 1, 1})};
    }
    return {date, date};
}

CivilDay Calendar::adding(CalendarUnit unit, int count, CivilDay day) const {
    switch (unit) {
        case CalendarUnit::minute:
        case CalendarUnit::hour:
            return day;
        case CalendarUnit::day:
            return civil(daysOf(day) + count);
        case CalendarUnit::week:
            return civil(daysOf(day) + static_cast<Days>(count) * 7);
        case CalendarUnit::month:
        case CalendarUnit::year:
            break;
    }
    const std::int64_t step = unit == CalendarUnit::year ? 12 : 1;
    const std::int64_t months = std::clamp(
        static_cast<std::int64_t>(day.year) * 12 + day.month - 1 + step * count,
        static_cast<std::int64_t>(firstYear) * 12, static_cast<std::int64_t>(lastYear) * 12);
    const std::int64_t year = months >= 0 ? months / 12 : -((-months + 11) / 12);
    const int y = static_cast<int>(year);
    const int m = static_cast<int>(months - year * 12) + 1;
    return {y, m, std::min(day.day, lengthOfMonth(y, m))};
}

Date Calendar::adding(CalendarUnit unit, int count, Date date) const {
    if (unit == CalendarUnit::hour) return date + 3600.0 * count;
    if (unit == CalendarUnit::minute) return date + 60.0 * count;
    const double wall = zone_->wallSeconds(date);
    const double days = std::floor(wall / secondsPerDay);
    const CivilDay moved = adding(unit, count, civil(static_cast<Days>(days)));
    return zone_->instant(static_cast<double>(daysOf(moved)) * secondsPerDay +
                          (wall - days * secondsPerDay));
}

int Calendar::daysBetween(Date from, Date to) const {
    const auto dayNumber = [&](Date date) {
        return std::floor(zone_->wallSeconds(date) / secondsPerDay);
    };
    return static_cast<int>(std::clamp(dayNumber(to) - dayNumber(from), -2e9, 2e9));
}

}  // namespace tarn
