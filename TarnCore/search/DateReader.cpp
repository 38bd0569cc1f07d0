#include "TarnCore/search/DateReader.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "TarnCore/search/QueryVocabulary.h"

namespace tarn {
namespace {

constexpr std::size_t anyLength = std::string_view::npos;

struct UnitFacts {
    std::string_view name;
    int most;  ///< About two thousand years: more reaches back to before any file.
};

UnitFacts facts(CalendarUnit unit) {
    switch (unit) {
        case CalendarUnit::minute:
            return {"minute", 1'051'200'000};
        case CalendarUnit::hour:
            return {"hour", 17'520'000};
        case CalendarUnit::day:
            return {"day", 730'000};
        case CalendarUnit::week:
            return {"week", 104'000};
        case CalendarUnit::month:
            return {"month", 24'000};
        case CalendarUnit::year:
            return {"year", 2'000};
    }
    return {};
}

int boundedCount(DateAmount amount) {
    return static_cast<int>(std::min<std::int64_t>(amount.number, facts(amount.unit).most));
}

DateTerm period(DateInterval interval, std::string label, bool isPhrase = true) {
    DateTerm term;
    term.interval = interval;
    term.label = std::move(label);
    term.isPhrase = isPhrase;
    return term;
}

DateTerm weekdayTerm(int weekday) {
    DateTerm term;
    term.form = DateTerm::Form::weekday;
    term.weekday = weekday;
    return term;
}

DateTerm monthTerm(int month) {
    DateTerm term;
    term.form = DateTerm::Form::month;
    term.month = month;
    return term;
}

/// A day that some years have.
bool isDayOfMonth(int month, int day) {
    constexpr int leapYear = 2000;
    return CivilDay{leapYear, month, day}.isValid();
}

/// "5", "05", "5th".
std::optional<int> dayNumber(std::string_view text) {
    for (const std::string_view ending : {"st", "nd", "rd", "th"}) {
        if (text.ends_with(ending)) {
            text.remove_suffix(ending.size());
            break;
        }
    }
    const auto number = QueryNumbers::parseDigits(text, 1, 2);
    if (!number || *number < 1 || *number > 31) return std::nullopt;
    return static_cast<int>(*number);
}

std::optional<int> fourDigits(std::string_view text, int first, int last) {
    const auto number = QueryNumbers::parseDigits(text, 4, 4);
    if (!number || *number < first || *number > last) return std::nullopt;
    return static_cast<int>(*number);
}

/// Three numbers between two separators.
std::optional<std::array<std::string_view, 3>> threeParts(std::string_view text,
                                                          std::string_view separators) {
    const std::size_t first = text.find_first_of(separators);
    if (first == text.npos) return std::nullopt;
    const std::size_t second = text.find_first_of(separators, first + 1);
    if (second == text.npos) return std::nullopt;
    return std::array{text.substr(0, first), text.substr(first + 1, second - first - 1),
                      text.substr(second + 1)};
}

constexpr std::size_t longestNumericDate = 10;

}  // namespace

std::string DateReader::describe(DateAmount amount) {
    std::string text = std::to_string(amount.number) + ' ';
    text += facts(amount.unit).name;
    if (amount.number != 1) text += 's';
    return text;
}

Date DateReader::before(DateAmount amount) const {
    return calendar_.adding(amount.unit, -boundedCount(amount), now_);
}

DateInterval DateReader::span(DateAmount amount) const {
    const Date start = before(amount);
    const bool isExact = amount.unit == CalendarUnit::hour || amount.unit == CalendarUnit::minute;
    return {isExact ? start : calendar_.startOfDay(start), now_};
}

std::string DateReader::monthLabel(int month, int year, bool alwaysWithYear) const {
    std::string label = locale_.monthName(month);
    if (alwaysWithYear || year != currentYear()) label += ' ' + std::to_string(year);
    return label;
}

DateInterval DateReader::whole(CivilDay day) const {
    return {calendar_.start(day), calendar_.start(calendar_.adding(CalendarUnit::day, 1, day))};
}

std::string DateReader::dayLabel(CivilDay day) const {
    return locale_.format(calendar_.start(day), "dMMMyyyy", calendar_);
}

DateInterval DateReader::day(int daysFromToday) const {
    return whole(calendar_.adding(CalendarUnit::day, daysFromToday, calendar_.day(now_)));
}

DateInterval DateReader::hours(int from, int to) const {
    const CivilDay today = calendar_.day(now_);
    return {from == 0 ? calendar_.start(today) : calendar_.at(today, from, 0),
            to == 24 ? day(1).start : calendar_.at(today, to, 0)};
}

DateInterval DateReader::weekdayInWeek(int weekday, DateInterval week) const {
    const int offset = (weekday - calendar_.firstWeekday() + 7) % 7;
    return whole(calendar_.adding(CalendarUnit::day, offset, calendar_.day(week.start)));
}

DateTerm DateReader::weekdayOfThisWeek(int weekday) const {
    return period(weekdayInWeek(weekday, calendar_.interval(CalendarUnit::week, now_)),
                  "This " + locale_.weekdayName(weekday));
}

DateTerm DateReader::weekdayOfLastWeek(int weekday) const {
    return period(weekdayInWeek(weekday, previous(CalendarUnit::week)),
                  locale_.weekdayName(weekday) + " last week", false);
}

DateInterval DateReader::previous(CalendarUnit unit) const {
    return calendar_.interval(unit, calendar_.interval(unit, now_).start - 1);
}

DatePeriod DateReader::periodOfYear(const DateTerm& term, int year) const {
    if (term.form == DateTerm::Form::month) {
        const CivilDay first{year, term.month, 1};
        return {{calendar_.start(first),
                 calendar_.start(calendar_.adding(CalendarUnit::month, 1, first))},
                monthLabel(term.month, year, term.year.has_value())};
    }
    // A 29th of February is taken from a year that has one: at most eight years further back.
    CivilDay day{year, term.month, term.day};
    while (!day.isValid()) --day.year;
    return {whole(day), dayLabel(day)};
}

DatePeriod DateReader::latest(const DateTerm& term, Date limit) const {
    switch (term.form) {
        case DateTerm::Form::period:
            return {term.interval, term.label, term.isPhrase};
        case DateTerm::Form::weekday: {
            const CivilDay last = calendar_.day(limit);
            const int back = (calendar_.weekday(last) - term.weekday + 7) % 7;
            return {whole(calendar_.adding(CalendarUnit::day, -back, last)),
                    locale_.weekdayName(term.weekday)};
        }
        case DateTerm::Form::month:
        case DateTerm::Form::dayOfMonth:
            break;
    }
    if (term.year) return periodOfYear(term, *term.year);
    const CivilDay last = calendar_.day(limit);
    const CivilDay wanted{last.year, term.month, std::max(term.day, 1)};
    return periodOfYear(term, wanted <= last ? last.year : last.year - 1);
}

DatePeriod DateReader::earliest(const DateTerm& term, Date limit) const {
    DatePeriod found = latest(term, limit);
    if (term.form == DateTerm::Form::period || term.year || found.interval.start >= limit) {
        return found;
    }
    if (term.form == DateTerm::Form::weekday) {
        return latest(term, calendar_.adding(CalendarUnit::day, 7, found.interval.start));
    }
    return periodOfYear(term, calendar_.day(found.interval.start).year + 1);
}

std::optional<Reading<DateAmount>> DateReader::readAmount(std::size_t index,
                                                          bool needsNumber) const {
    std::size_t count = 0;
    DateAmount amount;
    bool hasNumber = false;
    if (tokens_.isAny(index, {"a", "the"}) && tokens_.isAny(index + 1, {"couple", "few"})) ++count;
    if (const Token* token = tokens_.unquoted(index + count)) {
        if (const auto number = tokens_.word(index + count).number) {
            amount.number = *number;
            hasNumber = true;
        } else if (const auto digits = QueryNumbers::parseDigits(token->text, 1, anyLength)) {
            amount.number = *digits;
            hasNumber = true;
        }
    }
    if (hasNumber) {
        ++count;
        if (tokens_.is(index + count, "of")) ++count;
    } else if (needsNumber || count > 0) {
        return std::nullopt;
    }
    const auto unit = tokens_.word(index + count).unit;
    if (!unit) return std::nullopt;
    amount.unit = *unit;
    return Reading<DateAmount>{amount, count + 1};
}

DateReader::TermReading DateReader::readDayWord(std::size_t index) const {
    if (tokens_.isAny(index, {"today", "tonight"})) {
        return Reading<DateTerm>{period(day(0), "Today"), 1};
    }
    if (tokens_.is(index, "yesterday")) return Reading<DateTerm>{period(day(-1), "Yesterday"), 1};
    if (tokens_.is(index, "tomorrow")) return Reading<DateTerm>{period(day(1), "Tomorrow"), 1};
    return std::nullopt;
}

DateReader::TermReading DateReader::readCurrent(std::size_t index) const {
    if (!tokens_.isAny(index, {"this", "current"})) return std::nullopt;
    const QueryWord& next = tokens_.word(index + 1);
    if (next.unit) {
        const int weekday = tokens_.word(index + 2).weekday;
        if (*next.unit == CalendarUnit::week && weekday != 0) {
            return Reading<DateTerm>{weekdayOfThisWeek(weekday), 3};
        }
        return Reading<DateTerm>{period(calendar_.interval(*next.unit, now_),
                                        "This " + std::string(facts(*next.unit).name)),
                                 2};
    }
    if (tokens_.is(index, "current")) return std::nullopt;
    if (next.weekday != 0) return Reading<DateTerm>{weekdayOfThisWeek(next.weekday), 2};
    if (next.month != 0) {
        DatePeriod month = periodOfYear(monthTerm(next.month), currentYear());
        return Reading<DateTerm>{period(month.interval, std::move(month.label), false), 2};
    }
    const struct {
        std::string_view word;
        int from, to;
        const char* label;
    } partsOfDay[] = {{"morning", 0, 12, "This morning"},
                      {"afternoon", 12, 18, "This afternoon"},
                      {"evening", 18, 24, "This evening"}};
    for (const auto& part : partsOfDay) {
        if (tokens_.is(index + 1, part.word)) {
            return Reading<DateTerm>{period(hours(part.from, part.to), part.label), 2};
        }
    }
    return std::nullopt;
}

DateReader::TermReading DateReader::readPrevious(std::size_t index) const {
    const bool isPast = tokens_.is(index, "past");
    if (!isPast && !tokens_.isAny(index, {"last", "previous"})) return std::nullopt;
    // "past month" is a span of time, "last month" a page of the calendar.
    if (auto amount = readAmount(index + 1, !isPast)) {
        return Reading<DateTerm>{period(span(amount->value), "Last " + describe(amount->value)),
                                 amount->count + 1};
    }
    if (isPast) return std::nullopt;
    const QueryWord& next = tokens_.word(index + 1);
    if (next.unit) {
        const int weekday = tokens_.word(index + 2).weekday;
        if (*next.unit == CalendarUnit::week && weekday != 0) {
            return Reading<DateTerm>{weekdayOfLastWeek(weekday), 3};
        }
        return Reading<DateTerm>{
            period(previous(*next.unit), "Last " + std::string(facts(*next.unit).name)), 2};
    }
    if (next.weekday != 0) {
        const DatePeriod found = latest(weekdayTerm(next.weekday), day(-1).start);
        return Reading<DateTerm>{period(found.interval, "Last " + found.label), 2};
    }
    if (next.month != 0) {
        DatePeriod found = latest(monthTerm(next.month), previous(CalendarUnit::month).start);
        return Reading<DateTerm>{period(found.interval, std::move(found.label), false), 2};
    }
    return std::nullopt;
}

DateReader::TermReading DateReader::readAgo(std::size_t index) const {
    const auto amount = readAmount(index, true);
    if (!amount || !tokens_.is(index + amount->count, "ago")) return std::nullopt;
    return Reading<DateTerm>{period(calendar_.interval(amount->value.unit, before(amount->value)),
                                    describe(amount->value) + " ago", false),
                             amount->count + 1};
}

DateReader::TermReading DateReader::readWeekday(std::size_t index) const {
    const int weekday = tokens_.word(index).weekday;
    if (weekday == 0) return std::nullopt;
    const std::size_t week = tokens_.is(index + 1, "of") ? index + 2 : index + 1;
    if (tokens_.is(week + 1, "week")) {
        const std::size_t count = week + 2 - index;
        if (tokens_.isAny(week, {"last", "previous"})) {
            return Reading<DateTerm>{weekdayOfLastWeek(weekday), count};
        }
        if (tokens_.is(week, "this")) return Reading<DateTerm>{weekdayOfThisWeek(weekday), count};
    }
    return Reading<DateTerm>{weekdayTerm(weekday), 1};
}

std::optional<Reading<int>> DateReader::readYearOfMonth(std::size_t index) const {
    const std::size_t of = tokens_.is(index, "of") ? 1 : 0;
    if (const Token* token = tokens_.unquoted(index + of)) {
        if (const auto year = fourDigits(token->text, 1000, 9999)) {
            return Reading<int>{*year, of + 1};
        }
    }
    if (tokens_.word(index + of + 1).unit != CalendarUnit::year) return std::nullopt;
    if (tokens_.is(index + of, "last")) return Reading<int>{currentYear() - 1, of + 2};
    if (tokens_.is(index + of, "this")) return Reading<int>{currentYear(), of + 2};
    return std::nullopt;
}

DateReader::TermReading DateReader::readMonth(std::size_t index) const {
    const int month = tokens_.word(index).month;
    if (month == 0) return std::nullopt;
    if (const auto year = readYearOfMonth(index + 1)) {
        DateTerm term = monthTerm(month);
        term.year = year->value;
        return Reading<DateTerm>{std::move(term), 1 + year->count};
    }
    // "march 5", "march 5th 2024"
    const auto day = readDayNumber(index + 1);
    if (!day || !isDayOfMonth(month, *day)) return Reading<DateTerm>{monthTerm(month), 1};
    return dayOfMonth(month, *day, index, 2);
}

DateReader::TermReading DateReader::readDayAndMonth(std::size_t index) const {
    const auto day = readDayNumber(index);
    if (!day) return std::nullopt;
    const std::size_t of = tokens_.is(index + 1, "of") ? 1 : 0;
    const int month = tokens_.word(index + 1 + of).month;
    if (month == 0 || !isDayOfMonth(month, *day)) return std::nullopt;
    return dayOfMonth(month, *day, index, 2 + of);
}

std::optional<int> DateReader::readDayNumber(std::size_t index) const {
    const Token* token = tokens_.unquoted(index);
    return token != nullptr ? dayNumber(token->text) : std::nullopt;
}

Reading<DateTerm> DateReader::dayOfMonth(int month, int day, std::size_t index,
                                         std::size_t count) const {
    DateTerm term = monthTerm(month);
    term.form = DateTerm::Form::dayOfMonth;
    term.day = day;
    const auto year = readYearOfMonth(index + count);
    if (year && CivilDay{year->value, month, day}.isValid()) {
        term.year = year->value;
        count += year->count;
    }
    return {std::move(term), count};
}

DateReader::TermReading DateReader::readNumeric(std::size_t index) const {
    const Token* token = tokens_.unquoted(index);
    if (token == nullptr || token->text.size() > longestNumericDate) return std::nullopt;
    std::optional<CivilDay> found;
    if (const auto parts = threeParts(token->text, "-")) {
        const auto year = QueryNumbers::parseDigits((*parts)[0], 4, 4);
        const auto month = QueryNumbers::parseDigits((*parts)[1], 1, 2);
        const auto day = QueryNumbers::parseDigits((*parts)[2], 1, 2);
        if (!year || !month || !day) return std::nullopt;
        found = {static_cast<int>(*year), static_cast<int>(*month), static_cast<int>(*day)};
    } else if (const auto written = threeParts(token->text, "/.")) {
        const auto first = QueryNumbers::parseDigits((*written)[0], 1, 2);
        const auto second = QueryNumbers::parseDigits((*written)[1], 1, 2);
        const auto year = QueryNumbers::parseDigits((*written)[2], 2, 4);
        if (!first || !second || !year || (*written)[2].size() == 3) return std::nullopt;
        const int fullYear = static_cast<int>((*written)[2].size() == 2 ? *year + 2000 : *year);
        const CivilDay dayFirst{fullYear, static_cast<int>(*second), static_cast<int>(*first)};
        const CivilDay monthFirst{fullYear, static_cast<int>(*first), static_cast<int>(*second)};
        found = locale_.writesDayBeforeMonth() ? dayFirst : monthFirst;
        if (!found->isValid()) found = *found == dayFirst ? monthFirst : dayFirst;
    }
    if (!found || !found->isValid() || found->year < 1) return std::nullopt;
    return Reading<DateTerm>{period(whole(*found), dayLabel(*found), false), 1};
}

std::optional<Reading<DateTerm>> DateReader::readTerm(std::size_t index, bool allowsYear) const {
    if (tokens_.is(index, "the") && !tokens_.is(index + 1, "the")) {
        auto reading = readTerm(index + 1, false);
        if (reading) reading->count += 1;
        return reading;
    }
    const Token* token = tokens_.unquoted(index);
    if (token == nullptr) return std::nullopt;
    if (auto reading = readDayWord(index)) return reading;
    if (auto reading = readCurrent(index)) return reading;
    if (auto reading = readPrevious(index)) return reading;
    if (auto reading = readAgo(index)) return reading;
    if (auto reading = readWeekday(index)) return reading;
    if (auto reading = readMonth(index)) return reading;
    if (auto reading = readDayAndMonth(index)) return reading;
    if (auto reading = readNumeric(index)) return reading;
    if (!allowsYear) return std::nullopt;
    // Further away than this, four digits are more likely a number than a year.
    const auto year = fourDigits(token->text, 1900, 2199);
    if (!year) return std::nullopt;
    return Reading<DateTerm>{
        period({calendar_.start({*year, 1, 1}), calendar_.start({*year + 1, 1, 1})},
               std::to_string(*year), false),
        1};
}

}  // namespace tarn
