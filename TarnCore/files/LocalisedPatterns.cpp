#include "TarnCore/files/LocalisedPatterns.h"

#include <array>
#include <cassert>
#include <charconv>
#include <chrono>
#include <optional>
#include <string_view>
#include <utility>

#include <unicode/datefmt.h>
#include <unicode/dtptngen.h>
#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/measunit.h>
#include <unicode/numberformatter.h>
#include <unicode/reldatefmt.h>
#include <unicode/simpleformatter.h>
#include <unicode/timezone.h>

#include "TarnCore/base/ICU.h"
#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

constexpr std::array<std::string_view, 5> englishUnits = {"bytes", "KB", "MB", "GB", "TB"};
constexpr std::array<std::string_view, 12> englishMonths = {
    "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

/// "1234567" to "1,234,567".
std::string grouped(std::string digits) {
    const std::size_t first = digits.starts_with('-') ? 1 : 0;
    for (std::size_t i = digits.size(); i > first + 3;) digits.insert(i -= 3, 1, ',');
    return digits;
}

std::string americanNumber(double value, int mostDecimals) {
    char buffer[64];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, mostDecimals)
            .ptr;
    std::string text(buffer, end);
    std::string decimals;
    if (const std::size_t point = text.find('.'); point != text.npos) {
        decimals = text.substr(point);
        text.resize(point);
        decimals.resize(decimals.find_last_not_of('0') + 1);
        if (decimals == ".") decimals.clear();
    }
    return grouped(std::move(text)) + decimals;
}

/// A date pattern quotes its words ("{1} 'um' {0}"), which a SimpleFormatter would show.
icu::UnicodeString withoutQuotes(const icu::UnicodeString& pattern) {
    icu::UnicodeString out;
    for (int32_t i = 0; i < pattern.length(); ++i) {
        if (pattern[i] != u'\'') {
            out.append(pattern[i]);
        } else if (i + 1 < pattern.length() && pattern[i + 1] == u'\'') {
            out.append(pattern[i++]);
        }
    }
    return out;
}

std::string twoDigits(int n) { return (n < 10 ? "0" : "") + std::to_string(n); }

icu::MeasureUnit measureUnit(std::size_t unit) {
    switch (unit) {
        case 1:
            return icu::MeasureUnit::getKilobyte();
        case 2:
            return icu::MeasureUnit::getMegabyte();
        case 3:
            return icu::MeasureUnit::getGigabyte();
        case 4:
            return icu::MeasureUnit::getTerabyte();
        default:
            return icu::MeasureUnit::getByte();
    }
}

/// Our calendar is Gregorian throughout, while ICU's is Julian before 1582.
void keepGregorian(icu::DateFormat& format) {
    const auto* calendar = dynamic_cast<const icu::GregorianCalendar*>(format.getCalendar());
    if (calendar == nullptr) return;
    std::unique_ptr<icu::GregorianCalendar> own(calendar->clone());
    UErrorCode status = U_ZERO_ERROR;
    own->setGregorianChange(U_DATE_MIN, status);
    format.adoptCalendar(own.release());
}

}  // namespace

struct LocalisedPatterns::ICUFormats {
    using Numbers = icu::number::LocalizedNumberFormatter;

    icu::Locale locale;
    /// By unit and most decimals; the last row is for numbers without a unit.
    std::array<std::array<std::optional<Numbers>, 3>, englishUnits.size() + 1> numbers;
    std::unique_ptr<icu::DateFormat> dates;
    std::unique_ptr<icu::DateFormat> times;
    std::unique_ptr<icu::RelativeDateTimeFormatter> relative;
    std::optional<icu::SimpleFormatter> glue;

    explicit ICUFormats(const std::string& identifier) : locale(identifier.c_str()) {}

    std::string number(double value, int mostDecimals, std::optional<std::size_t> unit) {
        auto& slot =
            numbers[unit.value_or(englishUnits.size())][static_cast<std::size_t>(mostDecimals)];
        if (!slot) {
            slot = icu::number::NumberFormatter::withLocale(locale).precision(
                icu::number::Precision::maxFraction(mostDecimals));
            if (unit)
                slot =
                    slot->unit(measureUnit(*unit))
                        .unitWidth(*unit == 0 ? UNUM_UNIT_WIDTH_FULL_NAME : UNUM_UNIT_WIDTH_SHORT);
        }
        UErrorCode status = U_ZERO_ERROR;
        return ICU::utf8(slot->formatDouble(value, status).toString(status));
    }

    /// `format` made with `make` when it is not there yet, for wall-clock times given as if in UTC.
    template <class Make>
    static std::string formatted(std::unique_ptr<icu::DateFormat>& format, const Make& make,
                                 CivilDay day, int hour, int minute) {
        if (!format) {
            format.reset(make());
            if (!format) return {};
            format->adoptTimeZone(icu::TimeZone::getGMT()->clone());
            keepGregorian(*format);
        }
        const std::chrono::sys_days days{std::chrono::year{day.year} /
                                         std::chrono::month{static_cast<unsigned>(day.month)} /
                                         std::chrono::day{static_cast<unsigned>(day.day)}};
        const double seconds = static_cast<double>(days.time_since_epoch().count()) * 86400 +
                               hour * 3600 + minute * 60;
        icu::UnicodeString text;
        format->format(seconds * 1000, text);
        return ICU::utf8(text);
    }

