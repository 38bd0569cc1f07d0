#include <limits>

#include "TarnCore/search/QuerySizes.h"
#include "tests/search/QueryTestSupport.h"

namespace tarn {
namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::nullopt_t none = std::nullopt;
using Bytes = std::optional<std::int64_t>;

TEST(QuerySizes, amountsBecomeBoundsWithALabel) {
    const struct {
        const char* text;
        Bytes min, max;
        const char* label;
    } cases[] = {
        {"over 5 mb", 5'000'000, none, "Over 5 MB"},
        {"Over 1 GB", 1'000'000'000, none, "Over 1 GB"},
        {"above 1.5gb", 1'500'000'000, none, "Over 1.5 GB"},
        {"more than 300 kb", 300'000, none, "Over 300 KB"},
        {"larger than 2 tb", 2'000'000'000'000, none, "Over 2 TB"},
        {"at least 5 megabytes", 5'000'000, none, "Over 5 MB"},
        {"> 5 mb", 5'000'000, none, "Over 5 MB"},
        {">5mb", 5'000'000, none, "Over 5 MB"},
        {">=5 mb", 5'000'000, none, "Over 5 MB"},
        {"<=2gb", none, 2'000'000'000, "Under 2 GB"},
        {"<2gb", none, 2'000'000'000, "Under 2 GB"},
        {"no more than 10 kb", none, 10'000, "Under 10 KB"},
        {"up to 10kb", none, 10'000, "Under 10 KB"},
        {"smaller than 1 mb", none, 1'000'000, "Under 1 MB"},
        {"min 3 bytes", 3, none, "Over 3 bytes"},
        {"over 0 b", 0, none, "Over Zero KB"},
        {"over 1,500 kb", 1'500'000, none, "Over 1.5 MB"},
        {"over 1,000,000 b", 1'000'000, none, "Over 1 MB"},
        {"over 1,5gb", 1'500'000'000, none, "Over 1.5 GB"},
        {"over 1,000.5 kb", 1'000'500, none, "Over 1 MB"},
        {"over 1 kib", 1024, none, "Over 1 KB"},
        {"over 1 MiB", 1'048'576, none, "Over 1 MB"},
        {"over a gigabyte", 1'000'000'000, none, "Over 1 GB"},
        {"500mb+", 500'000'000, none, "Over 500 MB"},
        {"500 mb+", 500'000'000, none, "Over 500 MB"},
        {"500 mb plus", 500'000'000, none, "Over 500 MB"},
        {"500mb or more", 500'000'000, none, "Over 500 MB"},
        {"500 mb size or larger", 500'000'000, none, "Over 500 MB"},
        {"500mb or less", none, 500'000'000, "Under 500 MB"},
        {"over 5 mb in size", 5'000'000, none, "Over 5 MB"},
        {"sized over 5 mb", 5'000'000, none, "Over 5 MB"},
        {"between 1 mb and 5 mb", 1'000'000, 5'000'000, "1 MB to 5 MB"},
        {"between 1 and 5 mb", 1'000'000, 5'000'000, "1 MB to 5 MB"},
        {"between 900 kb to 5", 5'000, 900'000, "5 KB to 900 KB"},  // in the wrong order
        {"from 1mb to 5mb", 1'000'000, 5'000'000, "1 MB to 5 MB"},
        {"1mb - 5mb", 1'000'000, 5'000'000, "1 MB to 5 MB"},
        {"over 5 mb under 1 gb", 5'000'000, 1'000'000'000, "5 MB to 1 GB"},
        {"under 1 gb over 5 mb", 5'000'000, 1'000'000'000, "5 MB to 1 GB"},
        {"over 5 gb under 1 gb", none, 1'000'000'000, "Under 1 GB"},  // cannot both hold
        {"over 5 mb over 6 mb", 6'000'000, none, "Over 6 MB"},
        {"big", 100'000'000, none, "Large (over 100 MB)"},
        {"very large", 1'000'000'000, none, "Huge (over 1 GB)"},
        {"enormous", 1'000'000'000, none, "Huge (over 1 GB)"},
        {"smallest", none, 1'000'000, "Small (under 1 MB)"},
        {"tiny", none, 100'000, "Tiny (under 100 KB)"},
        {"zero-byte", 0, 0, "Empty"},
        {"large under 200 mb", 100'000'000, 200'000'000, "100 MB to 200 MB"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const SearchQuery query = berlin().parse(c.text);
        EXPECT_EQ(query.size, (SizeFilter{c.min, c.max, c.label}))
            << (query.size ? query.size->label : "no size");
        EXPECT_EQ(query.terms, std::vector<std::string>());
        EXPECT_FALSE(query.date);
    }
}

TEST(QuerySizes, amountsBeyond64BitsAreTheLargest) {
    for (const char* text :
         {"over 9300 pb", "over 99999999999999999999999999 gb", "over 9223372036854775807 b"}) {
        SCOPED_TRACE(text);
        const auto size = berlin().parse(text).size;
        ASSERT_TRUE(size);
        EXPECT_EQ(size->min, largest);
    }
    const std::string almostNothing = "under 0." + std::string(400, '0') + "1 mb";
    EXPECT_EQ(berlin().parse(almostNothing).size->max, 0);
    const std::string manyDigits = "over 1" + std::string(5000, '0') + "mb";
    EXPECT_EQ(berlin().parse(manyDigits).size->min, largest);
}

TEST(QuerySizes, whatHasNoUnitOrDirectionIsNoSize) {
    const struct {
        const char* text;
        std::vector<std::string> terms;
    } cases[] = {
        {"over 5", {"over", "5"}},
        {"over 5 files", {"over", "5"}},
        {"between 1 and 5", {"between", "1", "5"}},
        {"500mb", {"500mb"}},
        {"5 mb", {"5", "mb"}},
        {"over .5 mb", {"over", "mb"}},  // ".5" is written like an extension
        {"over 5..5mb", {"over", "5..5mb"}},
        {"iphone8 8 plus", {"iphone8", "8", "plus"}},
        {"“over 5 mb”", {"over 5 mb"}},
        {"over “5mb”", {"over", "5mb"}},
        {"no 5 mb", {"no", "5", "mb"}},
        {"over 1,00,000 kb", {"over", "1,00,000", "kb"}},
        {"over 1.000.000 kb", {"over", "1.000.000", "kb"}},
        {"over -5mb", {"over", "-5mb"}},
        {"> <", {">", "<"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const SearchQuery query = berlin().parse(c.text);
        EXPECT_FALSE(query.size);
        EXPECT_EQ(query.terms, c.terms);
    }
}

}  // namespace
}  // namespace tarn
