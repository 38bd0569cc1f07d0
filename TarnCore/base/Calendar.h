#pragma once

#include <compare>
#include <memory>
#include <string>
#include <utility>

#include "TarnCore/base/Date.h"

namespace tarn {

class Locale;

enum class CalendarUnit { minute, hour, day, week, month, year };

/// Half-open: `start` belongs to it, `end` does not.
struct DateInterval {
    Date start;
    Date end;
    bool operator==(const DateInterval&) const = default;
};

/// A day of the Gregorian calendar: month 1 to 12, day 1 to 31.
struct CivilDay {
    int year = 2001;
    int month = 1;
    int day = 1;
    auto operator<=>(const CivilDay&) const = default;
    bool isValid() const;
};

/// The Gregorian calendar in one time zone, with a first day of the week. A value, cheap to copy,
/// callable from any thread.
///
/// Days are calendar days: they may have 23 or 25 hours, and a day whose midnight does not exist
/// begins at the first instant that does.
class Calendar {
public:
    /// `timeZone` is an Olson name ("Europe/Berlin", "UTC"); an unknown one behaves as UTC.
    /// `firstWeekday` is 1 for Sunday … 7 for Saturday.
    Calendar(const std::string& timeZone, int firstWeekday);

    /// The zone of the process (TZ, /etc/localtime) and the first weekday of `locale`.
    static Calendar current(const Locale& locale);

    const std::string& timeZone() const;
    int firstWeekday() const { return firstWeekday_; }

    CivilDay day(Date date) const;
    /// The day, and the minutes of the wall clock since its midnight: 0 to 1439.
    std::pair<CivilDay, int> dayAndMinute(Date date) const;
    /// 1 = Sunday … 7 = Saturday.
    int weekday(Date date) const;
    int weekday(CivilDay day) const;

    Date startOfDay(Date date) const;
    /// The first instant of a day. Days outside the month carry over (month 13 is next January).
    Date start(CivilDay day) const;
    /// A wall-clock time of a day; one that the clocks skip is moved forward by what they skip.
    Date at(CivilDay day, int hour, int minute, int second = 0) const;

    /// The calendar period of `unit` that holds `date`. Weeks begin on firstWeekday().
    DateInterval interval(CalendarUnit unit, Date date) const;

    /// Moves by calendar units: hours and minutes are exact; days keep the wall-clock time;
    /// months and years keep the day, or take the last of a shorter month.
    Date adding(CalendarUnit unit, int count, Date date) const;

    CivilDay adding(CalendarUnit unit, int count, CivilDay day) const;

    /// Calendar days from the day of `from` to the day of `to`; negative when `to` is earlier.
    int daysBetween(Date from, Date to) const;

private:
    struct Zone;
    std::shared_ptr<const Zone> zone_;
    int firstWeekday_;
};

}  // namespace tarn