    std::string relativeDay(UDateDirection direction) {
        UErrorCode status = U_ZERO_ERROR;
        if (!relative)
            relative = std::make_unique<icu::RelativeDateTimeFormatter>(
                locale, nullptr, UDAT_STYLE_LONG, UDISPCTX_CAPITALIZATION_FOR_BEGINNING_OF_SENTENCE,
                status);
        icu::UnicodeString text;
        relative->format(direction, UDAT_ABSOLUTE_DAY, text, status);
        return U_SUCCESS(status) ? ICU::utf8(text) : std::string();
    }

    std::string joined(const std::string& day, const std::string& time) {
        UErrorCode status = U_ZERO_ERROR;
        if (!glue) {
            const std::unique_ptr<icu::DateTimePatternGenerator> generator(
                icu::DateTimePatternGenerator::createInstance(locale, status));
            if (U_FAILURE(status)) return day + " " + time;
            // {0} is the time. The long form says "at" where the language does.
            const icu::UnicodeString pattern =
                withoutQuotes(generator->getDateTimeFormat(UDAT_LONG, status));
            glue.emplace(U_SUCCESS(status) ? pattern : ICU::text("{1} {0}"), 2, 2, status);
        }
        icu::UnicodeString text;
        glue->format(ICU::text(time), ICU::text(day), text, status);
        return U_SUCCESS(status) ? ICU::utf8(text) : day + " " + time;
    }
};

LocalisedPatterns::LocalisedPatterns(std::string localeIdentifier)
    : identifier_(std::move(localeIdentifier)),
      isAmerican_(identifier_ == "en_US" || identifier_ == "en" || identifier_ == "en_US_POSIX"),
      isEnglish_(identifier_ == "en" || identifier_.starts_with("en_")) {}

LocalisedPatterns::~LocalisedPatterns() = default;

LocalisedPatterns::ICUFormats* LocalisedPatterns::icu() {
    if (isAmerican_) return nullptr;
    if (!icu_) icu_ = std::make_unique<ICUFormats>(identifier_);
    return icu_.get();
}

std::string LocalisedPatterns::integer(std::int64_t n) {
    if (ICUFormats* formats = icu())
        return formats->number(static_cast<double>(n), 0, std::nullopt);
    return grouped(std::to_string(n));
}

std::string LocalisedPatterns::size(double value, int mostDecimals, std::size_t unit) {
    assert(unit < englishUnits.size());
    if (!isEnglish_) return icu()->number(value, mostDecimals, unit);
    // ICU writes "kB" and "3 byte"; English speakers are used to "KB" and "3 bytes".
    std::string text = isAmerican_ ? americanNumber(value, mostDecimals)
                                   : icu()->number(value, mostDecimals, std::nullopt);
    text += ' ';
    return text += unit == 0 && (value == 1 || value == -1) ? "byte" : englishUnits[unit];
}

std::string LocalisedPatterns::date(CivilDay day) {
    if (ICUFormats* formats = icu())
        return formats->formatted(
            formats->dates,
            [&] {
                return icu::DateFormat::createDateInstance(icu::DateFormat::kMedium,
                                                           formats->locale);
            },
            day, 0, 0);
    // Before the year 1 the calendar counts backwards: 0 is 1 BC.
    const std::string year = day.year > 0 ? std::to_string(day.year)
                                          : std::to_string(1 - std::int64_t{day.year}) + " BC";
    return std::string(englishMonths[static_cast<std::size_t>(day.month - 1)]) + " " +
           std::to_string(day.day) + ", " + year;
}

std::string LocalisedPatterns::time(int hour, int minute) {
    if (ICUFormats* formats = icu())
        return formats->formatted(
            formats->times,
            [&] {
                return icu::DateFormat::createTimeInstance(icu::DateFormat::kShort,
                                                           formats->locale);
            },
            {2001, 1, 1}, hour, minute);
    // A narrow no-break space, as ICU has it since CLDR 42.
    return std::to_string(hour % 12 == 0 ? 12 : hour % 12) + ":" + twoDigits(minute) +
           (hour < 12 ? "\u202FAM" : "\u202FPM");
}

std::string LocalisedPatterns::today() {
    return isEnglish_ ? "Today" : icu()->relativeDay(UDAT_DIRECTION_THIS);
}

std::string LocalisedPatterns::yesterday() {
    return isEnglish_ ? "Yesterday" : icu()->relativeDay(UDAT_DIRECTION_LAST);
}

std::string LocalisedPatterns::tomorrow() {
    return isEnglish_ ? "Tomorrow" : icu()->relativeDay(UDAT_DIRECTION_NEXT);
}

std::string LocalisedPatterns::joined(const std::string& day, const std::string& time) {
    return isEnglish_ ? day + " at " + time : icu()->joined(day, time);
}

}  // namespace tarn
