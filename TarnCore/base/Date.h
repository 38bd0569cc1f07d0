#pragma once

#include <cmath>
#include <compare>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

/// An instant, as seconds since 2001-01-01 00:00:00 UTC, which is also how it is stored. A double
/// keeps a tenth of a microsecond today and reaches every year a file system can name.
struct Date {
    double seconds = 0;

    /// Seconds from 1970-01-01 to 2001-01-01.
    static constexpr std::int64_t unixOffset = 978307200;

    static constexpr Date fromUnix(std::int64_t seconds, std::int64_t nanoseconds = 0) {
        return {static_cast<double>(seconds - unixOffset) +
                static_cast<double>(nanoseconds) * 1e-9};
    }
    /// Reads "2026-03-15T12:00:00Z", also with a fraction of seconds or an offset such as +02:00.
    static std::optional<Date> fromISO8601(std::string_view text);

    /// Whole seconds since 1970, rounded down.
    std::int64_t unixSeconds() const {
        return static_cast<std::int64_t>(std::floor(seconds)) + unixOffset;
    }
    /// "2026-03-15T12:00:00Z", whole seconds, UTC.
    std::string iso8601() const;

    constexpr Date operator+(double interval) const { return {seconds + interval}; }
    constexpr Date operator-(double interval) const { return {seconds - interval}; }
    constexpr double operator-(Date other) const { return seconds - other.seconds; }
    constexpr auto operator<=>(const Date&) const = default;
    constexpr bool operator==(const Date&) const = default;
};

}  // namespace tarn

template <>
struct std::hash<tarn::Date> {
    std::size_t operator()(tarn::Date date) const noexcept {
        return std::hash<double>{}(date.seconds);
    }
};
