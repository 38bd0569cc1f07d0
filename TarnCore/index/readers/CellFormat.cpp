#include "TarnCore/index/readers/CellFormat.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace tarn {
namespace {

constexpr int mostDecimals = 10;
constexpr int significant = 11;        // digits that spreadsheets show of a number without a format
constexpr double lastDay = 2'958'465;  // 9999-12-31

std::string general(double value) {
    std::array<char, 64> text;
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value,
                                            std::chars_format::general, significant);
    return error == std::errc() ? std::string(text.data(), end) : std::string();
}

std::string fixed(double value, int decimals) {
    std::array<char, 400> text;
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value,
                                            std::chars_format::fixed, decimals);
    return error == std::errc() ? std::string(text.data(), end) : std::string();
}

std::string date(double days, bool from1904) {
    // Day 60 is the 29th of February 1900, which never was; those before are one less.
    using namespace std::chrono;
    double whole = std::floor(days);
    if (!from1904 && whole < 60) ++whole;
    const sys_days start = from1904 ? sys_days(year(1904) / 1 / 1) : sys_days(year(1899) / 12 / 30);
    const year_month_day day(start + std::chrono::days(static_cast<int>(whole)));
    std::array<char, 32> text;
    const int length = std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", int{day.year()},
                                     unsigned{day.month()}, unsigned{day.day()});
    return {text.data(), static_cast<std::size_t>(length)};
}

std::string time(double days, bool isAmount) {
    const auto seconds =
        static_cast<long>(std::llround((days - (isAmount ? 0 : std::floor(days))) * 86'400));
    std::array<char, 32> text;
    const long hours = seconds / 3600;
    const int length =
        seconds % 60 == 0
            ? std::snprintf(text.data(), text.size(), "%02ld:%02ld", hours, seconds / 60 % 60)
            : std::snprintf(text.data(), text.size(), "%02ld:%02ld:%02ld", hours, seconds / 60 % 60,
                            seconds % 60);
    return {text.data(), static_cast<std::size_t>(length)};
}

}  // namespace

CellFormat CellFormat::builtIn(int number) {
    if (number == 1 || number == 3) return {Form::fixed, 0};
    if (number == 2 || number == 4 || number == 39 || number == 40) return {Form::fixed, 2};
    if (number == 9) return {Form::percent, 0};
    if (number == 10) return {Form::percent, 2};
    if (number >= 14 && number <= 17) return {Form::date, 0};
    if ((number >= 18 && number <= 21) || (number >= 45 && number <= 47)) return {Form::time, 0};
    if (number == 22) return {Form::dateTime, 0};
    // Those of the years and months of eastern Asia.
    if ((number >= 27 && number <= 31) || number == 36 || (number >= 50 && number <= 58))
        return {Form::date, 0};
    return {};
}

CellFormat CellFormat::fromCode(std::string_view code) {
    bool hasDate = false;
    bool hasTime = false;
    bool hasMonth = false;
    bool hasPercent = false;
    bool hasDigit = false;
    bool afterPoint = false;
    int decimals = 0;
    for (std::size_t i = 0; i < code.size(); ++i) {
        const char c = code[i];
        if (c == ';') break;  // what is behind is for other signs
        if (c == '"') {
            const std::size_t close = code.find('"', i + 1);
            if (close == code.npos) break;
            i = close;
        } else if (c == '\\' || c == '_' || c == '*') {
            ++i;
        } else if (c == '[') {
            const std::size_t close = code.find(']', i + 1);
            if (close == code.npos) break;
            const char inside = i + 1 < code.size() ? code[i + 1] : ' ';
            const bool isElapsed =
                (inside == 'h' || inside == 'm' || inside == 's') && close - i <= 3;
            hasTime |= isElapsed;
            i = close;
        } else if (c == 'y' || c == 'Y' || c == 'd' || c == 'D') {
            hasDate = true;
        } else if (c == 'h' || c == 'H' || c == 's' || c == 'S') {
            hasTime = true;
        } else if (c == 'm' || c == 'M') {
            hasMonth = true;
        } else if (c == '%') {
            hasPercent = true;
        } else if (c == '.') {
            afterPoint = true;
        } else if (c == '0' || c == '#' || c == '?') {
            hasDigit = true;
            decimals += afterPoint && c == '0';
        } else if (c == 'G' || c == 'E' || c == '@') {
            return {};  // "General", exponents and text
        }
    }
    // An "m" is a month beside a day, and a minute beside an hour.
    if (hasMonth && !hasDate && !hasTime) hasDate = true;
    if (hasDate && hasTime) return {Form::dateTime, 0};
    if (hasDate) return {Form::date, 0};
    if (hasTime) return {Form::time, 0};
    decimals = decimals > mostDecimals ? mostDecimals : decimals;
    if (hasPercent) return {Form::percent, decimals};
    return hasDigit ? CellFormat{Form::fixed, decimals} : CellFormat{};
}

std::string CellFormat::shown(const std::string& number, bool from1904) const {
    double value = 0;
    const char* const end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, value);
    if (error != std::errc() || stop != end || !std::isfinite(value)) return number;
    const bool isDay = value >= 0 && value <= lastDay;
    switch (form) {
        case Form::general:
            return general(value);
        case Form::fixed:
            return fixed(value, decimals);
        case Form::percent:
            return fixed(value * 100, decimals) + " %";
        case Form::date:
            return isDay ? date(value, from1904) : number;
        case Form::time:
            return isDay ? time(value, /*isAmount=*/true) : number;
        case Form::dateTime:
            return isDay ? date(value, from1904) + " " + time(value, /*isAmount=*/false) : number;
    }
    return number;
}

}  // namespace tarn
