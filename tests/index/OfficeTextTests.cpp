#include <gtest/gtest.h>

#include "TarnCore/index/TextExtractor.h"
#include "TarnCore/index/readers/OfficePackage.h"
#include "TarnCore/index/readers/OfficeText.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/MemoryBytes.h"

namespace tarn {
namespace {

using test::MemoryBytes;
using test::ZipBytes;
using Members = std::vector<ZipBytes::Member>;

std::optional<std::string> read(std::string bytes) {
    return OfficeText::read(MemoryBytes(std::move(bytes)));
}

ZipBytes::Member part(std::string name, std::string content) {
    return {.name = std::move(name), .content = std::move(content), .isDeflated = true};
}

std::string word(std::string_view body) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>"
           "<w:document xmlns:w=\"w\" xmlns:mc=\"mc\" xmlns:a=\"a\"><w:body>" +
           std::string(body) + "</w:body></w:document>";
}

std::string paragraph(std::string_view text) {
    return "<w:p><w:r><w:t>" + std::string(text) + "</w:t></w:r></w:p>";
}

TEST(OfficeText, documentsSayTheirParagraphs) {
    const struct {
        const char* name;
        std::string body;
        const char* text;
    } cases[] = {
        {"runs",
         "<w:p><w:r><w:t>To</w:t></w:r><w:r><w:t xml:space=\"preserve\">tal </w:t></w:r>"
         "<w:r><w:t>due</w:t></w:r></w:p><w:p><w:r><w:t>next</w:t></w:r></w:p>",
         "Total due\nnext"},
        {"breaks and tabs",
         "<w:p><w:pPr><w:tabs><w:tab w:pos=\"1\"/></w:tabs></w:pPr><w:r><w:t>a</w:t><w:tab/>"
         "<w:t>b</w:t><w:br/><w:t>c</w:t><w:noBreakHyphen/><w:t>d</w:t></w:r></w:p>",
         "a\tb\nc-d"},
        {"references",
         "<w:p><w:r><w:t>a &amp; b &#8364; &#x1F600;<![CDATA[<c>]]></w:t></w:r></w:p>",
         "a & b € 😀<c>"},
        {"what was deleted or is computed",
         "<w:p><w:r><w:delText>x</w:delText><w:instrText>PAGE</w:instrText><w:t>a</w:t></w:r></"
         "w:p>",
         "a"},
        {"a text box in both its forms",
         "<mc:AlternateContent><mc:Choice>" + paragraph("box") + "</mc:Choice><mc:Fallback>" +
             paragraph("box") + "</mc:Fallback></mc:AlternateContent>",
         "box"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(read(ZipBytes({part("word/document.xml", word(c.body))}).bytes()), c.text);
        EXPECT_EQ(OfficeText::readWordML(word(c.body)), c.text) << "in one file";
    }
}

TEST(OfficeText, partsComeInTheOrderOfReading) {
    const auto slide = [](std::string_view text) {
        return "<p:sld xmlns:p=\"p\" xmlns:a=\"a\"><a:p><a:r><a:t>" + std::string(text) +
               "</a:t></a:r><a:br/><a:fld><a:t>2</a:t></a:fld></a:p></p:sld>";
    };
    EXPECT_EQ(read(ZipBytes({part("ppt/slides/slide10.xml", slide("ten")),
                             part("ppt/slides/slide2.xml", slide("two")),
                             part("ppt/slides/slide1.xml", slide("one")),
                             part("ppt/notesSlides/notesSlide1.xml", slide("note")),
                             part("ppt/slideMasters/slideMaster1.xml", slide("master"))})
                       .bytes()),
              "one\n2\ntwo\n2\nten\n2\nnote\n2");
    EXPECT_EQ(read(ZipBytes({part("word/comments.xml", word(paragraph("comment"))),
                             part("word/header1.xml", word(paragraph("header"))),
                             part("word/footnotes.xml", word(paragraph("note"))),
                             part("word/styles.xml", word(paragraph("style"))),
                             part("word/document.xml", word(paragraph("body")))})
                       .bytes()),
              "body\nheader\nnote\ncomment");
}

TEST(OfficeText, sheetsSayTheirCells) {
    const std::string sheet =
        "<worksheet xmlns=\"s\"><sheetData><row><c r=\"A1\" t=\"s\"><v>1</v></c><c "
        "r=\"B1\"><v>2.5</v></c>"
        "<c r=\"C1\"><f>A1&amp;B1</f><v>7</v></c></row><row><c "
        "t=\"inlineStr\"><is><r><t>in</t></r><r><t>line</t>"
        "</r></is></c><c t=\"str\"><f>A</f><v>made</v></c><c t=\"s\"><v>9</v></c><c "
        "t=\"s\"><v>0</v></c></row>"
        "</sheetData></worksheet>";
    const std::string strings =
        "<sst xmlns=\"s\"><si><t>Ã "
        "zero</t></si><si><r><t>o</t></r><r><t>ne</t></r><rPh><t>x</t></rPh></si></sst>";
    EXPECT_EQ(read(ZipBytes({part("xl/worksheets/sheet1.xml", sheet),
                             part("xl/sharedStrings.xml", strings),
                             part("xl/comments1.xml",
                                  "<comments xmlns=\"s\"><comment><text><r><t>said</t></r></text>"
                                  "</comment></comments>")})
                       .bytes()),
              "one\t2.5\t7\ninline\tmade\tÃ zero\nsaid");
    EXPECT_EQ(read(ZipBytes({part("xl/worksheets/sheet1.xml", sheet)}).bytes()),
              "2.5\t7\ninline\tmade");
}

TEST(OfficeText, openDocumentsSayTheirParagraphs) {
    const auto document = [](std::string_view body) {
        return "<office:document-content xmlns:office=\"o\" xmlns:text=\"t\" xmlns:table=\"b\">"
               "<office:automatic-styles><style>x</style></office:automatic-styles><office:body>" +
               std::string(body) + "</office:body></office:document-content>";
    };
    EXPECT_EQ(
        read(
            ZipBytes(
                {part("content.xml",
                      document(
                          "<text:tracked-changes><text:p>gone</text:p></text:tracked-changes>"
                          "<text:h>Head<text:span>ing</text:span></text:h>"
                          "<text:p>a<text:s text:c=\"3\"/>b<text:tab/>c<text:line-break/>d</text:p>"
                          "<table:table-cell><text:p>cell</text:p></table:table-cell>"))})
                .bytes()),
        "Heading\na b\tc\nd\ncell");
}

TEST(OfficeText, damagedAndForeignDocumentsSayNothing) {
    const auto good = part("word/document.xml", word(paragraph("text")));
    const auto changed = [&](auto change) {
        ZipBytes::Member member = good;
        change(member);
        return ZipBytes({member}).bytes();
    };
    ASSERT_EQ(read(ZipBytes({good}).bytes()), "text");
    const std::string bytes = ZipBytes({good}).bytes();
    const struct {
        const char* name;
        std::string bytes;
    } cases[] = {
        {"nothing", ""},
        {"the container of encrypted documents",
         "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + std::string(1000, '\0')},
        {"an encrypted member", changed([](auto& member) { member.flags = 1; })},
        {"a rare packing", changed([](auto& member) { member.method = 12; })},
        {"a wrong checksum", changed([](auto& member) { member.crc = 1; })},
        {"a wrong size", changed([](auto& member) { member.size = 5; })},
        {"a size that is never reached", changed([](auto& member) { member.size = 100'000; })},
        {"torn XML",
         changed([](auto& member) { member.content.resize(member.content.size() - 30); })},
        {"no XML", changed([](auto& member) { member.content = "text"; })},
        {"encrypted XML", ZipBytes({part("content.xml", "\x8F\x12\xD3\x01\x99\xFE\x10<")}).bytes()},
        {"nothing in it", ZipBytes({part("mimetype", "x")}).bytes()},
        {"members that overlap", ZipBytes({good,
                                           {.name = "word/header.xml",
                                            .content = good.content,
                                            .isDeflated = true,
                                            .offset = 0}})
                                     .bytes()},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(read(c.bytes), std::nullopt);
    }
    for (std::size_t cut = 1; cut < bytes.size(); cut += 7) {
        SCOPED_TRACE(cut);
        EXPECT_EQ(read(bytes.substr(0, bytes.size() - cut)), std::nullopt);
    }
}

TEST(OfficeText, documentsThatOnlyGrowSayNothing) {
    for (const std::string declared :
         {"<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;\">",
          "<!ENTITY b SYSTEM \"file:///etc/passwd\">", "<!ENTITY % b \"x\"> %b;",
          "<!ATTLIST p a CDATA \"x\" b (c|d) \"c\">", "<!ELEMENT p (t|r)*>",
          "<!NOTATION n SYSTEM \"x\">"}) {
        SCOPED_TRACE(declared);
        const std::string document =
            "<?xml version=\"1.0\"?><!DOCTYPE d [" + declared + "]><d><p><t>text &b;</t></p></d>";
        EXPECT_EQ(read(ZipBytes({part("word/document.xml", document)}).bytes()), std::nullopt);
        EXPECT_EQ(OfficeText::readWordML(document), std::nullopt);
    }

    std::string deep;
    for (int i = 0; i < 100'000; ++i) deep += "<w:p>";
    EXPECT_EQ(read(ZipBytes({part("word/document.xml", word(deep))}).bytes()), std::nullopt);
}

TEST(OfficePackage, unpacksNoMoreThanItMay) {
    const std::string content(100'000, ' ');
    const MemoryBytes bytes(
        ZipBytes({part("a", content), part("b", content), part("c", content)}).bytes());
    auto package = OfficePackage::open(bytes, 250'000);
    ASSERT_TRUE(package);
    std::size_t size = 0;
    const auto count = [&](std::string_view piece) {
        size += piece.size();
        return true;
    };
    EXPECT_TRUE(package->read("a", count));
    EXPECT_TRUE(package->read("b", count));
    EXPECT_FALSE(package->read("c", count));
    EXPECT_LE(size, 250'000U);
}

TEST(OfficeText, longDocumentsAreReadUntilThereIsEnough) {
    std::string body;
    for (std::size_t i = 0; i < TextExtractor::maxCharacters / 9 + 100; ++i)
        body += paragraph("日本 words");
    // What stands behind may be damaged then: it is never looked at.
    const auto text =
        read(ZipBytes({part("word/document.xml", word(body)), part("word/header1.xml", "no XML")})
                 .bytes());
    ASSERT_TRUE(text);
    EXPECT_LT(text->size(), TextExtractor::maxCharacters * 2);
}

}  // namespace
}  // namespace tarn
