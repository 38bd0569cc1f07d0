#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarn {

/// How a workbook wants a number to be shown, as far as it makes a difference to what it means.
struct CellFormat {
    enum class Form : std::uint8_t { general, fixed, percent, date, time, dateTime };
    Form form = Form::general;
    int decimals = 0;
    bool operator==(const CellFormat&) const = default;

    /// From the number of a format that every program knows (ECMA-376, 18.8.30).
    static CellFormat builtIn(int number);
    /// From the code of a format ("#,##0.00", "yyyy-mm-dd").
    static CellFormat fromCode(std::string_view code);

    /// "1234.5" as "1234.50", "12.5 %", "2026-03-01" or "2026-03-01 14:05". What is no number, or
    /// no date that there is, stays as it stands. `from1904` tells where days are counted from.
    std::string shown(const std::string& number, bool from1904) const;
};

}  // namespace tarn
