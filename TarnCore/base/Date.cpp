#include "TarnCore/base/Date.h"

#include <charconv>
#include <chrono>
#include <cstdio>

namespace tarn {
namespace {

/// Takes exactly `digits` decimal digits off the front.
std::optional<int> takeNumber(std::string_view& text, std::size_t digits) {
    if (text.size() < digits) return std::nullopt;
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + digits, value);
    if (error != std::errc{} || end != text.data() + digits || value < 0) return std::nullopt;
    text.remove_prefix(digits);
    return value;
}

bool take(std::string_view& text, char c) {
    if (text.empty() || text[0] != c) return false;
    text.remove_prefix(1);
    return true;
}

}  // namespace

std::optional<Date> Date::fromISO8601(std::string_view text) {
    const auto year = takeNumber(text, 4);
    if (!year || !take(text, '-')) return std::nullopt;
    const auto month = takeNumber(text, 2);
    if (!month || !take(text, '-')) return std::nullopt;
    const auto day = takeNumber(text, 2);
    if (!day) return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year{*year},
                                           std::chrono::month{static_cast<unsigned>(*month)},
                                           std::chrono::day{static_cast<unsigned>(*day)}};
    if (!date.ok()) return std::nullopt;
    double seconds = static_cast<double>(
        std::chrono::sys_days{date}.time_since_epoch().count() * 86400LL - unixOffset);
    if (text.empty()) return Date{seconds};
    if (!take(text, 'T')) return std::nullopt;
    const auto hour = takeNumber(text, 2);
    if (!hour || *hour > 24 || !take(text, ':')) return std::nullopt;
    const auto minute = takeNumber(text, 2);
    if (!minute || *minute > 59) return std::nullopt;
    seconds += *hour * 3600.0 + *minute * 60.0;
    if (take(text, ':')) {
        const auto second = takeNumber(text, 2);
        if (!second || *second > 60) return std::nullopt;
        seconds += *second;
        if (take(text, '.')) {
            double place = 0.1;
            while (!text.empty() && text[0] >= '0' && text[0] <= '9') {
                seconds += (text[0] - '0') * place;
                place /= 10;
                text.remove_prefix(1);
            }
        }
    }
    if (take(text, 'Z')) return text.empty() ? std::optional(Date{seconds}) : std::nullopt;
    const bool east = take(text, '+');
    if (!east && !take(text, '-')) return std::nullopt;
    const auto offsetHours = takeNumber(text, 2);
    if (!offsetHours) return std::nullopt;
    take(text, ':');
    const auto offsetMinutes = takeNumber(text, 2);
    if (!offsetMinutes || !text.empty()) return std::nullopt;
    const double offset = *offsetHours * 3600.0 + *offsetMinutes * 60.0;
    return Date{east ? seconds - offset : seconds + offset};
}

std::string Date::iso8601() const {
    using namespace std::chrono;
    const sys_seconds time{std::chrono::seconds{unixSeconds()}};
    const sys_days days = floor<std::chrono::days>(time);
    const year_month_day date{days};
    const hh_mm_ss clock{time - days};
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", int(date.year()),
                  unsigned(date.month()), unsigned(date.day()), int(clock.hours().count()),
                  int(clock.minutes().count()), int(clock.seconds().count()));
    return text;
}

}  // namespace tarn
