#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/preview/DelimitedText.h"

namespace tarn {
namespace {

using Rows = std::vector<std::vector<std::string>>;

TEST(DelimitedText, readsWhatProgramsWrite) {
    const struct {
        const char* text;
        Rows rows;
    } cases[] = {
        {"a,b\n1,2\n", {{"a", "b"}, {"1", "2"}}},
        {"a,b\r\n1,2", {{"a", "b"}, {"1", "2"}}},
        {"a;b,c\n1;2", {{"a", "b,c"}, {"1", "2"}}},
        {"a\tb\n", {{"a", "b"}}},
        {"x\ny\n", {{"x"}, {"y"}}},
        {"\"a, \"\"b\"\"\",c\n", {{"a, \"b\"", "c"}}},
        {"\"two\nlines\",c\n", {{"two\nlines", "c"}}},
        {"a,5\" disk\n", {{"a", "5\" disk"}}},  // a quote in the middle is one
        {"a,\n,b\n", {{"a", ""}, {"", "b"}}},
        {"a\n\nb\n", {{"a"}, {""}, {"b"}}},
        {"\"never closed,b\n", {{"never closed,b\n"}}},
        {"", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(DelimitedText::parse(c.text, DelimitedText::separator(c.text)).rows, c.rows);
    }
}

TEST(DelimitedText, findsTheMarkThatLinesAgreeOn) {
    const struct {
        const char* text;
        char mark;
    } cases[] = {
        {"Name;Amount\nA;1,50\nB;2,25\n", ';'},
        {"\"a;b\",c\n\"d\",e\n", ','},
        {"a|b|c\nd|e|f", '|'},
        {"one word", ','},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(DelimitedText::separator(c.text), c.mark);
    }
}

TEST(DelimitedText, keepsToItsBounds) {
    std::string wide;
    for (int i = 0; i < 1000; ++i) wide += "x,";
    const TableSheet cut = DelimitedText::parse(wide, ',');
    EXPECT_TRUE(cut.isCut);
    EXPECT_EQ(cut.rows[0].size(), TableSheet::mostColumns);
    std::string tall;
    for (std::size_t i = 0; i <= TableSheet::mostRows; ++i) tall += "x\n";
    const TableSheet rows = DelimitedText::parse(tall, ',');
    EXPECT_TRUE(rows.isCut);
    EXPECT_EQ(rows.rows.size(), TableSheet::mostRows);
    const TableSheet cell = DelimitedText::parse(std::string(10'000, 'y'), ',');
    EXPECT_FALSE(cell.isCut);
    EXPECT_TRUE(cell.rows[0][0].ends_with("y…"));
}

}  // namespace
}  // namespace tarn
