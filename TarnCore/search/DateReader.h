#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/Locale.h"
#include "TarnCore/search/QueryNumbers.h"
#include "TarnCore/search/QueryTokens.h"

namespace tarn {

/// A date as a person writes it: a day, a week, a month, … Some name a period that comes again and
/// again ("march", "friday"); which one is meant depends on what stands beside them.
struct DateTerm {
    enum class Form { period, month, dayOfMonth, weekday };
    Form form = Form::period;
    DateInterval interval;  ///< Of a `period`.
    std::string label;      ///< Of a `period`.
    /// The label begins with an English word that is written small inside a sentence.
    bool isPhrase = false;
    int month = 0;
    int day = 0;
    int weekday = 0;
    std::optional<int> year;  ///< Given with a month; else the month comes every year.
};

/// A number of calendar units: "3 days", "a couple of weeks", "month".
struct DateAmount {
    std::int64_t number = 1;
    CalendarUnit unit = CalendarUnit::day;
};

/// A DateTerm whose place in time is known.
struct DatePeriod {
    DateInterval interval;
    std::string label;
    bool isPhrase = false;
};

/// Reads single dates out of a query. Refers to what it is made of.
class DateReader {
public:
    DateReader(const QueryTokens& tokens, Date now, const Calendar& calendar, const Locale& locale)
        : tokens_(tokens), now_(now), calendar_(calendar), locale_(locale) {}

    /// The date that begins at a token. `allowsYear`: four digits alone are a year there.
    std::optional<Reading<DateTerm>> readTerm(std::size_t index, bool allowsYear) const;

    /// "3 days", "a few weeks"; `needsNumber` false takes "week", too.
    std::optional<Reading<DateAmount>> readAmount(std::size_t index, bool needsNumber) const;

    /// The latest period that the term can mean and that does not begin after `limit`.
    DatePeriod latest(const DateTerm& term, Date limit) const;
    /// The first one that does not begin before `limit`.
    DatePeriod earliest(const DateTerm& term, Date limit) const;

    /// So much time before now, exactly.
    Date before(DateAmount amount) const;
    /// From so much time ago until now: from the beginning of that day, or exactly for hours and
    /// minutes.
    DateInterval span(DateAmount amount) const;
    /// "3 days", "1 week".
    static std::string describe(DateAmount amount);
    std::string monthLabel(int month, int year, bool alwaysWithYear) const;

    Date now() const { return now_; }

private:
    using TermReading = std::optional<Reading<DateTerm>>;

    TermReading readDayWord(std::size_t index) const;
    TermReading readCurrent(std::size_t index) const;
    TermReading readPrevious(std::size_t index) const;
    TermReading readAgo(std::size_t index) const;
    TermReading readWeekday(std::size_t index) const;
    TermReading readMonth(std::size_t index) const;
    TermReading readDayAndMonth(std::size_t index) const;
    TermReading readNumeric(std::size_t index) const;
    /// A year behind a month, perhaps after "of": "2024", "last year".
    std::optional<Reading<int>> readYearOfMonth(std::size_t index) const;

    std::optional<int> readDayNumber(std::size_t index) const;
    /// The term that begins at `index` and has used `count` tokens, with the year behind it.
    Reading<DateTerm> dayOfMonth(int month, int day, std::size_t index, std::size_t count) const;

    DateInterval whole(CivilDay day) const;
    std::string dayLabel(CivilDay day) const;
    DateInterval day(int daysFromToday) const;
    DateInterval hours(int from, int to) const;
    DateInterval weekdayInWeek(int weekday, DateInterval week) const;
    DateTerm weekdayOfThisWeek(int weekday) const;
    DateTerm weekdayOfLastWeek(int weekday) const;
    DateInterval previous(CalendarUnit unit) const;
    DatePeriod periodOfYear(const DateTerm& term, int year) const;
    int currentYear() const { return calendar_.day(now_).year; }

    const QueryTokens& tokens_;
    Date now_;
    const Calendar& calendar_;
    const Locale& locale_;
};

}  // namespace tarn
