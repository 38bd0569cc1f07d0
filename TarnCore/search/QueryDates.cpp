#include "TarnCore/search/QueryDates.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/search/DateReader.h"

namespace tarn::QueryDates {
namespace {

using FilterReading = std::optional<Reading<DateFilter>>;

Reading<DateFilter> reading(std::optional<Date> start, std::optional<Date> end, std::string label,
                            std::size_t count) {
    return {{start, end, DateField::modified, std::move(label)}, count};
}

/// The label as it stands behind another word.
std::string inSentence(const DatePeriod& period) {
    return period.isPhrase ? Text::withFirstLowered(period.label) : period.label;
}

/// A span of time and the words around it, as in "within the last 2 weeks".
class FilterReader {
public:
    FilterReader(const QueryTokens& tokens, const DateReader& dates)
        : tokens_(tokens), dates_(dates) {}

    FilterReading read(std::size_t index, bool allowsYear) const {
        if (auto found = readAge(index)) return found;
        if (auto found = readOpen(index)) return found;
        if (auto found = withinSpan(index)) return found;
        if (tokens_.isAny(index, {"recent", "recently", "lately", "newest", "latest"})) {
            return spanReading({7, CalendarUnit::day}, 1);
        }
        return readDates(index, allowsYear);
    }

private:
    FilterReading spanReading(DateAmount amount, std::size_t count) const {
        const DateInterval span = dates_.span(amount);
        return reading(span.start, span.end, "Last " + DateReader::describe(amount), count);
    }

    Reading<DateFilter> olderThan(DateAmount amount, std::size_t count) const {
        return reading(std::nullopt, dates_.before(amount),
                       "Older than " + DateReader::describe(amount), count);
    }

    Reading<DateFilter> newerThan(DateAmount amount, std::size_t count) const {
        return reading(dates_.before(amount), std::nullopt, "Last " + DateReader::describe(amount),
                       count);
    }

    /// "older than 2 weeks", "newer than march", "over a year old", "less than 3 days ago".
    FilterReading readAge(std::size_t index) const {
        const bool isOlder = tokens_.is(index, "older");
        if ((isOlder || tokens_.isAny(index, {"newer", "younger"})) &&
            tokens_.is(index + 1, "than")) {
            const auto amount = dates_.readAmount(index + 2, true);
            if (amount) {
                const std::size_t ago = tokens_.is(index + 2 + amount->count, "ago") ? 1 : 0;
                const std::size_t count = 2 + amount->count + ago;
                return isOlder ? olderThan(amount->value, count) : newerThan(amount->value, count);
            }
            const auto term = dates_.readTerm(index + 2, true);
            if (!term) return std::nullopt;
            const DatePeriod period = dates_.latest(term->value, dates_.now());
            if (isOlder) {
                return reading(std::nullopt, period.interval.start,
                               "Older than " + inSentence(period), 2 + term->count);
            }
            return reading(period.interval.end, std::nullopt, "After " + inSentence(period),
                           2 + term->count);
        }
        const bool hasThan = tokens_.is(index + 1, "than");
        const bool isMore = tokens_.is(index, "over") || (tokens_.is(index, "more") && hasThan);
        const bool isLess = tokens_.is(index, "under") || (tokens_.is(index, "less") && hasThan);
        if (!isMore && !isLess) return std::nullopt;
        const std::size_t first = index + (hasThan ? 2 : 1);
        const auto amount = dates_.readAmount(first, true);
        if (!amount || !tokens_.isAny(first + amount->count, {"old", "ago"})) return std::nullopt;
        const std::size_t count = first + amount->count + 1 - index;
        return isMore ? olderThan(amount->value, count) : newerThan(amount->value, count);
    }

    /// "before march", "prior to 2020", "after monday", "since last week", "since 3 days".
    FilterReading readOpen(std::size_t index) const {
        const bool isBefore = tokens_.is(index, "before");
        const bool isPrior = tokens_.is(index, "prior") && tokens_.is(index + 1, "to");
        const bool isAfter = tokens_.is(index, "after");
        const bool isSince = tokens_.is(index, "since");
        if (!isBefore && !isPrior && !isAfter && !isSince) return std::nullopt;
        const std::size_t words = isPrior ? 2 : 1;
        const auto term = dates_.readTerm(index + words, true);
        if (!term) {
            const auto amount = dates_.readAmount(index + words, true);
            if (!isSince || !amount) return std::nullopt;
            return reading(dates_.span(amount->value).start, std::nullopt,
                           "Last " + DateReader::describe(amount->value), words + amount->count);
        }
        const DatePeriod period = dates_.latest(term->value, dates_.now());
        const std::size_t count = words + term->count;
        if (isAfter) {
            return reading(period.interval.end, std::nullopt, "After " + inSentence(period), count);
        }
        if (isSince) {
            return reading(period.interval.start, std::nullopt, "Since " + inSentence(period),
                           count);
        }
        return reading(std::nullopt, period.interval.start, "Before " + inSentence(period), count);
    }

