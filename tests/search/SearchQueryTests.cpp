#include <limits>
#include <unordered_set>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "TarnCore/base/Error.h"
#include "TarnCore/search/SearchQuery.h"

namespace tarn {
namespace {

/// A query in which every field differs from its default.
SearchQuery fullQuery() {
    SearchQuery query;
    query.raw = "  Everything “at once”";
    query.terms = {"budget", "Final Draft"};
    query.kinds = {SearchKind::video, SearchKind::pdf};
    query.extensions = {"psd", "tar"};
    query.date = DateFilter{Date{7e8}, Date{7.1e8}, DateField::created, "Last week"};
    query.size = SizeFilter{5'000'000, 9'000'000'000, "5 MB to 9 GB"};
    query.source = "Slack";
    query.place = PlaceFilter::externalDrives();
    query.camera = "iPhone";
    query.containing = {"Total Due", "net"};
    query.textInImages = true;
    query.refinedByAI = true;
    query.filesOnly = true;
    return query;
}

TEST(SearchQuery, onlyFiltersCountAsFilters) {
    SearchQuery query;
    EXPECT_TRUE(query.isEmpty());
    query.raw = "find my files";
    query.filesOnly = true;
    query.refinedByAI = true;
    EXPECT_TRUE(query.isEmpty());
    EXPECT_FALSE(query.hasFilters());
    query.terms = {"budget"};
    EXPECT_FALSE(query.hasFilters());
    EXPECT_FALSE(query.isEmpty());
}

TEST(SearchQuery, chipsSayWhatIsFiltered) {
    const std::vector<SearchChip> expected = {
        {ChipCategory::type, "Videos, PDFs, .psd, .tar"},
        {ChipCategory::date, "Created last week"},
        {ChipCategory::size, "5 MB to 9 GB"},
        {ChipCategory::source, "From Slack"},
        {ChipCategory::place, "On external drives"},
        {ChipCategory::camera, "iPhone"},
        {ChipCategory::text, "Containing “Total Due”, “net”, text in images"},
    };
    EXPECT_EQ(fullQuery().chips(), expected);

    SearchQuery inImages;
    inImages.textInImages = true;
    EXPECT_TRUE(inImages.hasFilters());
    EXPECT_EQ(inImages.chips(), (std::vector<SearchChip>{{ChipCategory::text, "text in images"}}));
    EXPECT_TRUE(SearchQuery().chips().empty());
}

TEST(SearchQuery, removingAChipRemovesItsFilterAndNothingElse) {
    const SearchQuery full = fullQuery();
    for (const ChipCategory category : allChipCategories) {
        SCOPED_TRACE(ChipCategories::rawValue(category));
        const SearchQuery fewer = full.removing(category);
        std::vector<SearchChip> expected;
        for (const SearchChip& chip : full.chips()) {
            if (chip.category != category) expected.push_back(chip);
        }
        EXPECT_EQ(fewer.chips(), expected);
        EXPECT_EQ(fewer.terms, full.terms);
        EXPECT_EQ(fewer.raw, full.raw);
        EXPECT_TRUE(fewer.refinedByAI && fewer.filesOnly);
        EXPECT_EQ(fewer.removing(category), fewer);
    }
    SearchQuery bare = full;
    for (const ChipCategory category : allChipCategories) bare = bare.removing(category);
    EXPECT_FALSE(bare.hasFilters());
}

TEST(SearchQuery, isStoredUnderTheNamesOfItsFields) {
    const JSON json = fullQuery();
    EXPECT_EQ(json.get<SearchQuery>(), fullQuery());
    EXPECT_EQ(json.at("kinds"), JSON::parse(R"(["video","pdf"])"));
    EXPECT_EQ(json.at("place"), JSON::parse(R"({"externalDrives":{}})"));
    EXPECT_EQ(JSON(SearchQuery()).dump(),
              R"({"containing":[],"extensions":[],"filesOnly":false,"kinds":[],"raw":"",)"
              R"("refinedByAI":false,"terms":[],"textInImages":false})");
    EXPECT_EQ(JSON::parse(R"({"terms":["a"],"unknown":1,"size":null})").get<SearchQuery>().terms,
              std::vector<std::string>{"a"});
    EXPECT_THROW((void)JSON::parse(R"({"kinds":["hologram"]})").get<SearchQuery>(), Error);
    EXPECT_ANY_THROW((void)JSON::parse("[]").get<SearchQuery>());
}

TEST(SearchQuery, storedSizesBeyond64BitsAreTheNearest) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    const struct {
        const char* stored;
        std::int64_t min;
    } cases[] = {{"5", 5},
                 {"1e3", 1000},
                 {"1e300", most},
                 {"18446744073709551615", most},
                 {"-1e300", std::numeric_limits<std::int64_t>::min()}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored);
        const auto json = JSON::parse(std::string(R"({"min":)") + c.stored + "}");
        EXPECT_EQ(json.get<SizeFilter>().min, c.min);
    }
    EXPECT_ANY_THROW((void)JSON::parse(R"({"max":"5"})").get<SizeFilter>());
}

TEST(SearchQuery, everyKindAndCategoryIsReadBackFromItsStoredName) {
    for (const SearchKind kind : allSearchKinds) {
        EXPECT_EQ(SearchKinds::fromRawValue(SearchKinds::rawValue(kind)), kind);
    }
    for (const ChipCategory category : allChipCategories) {
        EXPECT_EQ(ChipCategories::fromRawValue(ChipCategories::rawValue(category)), category);
    }
    EXPECT_FALSE(SearchKinds::fromRawValue("PDF"));
    EXPECT_FALSE(ChipCategories::fromRawValue(""));
}

TEST(SearchQuery, hashesDifferWhereverFieldsDo) {
    std::unordered_set<SearchQuery> queries = {SearchQuery(), fullQuery()};
    for (const ChipCategory category : allChipCategories) {
        queries.insert(fullQuery().removing(category));
    }
    SearchQuery joined = fullQuery();
    joined.terms = {"budgetFinal Draft"};
    queries.insert(joined);
    EXPECT_EQ(queries.size(), 10u);
    std::unordered_set<std::size_t> hashes;
    for (const SearchQuery& query : queries) hashes.insert(std::hash<SearchQuery>{}(query));
    EXPECT_EQ(hashes.size(), queries.size());
    EXPECT_TRUE(queries.contains(fullQuery()));
}

}  // namespace
}  // namespace tarn
