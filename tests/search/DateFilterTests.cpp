#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "TarnCore/base/Error.h"
#include "TarnCore/search/DateFilter.h"

namespace tarn {
namespace {

TEST(DateFilter, containsItsStartAndNotItsEnd) {
    const Date march = *Date::fromISO8601("2024-03-01T00:00:00Z");
    const Date april = *Date::fromISO8601("2024-04-01T00:00:00Z");
    const struct {
        const char* what;
        std::optional<Date> start, end, date;
        bool inside;
    } cases[] = {
        {"start", march, april, march, true},
        {"end", march, april, april, false},
        {"just before the end", march, april, april - 0.001, true},
        {"just before the start", march, april, march - 0.001, false},
        {"open start", {}, april, Date{-1e12}, true},
        {"open end", march, {}, Date{1e12}, true},
        {"no bound, no date", {}, {}, {}, false},
        {"no bound", {}, {}, march, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ((DateFilter{c.start, c.end, DateField::modified, ""}.contains(c.date)), c.inside);
    }
}

TEST(DateFilter, chipsPutAVerbBeforeTheLabel) {
    const struct {
        DateField field;
        const char* label;
        const char* chip;
    } cases[] = {
        {DateField::modified, "Last week", "Last week"},
        {DateField::created, "Last week", "Created last week"},
        {DateField::added, "Today", "Downloaded today"},
        {DateField::opened, "March 2024", "Opened March 2024"},
        {DateField::added, "Older than 2 weeks", "Downloaded older than 2 weeks"},
        {DateField::created, "Before March 2024", "Created before March 2024"},
        {DateField::opened, "2 weeks ago", "Opened 2 weeks ago"},
        {DateField::added, "Lastly", "Downloaded Lastly"},  // only the whole word counts
        {DateField::created, "Between 1 and 2", "Created Between 1 and 2"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.chip);
        EXPECT_EQ((DateFilter{{}, {}, c.field, c.label}.chipLabel()), c.chip);
    }
}

TEST(DateFilter, isStoredWithSecondsSince2001AndWithoutAbsentBounds) {
    const DateFilter since{Date{700000000.5}, std::nullopt, DateField::added, "Since May"};
    const JSON json = since;
    EXPECT_EQ(json.dump(), R"({"field":"added","label":"Since May","start":700000000.5})");
    EXPECT_EQ(json.get<DateFilter>(), since);
}

TEST(DateFilter, refusesWhatItDoesNotKnow) {
    EXPECT_THROW(JSON::parse(R"({"field":"touched"})").get<DateFilter>(), Error);
    EXPECT_ANY_THROW(JSON::parse(R"("today")").get<DateFilter>());
    EXPECT_ANY_THROW(JSON::parse(R"({"start":"today"})").get<DateFilter>());
}

}  // namespace
}  // namespace tarn
