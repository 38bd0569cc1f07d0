#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "TarnCore/base/Calendar.h"

namespace tarn {

/// The forms of numbers, dates and times in one language and region. ICU knows them, except those
/// of en_US, which are written out here: loading ICU's data takes longer than all the rest of a
/// listing in the terminal. Not for several threads at once.
class LocalisedPatterns {
public:
    explicit LocalisedPatterns(std::string localeIdentifier);
    ~LocalisedPatterns();

    /// With grouping: "1,204".
    std::string integer(std::int64_t n);
    /// `unit` 0 for bytes, 1 for KB … 4 for TB. Zeros at the end of the decimals are left out.
    std::string size(double value, int mostDecimals, std::size_t unit);
    /// Medium form: "Nov 14, 2023".
    std::string date(CivilDay day);
    /// Short form: "2:05 PM", "14:05".
    std::string time(int hour, int minute);
    std::string today();
    std::string yesterday();
    std::string tomorrow();
    /// "Today at 14:05".
    std::string joined(const std::string& day, const std::string& time);

private:
    struct ICUFormats;
    /// Null for en_US.
    ICUFormats* icu();

    std::string identifier_;
    bool isAmerican_;
    bool isEnglish_;
    std::unique_ptr<ICUFormats> icu_;
};

}  // namespace tarn
