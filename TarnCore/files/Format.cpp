#include "TarnCore/files/Format.h"

#include <array>
#include <chrono>
#include <cmath>
#include <limits>
#include <memory>
#include <unordered_map>
#include <utility>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/LocalisedPatterns.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::Format {
namespace {

constexpr std::string_view none = "—";

std::int64_t dayNumber(CivilDay day) {
    return std::chrono::sys_days{std::chrono::year{day.year} /
                                 std::chrono::month{static_cast<unsigned>(day.month)} /
                                 std::chrono::day{static_cast<unsigned>(day.day)}}
        .time_since_epoch()
        .count();
}

/// The formatters of one locale and zone, with what was formatted lately.
class State {
public:
    State(const Locale& locale, std::optional<Calendar> calendar)
        : locale_(locale), patterns_(locale.identifier()), calendar_(std::move(calendar)) {}

    LocalisedPatterns& patterns() { return patterns_; }

    /// Made when first needed: finding the zone takes longer than a small listing.
    const Calendar& calendar() {
        if (!calendar_) calendar_ = Calendar::current(locale_);
        return *calendar_;
    }

    /// "Today", "Yesterday", or the date.
    std::string dayText(CivilDay day) {
        const std::int64_t number = dayNumber(day);
        switch (today() - number) {
            case 0:
                return patterns_.today();
            case 1:
                return patterns_.yesterday();
            case -1:
                return patterns_.tomorrow();
            default:
                break;
        }
        constexpr std::size_t mostRemembered = 4096;
        if (days_.size() > mostRemembered) days_.clear();
        std::string& text = days_[number];
        if (text.empty()) text = patterns_.date(day);
        return text;
    }

    const std::string& timeText(int minuteOfDay) {
        std::string& text = times_[static_cast<std::size_t>(minuteOfDay)];
        if (text.empty()) text = patterns_.time(minuteOfDay / 60, minuteOfDay % 60);
        return text;
    }

private:
    /// The number of the present day, asked of the calendar once a day.
    std::int64_t today() {
        const Date now = Platform::current().clock->now();
        if (!(now >= todaysHours_.start && now < todaysHours_.end)) {
            todaysHours_ = calendar().interval(CalendarUnit::day, now);
            today_ = dayNumber(calendar().day(now));
        }
        return today_;
    }

    Locale locale_;
    LocalisedPatterns patterns_;
    std::optional<Calendar> calendar_;
    DateInterval todaysHours_;
    std::int64_t today_ = 0;
    std::unordered_map<std::int64_t, std::string> days_;  // by dayNumber
    std::array<std::string, 24 * 60> times_;              // by minute of the day; empty: not yet
};

/// One lock for all of it. Empty until something is formatted.
Guarded<std::unique_ptr<State>>& shared() {
    static Guarded<std::unique_ptr<State>> state;
    return state;
}

State& ready(std::unique_ptr<State>& state) {
    if (!state) state = std::make_unique<State>(Locale::current(), std::nullopt);
    return *state;
}

/// Size units, each a thousand times the one before; with the decimals that tell something.
constexpr std::array<int, 5> decimalsOfUnit = {0, 0, 1, 2, 2};

std::string size(std::int64_t count, bool adaptive) {
    if (count == 0) return "Zero KB";
    const auto exact = static_cast<double>(count);
    double value = std::fabs(exact);
    std::size_t unit = 0;
    // Compared after rounding, so that 999,999 bytes are 1 MB and not 1000 KB.
    const auto rounded = [&](std::size_t u, double v) {
        const double scale = std::pow(10, adaptive ? decimalsOfUnit[u] : 0);
        return std::round(v * scale) / scale;
    };
    while (unit + 1 < decimalsOfUnit.size() && rounded(unit, value) >= 1000) {
        value /= 1000;
        ++unit;
    }
    value = std::copysign(rounded(unit, value), exact);
    const auto access = shared().lock();
    return ready(*access).patterns().size(value, adaptive ? decimalsOfUnit[unit] : 0, unit);
}

}  // namespace

std::string bytes(std::int64_t count) { return size(count, true); }
std::string shortBytes(std::int64_t count) { return size(count, false); }

std::string speed(double bytesPerSecond) {
    if (!(bytesPerSecond > 0)) return {};
    constexpr auto most = static_cast<double>(std::numeric_limits<std::int64_t>::max());
    const auto whole = bytesPerSecond >= most ? std::numeric_limits<std::int64_t>::max()
                                              : static_cast<std::int64_t>(bytesPerSecond);
    return bytes(whole) + "/s";
}

std::string day(std::optional<Date> date) {
    if (!date) return std::string(none);
    const auto access = shared().lock();
    State& state = ready(*access);
    return state.dayText(state.calendar().day(*date));
}

std::string date(std::optional<Date> date) {
    if (!date) return std::string(none);
    const auto access = shared().lock();
    State& state = ready(*access);
    const auto [day, minute] = state.calendar().dayAndMinute(*date);
    return state.patterns().joined(state.dayText(day), state.timeText(minute));
}

std::string duration(double seconds) {
    if (!(seconds >= 0) || !std::isfinite(seconds)) return std::string(none);
    constexpr double longest = 1e15;
    const auto s = static_cast<std::int64_t>(std::fmin(seconds, longest));
    if (s < 60) return std::to_string(s) + " sec";
    const auto twoDigits = [](std::int64_t n) { return (n < 10 ? "0" : "") + std::to_string(n); };
    if (s < 3600) return std::to_string(s / 60) + ":" + twoDigits(s % 60);
    return std::to_string(s / 3600) + ":" + twoDigits(s / 60 % 60) + ":" + twoDigits(s % 60);
}

std::string timeRemaining(std::optional<double> seconds) {
    if (!seconds || !std::isfinite(*seconds)) return "Estimating…";
    if (*seconds < 5) return "A few seconds left";
    constexpr double longest = 1e15;
    const auto s = static_cast<std::int64_t>(std::fmin(*seconds, longest));
    if (s < 60) return "About " + std::to_string(s) + " seconds left";
    if (s < 3600) return "About " + std::to_string(s / 60 + 1) + " minutes left";
    return "About " + std::to_string(s / 3600) + " h " + std::to_string(s / 60 % 60) + " min left";
}

std::string count(std::int64_t n, std::string_view singular,
                  std::optional<std::string_view> plural) {
    std::string text;
    {
        const auto access = shared().lock();
        text = ready(*access).patterns().integer(n);
    }
    text += ' ';
    if (n == 1) return text.append(singular);
    if (plural) return text.append(*plural);
    return text.append(singular) += 's';
}

void use(const Locale& locale, const Calendar& calendar) {
    *shared().lock() = std::make_unique<State>(locale, calendar);
}

}  // namespace tarn::Format
