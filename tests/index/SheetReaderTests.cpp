#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/index/readers/CellFormat.h"
#include "TarnCore/index/readers/SheetReader.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/MemoryBytes.h"

namespace tarn {
namespace {

using Rows = std::vector<std::vector<std::string>>;
using Parts = std::vector<std::pair<std::string, std::string>>;

std::optional<TableSheet> read(const Parts& parts, int sheet = 0) {
    std::vector<test::ZipBytes::Member> members;
    for (const auto& [name, content] : parts) members.push_back({.name = name, .content = content});
    return SheetReader::read(test::MemoryBytes(test::ZipBytes(std::move(members)).bytes()), sheet);
}

Parts workbook(const std::string& sheet, const std::string& more = "") {
    return {
        {"xl/workbook.xml", "<workbook xmlns:r='r'>" + more +
                                "<sheets><sheet name='Sales' sheetId='7' r:id='rId2'/>"
                                "<sheet name='Notes' sheetId='8' r:id='rId1'/></sheets>"
                                "</workbook>"},
        {"xl/_rels/workbook.xml.rels",
         "<Relationships><Relationship Id='rId1' Target='/xl/worksheets/two.xml'/>"
         "<Relationship Id='rId2' Target='worksheets/one.xml'/></Relationships>"},
        {"xl/styles.xml",
         "<styleSheet><numFmts><numFmt numFmtId='164' formatCode='yyyy\\-mm\\-dd'/></numFmts>"
         "<cellStyleXfs><xf numFmtId='9'/></cellStyleXfs>"
         "<cellXfs><xf numFmtId='0'/><xf numFmtId='164'/><xf numFmtId='10'/>"
         "<xf numFmtId='4'/></cellXfs></styleSheet>"},
        {"xl/sharedStrings.xml",
         "<sst><si><t>Lamp</t></si><si><r><t>Wooden </t></r><r><t>chair</t></r>"
         "<rPh><t>x</t></rPh></si></sst>"},
        {"xl/worksheets/one.xml", "<worksheet><sheetData>" + sheet + "</sheetData></worksheet>"},
        {"xl/worksheets/two.xml",
         "<worksheet><sheetData><row r='1'><c r='A1' t='str'><v>two</v></c></row></sheetData>"
         "</worksheet>"}};
}

TEST(SheetReader, showsCellsAsTheWorkbookDoes) {
    const auto sheet =
        read(workbook("<row r='1'><c r='A1' t='s'><v>0</v></c><c r='C1' t='s'><v>1</v></c></row>"
                      "<row r='3'><c r='A3' s='1'><v>46082</v></c><c r='B3' s='2'><v>0.125</v></c>"
                      "<c r='C3' s='3'><v>1234.5</v></c><c r='D3'><v>0.30000000000000004</v></c>"
                      "<c r='E3' t='b'><v>1</v></c><c r='F3' t='e'><v>#DIV/0!</v></c>"
                      "<c r='G3' t='inlineStr'><is><t>in</t></is></c></row>"));
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->names, (std::vector<std::string>{"Sales", "Notes"}));
    EXPECT_EQ(sheet->rows,
              (Rows{{"Lamp", "", "Wooden chair"},
                    {},
                    {"2026-03-01", "12.50 %", "1234.50", "0.3", "TRUE", "#DIV/0!", "in"}}));
    EXPECT_FALSE(sheet->isCut);
}

TEST(SheetReader, findsTheOtherSheetsByTheirRelations) {
    const auto second = read(workbook(""), 1);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->rows, (Rows{{"two"}}));
    EXPECT_FALSE(read(workbook(""), 2));
    EXPECT_FALSE(read(workbook(""), -1));
}

TEST(SheetReader, readsOpenDocumentWithItsRepetitions) {
    const Parts parts = {
        {"content.xml",
         "<office><body><spreadsheet><table name='A'><table-row><table-cell><p>a</p></table-cell>"
         "<table-cell number-columns-repeated='2'/><table-cell><p>b<s c='2'/>c</p><p>d</p>"
         "<annotation><p>not this</p></annotation></table-cell></table-row>"
         "<table-row number-rows-repeated='2'><table-cell number-columns-repeated='2'><p>e</p>"
         "</table-cell></table-row><table-row number-rows-repeated='1048573'>"
         "<table-cell number-columns-repeated='16384'/></table-row></table>"
         "<table name='B'/></spreadsheet></body></office>"}};
    const auto sheet = read(parts);
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->names, (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(sheet->rows, (Rows{{"a", "", "", "b  c\nd"}, {"e", "e"}, {"e", "e"}}));
    EXPECT_FALSE(sheet->isCut);
    EXPECT_TRUE(read(parts, 1));
    EXPECT_FALSE(read(parts, 2));
}

TEST(SheetReader, keepsToItsBounds) {
    const auto far = read(workbook("<row r='1048576'><c r='A1048576'><v>1</v></c></row>"));
    ASSERT_TRUE(far);
    EXPECT_TRUE(far->isCut);
    EXPECT_TRUE(far->rows.empty());
    const auto wide = read(workbook("<row r='1'><c r='XFD1'><v>1</v></c></row>"));
    ASSERT_TRUE(wide);
    EXPECT_TRUE(wide->isCut);
    // One cell that claims to be everywhere.
    const auto bomb = read({{"content.xml",
                             "<a><table name='A'><table-row number-rows-repeated='999999999999'>"
                             "<table-cell number-columns-repeated='99999999999'><p>x</p>"
                             "</table-cell></table-row></table></a>"}});
    ASSERT_TRUE(bomb);
    EXPECT_TRUE(bomb->isCut);
    EXPECT_LE(bomb->rows.size() * TableSheet::mostColumns,
              TableSheet::mostCells + TableSheet::mostColumns);
}

TEST(SheetReader, refusesWhatIsNoWorkbook) {
    EXPECT_FALSE(SheetReader::read(test::MemoryBytes("no zip"), 0));
    EXPECT_FALSE(read({{"word/document.xml", "<w/>"}}));
    EXPECT_FALSE(read({{"content.xml", "<not closed"}}));
}

TEST(CellFormat, tellsDatesFromNumbers) {
    const struct {
        const char* code;
        const char* number;
        const char* shown;
    } cases[] = {
        {"General", "46082.25", "46082.25"},
        {"0.00", "2", "2.00"},
        {"#,##0", "1234567.8", "1234568"},
        {"0%", "0.5", "50 %"},
        {"d/m/yy", "46082", "2026-03-01"},
        {"[$-409]mmmm d\\, yyyy;@", "46082", "2026-03-01"},
        {"mmm-yy", "46082", "2026-03-01"},
        {"hh:mm", "0.5", "12:00"},
        {"[h]:mm:ss", "1.5", "36:00"},
        {"yyyy-mm-dd hh:mm", "46082.75", "2026-03-01 18:00"},
        {"\"day \"0", "3", "3"},       // letters in quotes are text
        {"[Red]0.0", "3", "3.0"},      // a colour is no date
        {"yyyy", "1", "1900-01-01"},   // before the day that never was
        {"yyyy", "61", "1900-03-01"},  // and after it
        {"yyyy", "-5", "-5"},
        {"yyyy", "1e300", "1e300"},
        {"0.00E+00", "5", "5"},
        {"0", "text", "text"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.code) + " of " + c.number);
        EXPECT_EQ(CellFormat::fromCode(c.code).shown(c.number, false), c.shown);
    }
    EXPECT_EQ(CellFormat::builtIn(14).shown("0", /*from1904=*/true), "1904-01-01");
}

}  // namespace
}  // namespace tarn
