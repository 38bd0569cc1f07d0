#pragma once

#include <memory>
#include <string>

#include "TarnCore/base/Date.h"

namespace tarn {

class Calendar;

/// The user's language and region, for names of months and days and for the forms of dates and
/// numbers. A value; copies share their formatters, which are built on first use and guarded.
class Locale {
public:
    /// An ICU identifier ("en_US", "de_DE", "ja"). An unknown one behaves as the root locale.
    explicit Locale(std::string identifier);

    /// From LC_ALL, LC_TIME, LANG, in this order; "C" and "POSIX" count as en_US.
    static Locale current();

    const std::string& identifier() const;

    /// Stand-alone name of a month ("March"), 1 to 12.
    std::string monthName(int month) const;
    /// Stand-alone name of a weekday, Sunday = 1.
    std::string weekdayName(int weekday) const;

    /// The date in the locale's form for an ICU skeleton ("dMMMyyyy" gives "Nov 14, 2023").
    std::string format(Date date, const std::string& skeleton, const Calendar& calendar) const;

    /// True where 3/4 means the 3rd of April.
    bool writesDayBeforeMonth() const;

    /// 1 = Sunday.
    int firstWeekday() const;

    bool operator==(const Locale& other) const { return identifier() == other.identifier(); }

private:
    struct State;
    std::shared_ptr<State> state_;
};

}  // namespace tarn
