#include <limits>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TarnCore/search/SearchRanking.h"

namespace tarn {
namespace {

SearchQuery queryOf(std::vector<std::string> terms, std::string raw = {}) {
    SearchQuery query;
    query.terms = std::move(terms);
    query.raw = std::move(raw);
    return query;
}

TEST(SearchRanking, normalizesNamesToWords) {
    const struct {
        const char* text;
        const char* normal;
    } cases[] = {
        {"Tax_Return-2023", "tax return 2023"},
        {"  __Résumé -- final\n", "resume final"},
        {"ÅNGSTRÖM", "angstrom"},
        {"-_ ", ""},
        {"a\xff_b", "a\xff b"},
        {"a\xC2\xA0"
         "b",
         "a b"},  // a blank that does not break
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(SearchRanking::normalize(c.text), c.normal);
    }
}

TEST(SearchRanking, putsNamesIntoTiers) {
    const struct {
        const char* name;
        SearchQuery query;
        int tier;
    } cases[] = {
        {"Tax_Return.pdf", queryOf({"tax", "return"}), 0},
        {"TAX-RETURN 2023.pdf", queryOf({"tax", "return"}), 1},
        {"return of tax.pdf", queryOf({"tax", "return"}), 2},
        {"tax.pdf", queryOf({"tax", "return"}), 3},
        {"my tax.pdf", queryOf({"tax"}), 2},
        // The words that became filters may still be the name itself.
        {"report.pdf", queryOf({"report"}, "report.pdf"), 0},
        {"pdfs of march", queryOf({"of"}, "PDFs of March"), 0},
        {"Report.PDF.zip", queryOf({}, "report.pdf"), 0},
        {"anything", queryOf({}), 3},
        {"anything", queryOf({"-", "_"}), 3},
        {".profile", queryOf({".profile"}), 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " for " + c.query.raw);
        EXPECT_EQ(SearchRanking::tier(c.name, c.query), c.tier);
    }
}

TEST(SearchRanking, letsPicturesMoveOnlyAmongNamesThatDoNotMatch) {
    const std::map<std::string, float> scores = {
        {"dog.jpg", 0.1F}, {"c.jpg", 0.5F}, {"my dog.jpg", 0.9F}, {"d.jpg", 0.5F}};
    std::vector<FileItem> items;
    for (const char* name :
         {"a.txt", "b.jpg", "my dog.jpg", "c.jpg", "dog.jpg", "dogs.txt", "d.jpg", "the dog.jpg"}) {
        FileItem item;
        item.url = URL::fromPath(name);
        item.name = name;
        items.push_back(item);
    }
    const auto ranked = SearchRanking::rank(
        items, queryOf({"dog"}), [&](const FileItem& item) -> std::optional<float> {
            if (item.name == "b.jpg") return std::numeric_limits<float>::quiet_NaN();
            const auto found = scores.find(item.name);
            return found == scores.end() ? std::nullopt : std::optional(found->second);
        });
    std::vector<std::string> names;
    for (const FileItem& item : ranked) names.push_back(item.name);
    EXPECT_THAT(names, testing::ElementsAre("dog.jpg", "dogs.txt", "my dog.jpg", "the dog.jpg",
                                            "c.jpg", "d.jpg", "a.txt", "b.jpg"));
    EXPECT_EQ(SearchRanking::rank(items, queryOf({"zebra"}), nullptr), items);
}

}  // namespace
}  // namespace tarn
