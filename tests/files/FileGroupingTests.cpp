#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TarnCore/files/FileGrouping.h"

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::Pair;

const Calendar berlin("Europe/Berlin", 2);
const Locale english("en_US");

Date at(const char* text) { return *Date::fromISO8601(text); }

FileItem item(const std::string& name) {
    FileItem item;
    item.url = URL::fromPath("/list/" + name);
    item.name = name;
    return item;
}

/// Titles with the names under them.
std::vector<std::pair<std::string, std::string>> groups(std::vector<FileItem> items,
                                                        GroupField field) {
    std::vector<std::pair<std::string, std::string>> result;
    const Date now = at("2026-03-15T12:00:00+01:00");
    for (const FileGroup& group :
         FileGrouping::groups(std::move(items), field, now, berlin, english)) {
        result.emplace_back(group.title, "");
        for (const FileItem& member : group.items) result.back().second += member.name;
    }
    return result;
}

TEST(FileGrouping, dateHeadersCountCalendarDays) {
    const struct {
        const char* now;
        const char* date;
        std::pair<std::string, std::int64_t> key;
    } cases[] = {
        {"2026-03-15T00:00:30+01:00", "2026-03-14T23:59:00+01:00", {"Yesterday", 1}},
        {"2026-03-15T12:00:00+01:00", "2026-03-15T00:00:00+01:00", {"Today", 0}},
        {"2026-03-15T12:00:00+01:00", "2031-01-01T00:00:00Z", {"Today", 0}},
        {"2026-03-15T12:00:00+01:00", "2026-03-09T00:00:00+01:00", {"Previous 7 Days", 2}},
        {"2026-03-15T12:00:00+01:00", "2026-03-08T23:59:59+01:00", {"Previous 30 Days", 3}},
        {"2026-03-15T12:00:00+01:00", "2026-02-14T00:00:00+01:00", {"Previous 30 Days", 3}},
        {"2026-03-15T12:00:00+01:00", "2026-02-13T12:00:00+01:00", {"February", 98}},
        {"2026-03-15T12:00:00+01:00", "2026-01-01T00:00:00+01:00", {"January", 99}},
        {"2026-03-15T12:00:00+01:00", "2025-12-31T23:59:00+01:00", {"2025", 8975}},
        {"2026-03-15T12:00:00+01:00", "1999-03-15T12:00:00+01:00", {"1999", 9001}},
        // In January, last year's days near by are still counted in days.
        {"2026-01-05T12:00:00+01:00", "2025-12-31T12:00:00+01:00", {"Previous 7 Days", 2}},
        // The night in which Berlin's clocks move: 23 hours, but one day.
        {"2026-03-29T23:30:00+02:00", "2026-03-28T23:45:00+01:00", {"Yesterday", 1}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.date) + " seen from " + c.now);
        EXPECT_EQ(FileGrouping::dateKey(at(c.date), at(c.now), berlin, english), c.key);
    }
    EXPECT_EQ(FileGrouping::dateKey({}, at("2026-03-15T12:00:00Z"), berlin, english).first,
              "No Date");
    EXPECT_EQ(FileGrouping::dateKey(at("2026-01-01T12:00:00Z"), at("2026-03-15T12:00:00Z"), berlin,
                                    Locale("de_DE"))
                  .first,
              "Januar");
}

TEST(FileGrouping, datesComeNewestFirstAndUndatedLast) {
    const auto dated = [](const char* name, const char* date) {
        FileItem result = item(name);
        result.modified = at(date);
        return result;
    };
    EXPECT_THAT(groups({item("-"), dated("a", "2024-05-01T00:00:00Z"),
                        dated("b", "2026-01-10T00:00:00Z"), dated("c", "2026-02-01T00:00:00Z"),
                        dated("d", "2025-05-01T00:00:00Z"), dated("e", "2026-03-15T00:00:00Z")},
                       GroupField::modified),
                ElementsAre(Pair("Today", "e"), Pair("February", "c"), Pair("January", "b"),
                            Pair("2025", "d"), Pair("2024", "a"), Pair("No Date", "-")));
}

TEST(FileGrouping, datesDealtOutInAnyOrderGetTheHeaderOfTheirDay) {
    // Every third hour of two years, the nights of the clock changes among them, and far ones.
    std::vector<Date> dates{at("0001-01-01T00:00:00Z"), at("9999-12-31T00:00:00Z"), Date{1e300}};
    const Date end = at("2026-04-02T00:00:00Z");
    for (Date date = at("2024-03-01T00:00:00Z"); date < end; date = date + 3 * 3600 - 1)
        dates.push_back(date);
    const Date now = at("2026-03-30T00:30:00+02:00");
    for (std::size_t step : {1UL, 7UL, dates.size() - 5}) {  // also back and forth
        FileGrouping::Dealer dealer(GroupField::modified, now, berlin, english);
        for (std::size_t i = 0, place = 0; i < dates.size();
             ++i, place = (place + step) % dates.size()) {
            FileItem dated = item("x");
            dated.modified = dates[place];
            ASSERT_EQ(dealer.title(dealer.group(dated)),
                      FileGrouping::dateKey(dates[place], now, berlin, english).first)
                << dates[place].seconds;
        }
    }
}

TEST(FileGrouping, sizesComeLargestFirst) {
    const auto sized = [](const char* name, std::int64_t size) {
        FileItem result = item(name);
        result.size = size;
        return result;
    };
    FileItem folder = item("f");
    folder.isDirectory = true;
    EXPECT_THAT(groups({folder, sized("1", 99'999), sized("2", 100'000), sized("3", 999'999),
                        sized("4", 1'000'000), sized("5", 99'999'999), sized("6", 100'000'000),
                        sized("7", 1'000'000'000), sized("0", 0)},
                       GroupField::size),
                ElementsAre(Pair("Over 1 GB", "7"), Pair("100 MB to 1 GB", "6"),
                            Pair("1 MB to 100 MB", "45"), Pair("100 KB to 1 MB", "23"),
                            Pair("Under 100 KB", "10"), Pair("Folders", "f")));
}

TEST(FileGrouping, kindsFollowTheMenuAndTagsTheirNames) {
    const auto ofKind = [](const char* name, FileKind kind) {
        FileItem result = item(name);
        result.kind = kind;
        return result;
    };
    FileItem application = ofKind("x", FileKind::app);
    application.isDirectory = true;  // A folder comes first, whatever it is called.
    EXPECT_THAT(groups({ofKind("o", FileKind::other), ofKind("i", FileKind::image), application,
                        ofKind("j", FileKind::image)},
                       GroupField::kind),
                ElementsAre(Pair("Folders", "x"), Pair("Images", "ij"), Pair("Other", "o")));

    const auto tagged = [](const char* name, std::vector<std::string> tags) {
        FileItem result = item(name);
        result.tags = std::move(tags);
        return result;
    };
    EXPECT_THAT(groups({item("-"), tagged("w", {"Work", "A"}), tagged("b", {"Blue"}),
                        tagged("v", {"Work"})},
                       GroupField::tags),
                ElementsAre(Pair("Blue", "b"), Pair("Work", "wv"), Pair("No Tags", "-")));
    EXPECT_THAT(groups({item("a"), item("b")}, GroupField::none), ElementsAre(Pair("", "ab")));
    EXPECT_TRUE(groups({}, GroupField::kind).empty());
}

}  // namespace
}  // namespace tarn
