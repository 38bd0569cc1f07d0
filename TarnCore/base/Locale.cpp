#include "TarnCore/base/Locale.h"

#include <array>
#include <cstdlib>
#include <map>
#include <mutex>

#include <unicode/calendar.h>
#include <unicode/dtfmtsym.h>
#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/ICU.h"

namespace tarn {

struct Locale::State {
    explicit State(std::string name) : identifier(std::move(name)), icu(identifier.c_str()) {}

    std::string identifier;
    icu::Locale icu;
    std::mutex mutex;  // guards everything below
    std::array<std::string, 12> months;
    std::array<std::string, 7> weekdays;
    bool hasNames = false;
    std::unique_ptr<icu::DateTimePatternGenerator> generator;
    /// By skeleton and time zone.
    std::map<std::pair<std::string, std::string>, std::unique_ptr<icu::SimpleDateFormat>> formats;

    void readNames() {  // with the mutex held
        if (hasNames) return;
        hasNames = true;
        UErrorCode status = U_ZERO_ERROR;
        const icu::DateFormatSymbols symbols(icu, status);
        if (U_FAILURE(status)) return;
        int32_t count = 0;
        const icu::UnicodeString* names = symbols.getMonths(
            count, icu::DateFormatSymbols::STANDALONE, icu::DateFormatSymbols::WIDE);
        for (int32_t i = 0; i < count && i < 12; ++i)
            months[static_cast<std::size_t>(i)] = ICU::utf8(names[i]);
        names = symbols.getWeekdays(count, icu::DateFormatSymbols::STANDALONE,
                                    icu::DateFormatSymbols::WIDE);
        for (int32_t i = 1; i < count && i <= 7; ++i)  // index 0 is unused
            weekdays[static_cast<std::size_t>(i - 1)] = ICU::utf8(names[i]);
    }

    icu::UnicodeString pattern(const std::string& skeleton) {  // with the mutex held
        UErrorCode status = U_ZERO_ERROR;
        if (!generator) generator.reset(icu::DateTimePatternGenerator::createInstance(icu, status));
        if (U_FAILURE(status) || !generator) return ICU::text("y-MM-dd");
        icu::UnicodeString best = generator->getBestPattern(ICU::text(skeleton), status);
        return U_SUCCESS(status) ? best : ICU::text("y-MM-dd");
    }
};

Locale::Locale(std::string identifier) : state_(std::make_shared<State>(std::move(identifier))) {}

Locale Locale::current() {
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value == nullptr || *value == '\0') continue;
        std::string name = value;
        name.resize(std::min(name.find_first_of(".@"), name.size()));
        if (name == "C" || name == "POSIX") break;
        return Locale(std::move(name));
    }
    return Locale("en_US");
}

const std::string& Locale::identifier() const { return state_->identifier; }

std::string Locale::monthName(int month) const {
    const std::lock_guard lock(state_->mutex);
    state_->readNames();
    return month >= 1 && month <= 12 ? state_->months[static_cast<std::size_t>(month - 1)] : "";
}

std::string Locale::weekdayName(int weekday) const {
    const std::lock_guard lock(state_->mutex);
    state_->readNames();
    return weekday >= 1 && weekday <= 7 ? state_->weekdays[static_cast<std::size_t>(weekday - 1)]
                                        : "";
}

std::string Locale::format(Date date, const std::string& skeleton, const Calendar& calendar) const {
    const std::lock_guard lock(state_->mutex);
    auto& format = state_->formats[{skeleton, calendar.timeZone()}];
    if (!format) {
        UErrorCode status = U_ZERO_ERROR;
        format =
            std::make_unique<icu::SimpleDateFormat>(state_->pattern(skeleton), state_->icu, status);
        if (U_FAILURE(status)) {
            format.reset();
            return date.iso8601();
        }
        format->adoptTimeZone(icu::TimeZone::createTimeZone(ICU::text(calendar.timeZone())));
    }
    icu::UnicodeString text;
    format->format((date.seconds + static_cast<double>(Date::unixOffset)) * 1000.0, text);
    return ICU::utf8(text);
}

bool Locale::writesDayBeforeMonth() const {
    const std::lock_guard lock(state_->mutex);
    const icu::UnicodeString pattern = state_->pattern("yMd");
    const int32_t day = pattern.indexOf(u'd');
    const int32_t month = pattern.indexOf(u'M');
    return day >= 0 && month >= 0 && day < month;
}

int Locale::firstWeekday() const {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(
        icu::Calendar::createInstance(icu::TimeZone::getGMT()->clone(), state_->icu, status));
    if (U_FAILURE(status) || !calendar) return 1;
    const int first = calendar->getFirstDayOfWeek(status);
    return U_SUCCESS(status) ? first : 1;
}

}  // namespace tarn
