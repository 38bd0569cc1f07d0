#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/Locale.h"

/// How sizes, dates, times and counts are written for the user, everywhere. Callable from any
/// thread. Sizes are decimal: 1 KB = 1000 bytes.
namespace tarn::Format {

/// "1.5 MB", "12 KB", "3 bytes", "Zero KB".
std::string bytes(std::int64_t count);
/// In whole numbers: "2 MB".
std::string shortBytes(std::int64_t count);
/// "12.3 MB/s"; empty when not above 0.
std::string speed(double bytesPerSecond);
/// "Today", "Nov 14, 2023"; "—" when absent.
std::string day(std::optional<Date> date);
/// "Today at 14:05", "Nov 14, 2023 at 14:05"; "—" when absent.
std::string date(std::optional<Date> date);
/// "42 sec", "3:07", "1:02:03"; "—" when negative or not finite.
std::string duration(double seconds);
/// "About 2 minutes left"; "Estimating…" while unknown.
std::string timeRemaining(std::optional<double> seconds);
/// "1 item", "1,204 items".
std::string count(std::int64_t n, std::string_view singular,
                  std::optional<std::string_view> plural = std::nullopt);

/// The locale and time zone that all of the above follow; for start-up and tests. "Today" is
/// judged by Platform::current().clock.
void use(const Locale& locale, const Calendar& calendar);

}  // namespace tarn::Format