    /// "between A and B", "from A to B", "A to B", "from A", "A".
    FilterReading readDates(std::size_t index, bool allowsYear) const {
        const bool isBetween = tokens_.is(index, "between");
        const bool hasWord = isBetween || tokens_.is(index, "from");
        std::size_t count = hasWord ? 1 : 0;
        const auto first = dates_.readTerm(index + count, hasWord || allowsYear);
        if (!first) return std::nullopt;
        count += first->count;
        const auto second = readRangeEnd(index + count, hasWord);
        if (second) return range(first->value, second->value, count + second->count);
        if (isBetween) return std::nullopt;
        DatePeriod period = dates_.latest(first->value, dates_.now());
        return reading(period.interval.start, period.interval.end, std::move(period.label), count);
    }

    /// "to B"; behind a first word also "and B".
    std::optional<Reading<DateTerm>> readRangeEnd(std::size_t index, bool allowsAnd) const {
        if (!tokens_.isAny(index, {"to", "-", "–"}) && !(allowsAnd && tokens_.is(index, "and"))) {
            return std::nullopt;
        }
        auto term = dates_.readTerm(index + 1, true);
        if (!term && tokens_.is(index + 1, "now")) {
            term = Reading<DateTerm>{{}, 1};
            term->value.interval = {dates_.now(), dates_.now()};
            term->value.label = "Now";
            term->value.isPhrase = true;
        }
        if (term) ++term->count;
        return term;
    }

    Reading<DateFilter> range(const DateTerm& first, const DateTerm& second,
                              std::size_t count) const {
        auto [from, to] = resolve(first, second);
        // "January to March 2024": one year is enough for both.
        if (first.form == DateTerm::Form::month && second.form == DateTerm::Form::month &&
            from.label != to.label) {
            const auto year = to.label.find_last_of(' ');
            if (year != to.label.npos && from.label.ends_with(to.label.substr(year))) {
                from.label.resize(from.label.size() - (to.label.size() - year));
            }
        }
        std::string label = from.label;
        if (to.label != label) label += " to " + inSentence(to);
        return reading(from.interval.start, to.interval.end, std::move(label), count);
    }

    std::pair<DatePeriod, DatePeriod> resolve(const DateTerm& first, const DateTerm& second) const {
        const bool firstIsDated = first.form != DateTerm::Form::weekday &&
                                  (first.form == DateTerm::Form::period || first.year);
        DatePeriod to = dates_.latest(second, dates_.now());
        if (firstIsDated) {
            DatePeriod from = dates_.latest(first, dates_.now());
            const bool sharesYear = first.year && !second.year;
            if (sharesYear || to.interval.start < from.interval.start) {
                to = dates_.earliest(second, from.interval.start);
            }
            if (to.interval.start < from.interval.start) std::swap(from, to);
            return {std::move(from), std::move(to)};
        }
        return {dates_.latest(first, to.interval.start), std::move(to)};
    }

    /// Spans behind "within", "in", "during" and "over": "within 3 days", "in the past month",
    /// "over the last week". Without "the", "in last week" and "during last week" are the week
    /// before this one.
    FilterReading withinSpan(std::size_t index) const {
        const bool alwaysSpan = tokens_.isAny(index, {"within", "over"});
        if (!alwaysSpan && !tokens_.isAny(index, {"in", "during"})) return std::nullopt;
        std::size_t count = 1;
        const bool hasThe = tokens_.is(index + count, "the");
        if (hasThe) ++count;
        const bool isPast = tokens_.is(index + count, "past");
        const bool isLast = isPast || tokens_.isAny(index + count, {"last", "previous"});
        if (isLast) ++count;
        const bool needsNumber =
            !(isPast || (isLast && (alwaysSpan || hasThe)) || tokens_.is(index, "within"));
        const auto amount = dates_.readAmount(index + count, needsNumber);
        if (!amount) return std::nullopt;
        count += amount->count;
        if (tokens_.is(index + count, "ago")) return std::nullopt;
        return spanReading(amount->value, count);
    }

    const QueryTokens& tokens_;
    const DateReader& dates_;
};

constexpr std::size_t mostConnectors = 3;

bool isConnector(const QueryTokens& tokens, std::size_t index) {
    return tokens.isAny(index, {"from", "in", "on", "at", "of", "during", "the"});
}

}  // namespace

std::optional<Reading<DateFilter>> parseDate(const QueryTokens& tokens, std::size_t index, Date now,
                                             const Calendar& calendar, const Locale& locale) {
    const DateReader dates(tokens, now, calendar, locale);
    const FilterReader filters(tokens, dates);
    if (auto found = filters.read(index, false)) return found;
    std::size_t connectors = 0;
    while (connectors < mostConnectors && isConnector(tokens, index + connectors)) ++connectors;
    if (connectors == 0) return std::nullopt;
    const std::size_t first = index + connectors;
    auto found = filters.read(first, tokens.isAny(first - 1, {"in", "from", "during"}));
    if (found) found->count += connectors;
    return found;
}

std::optional<DateFilter> combined(const DateFilter& first, const DateFilter& second) {
    const DateFilter& from = first.start ? first : second;
    const DateFilter& to = first.start ? second : first;
    if (!from.start || from.end || to.start || !to.end || *to.end <= *from.start) {
        return std::nullopt;
    }
    return DateFilter{from.start, to.end, second.field,
                      from.label + ", " + Text::withFirstLowered(to.label)};
}

}  // namespace tarn::QueryDates
