#include <random>

#include <gtest/gtest.h>

#include "TarnCore/base/Text.h"
#include "TarnCore/index/PlainText.h"
#include "TarnCore/index/TextExtractor.h"

namespace tarn {
namespace {

using namespace std::string_literals;

std::string wide(std::u32string_view text, int width, bool isBigEndian) {
    std::string out;
    for (const char32_t character : text) {
        for (int i = 0; i < width; ++i) {
            const int shift = isBigEndian ? (width - 1 - i) * 8 : i * 8;
            out += static_cast<char>(shift < 32 ? character >> shift & 0xFF : 0);
        }
    }
    return out;
}

TEST(PlainText, isDecodedFromTheEncodingsPeopleHave) {
    const std::u32string_view german = U"Grüße aus Köln, 100 €\nund mehr";
    const std::string germanUTF8 = "Grüße aus Köln, 100 €\nund mehr";
    const struct {
        const char* name;
        std::string bytes;
        std::string text;
    } cases[] = {
        {"nothing", "", ""},
        {"ASCII", "plain\n", "plain\n"},
        {"UTF-8", "naïve 日本 😀", "naïve 日本 😀"},
        {"UTF-8 with a mark", "\xEF\xBB\xBFnaïve", "naïve"},
        {"UTF-8 with one torn character", "äöüäöüäöüäöü \xC3( äöüäöü",
         "äöüäöüäöüäöü \uFFFD( äöüäöü"},
        {"UTF-16LE with a mark", "\xFF\xFE" + wide(german, 2, false), germanUTF8},
        {"UTF-16BE with a mark", "\xFE\xFF" + wide(german, 2, true), germanUTF8},
        {"UTF-32LE with a mark", "\xFF\xFE\0\0"s + wide(german, 4, false), germanUTF8},
        {"UTF-32BE with a mark", "\0\0\xFE\xFF"s + wide(german, 4, true), germanUTF8},
        {"UTF-16LE", wide(german, 2, false), germanUTF8},
        {"UTF-16BE", wide(german, 2, true), germanUTF8},
        {"UTF-32LE", wide(german, 4, false), germanUTF8},
        {"UTF-32BE", wide(german, 4, true), germanUTF8},
        {"an odd last byte", "\xFF\xFE" + wide(U"ab", 2, false) + "c", "ab\uFFFD"},
        {"Windows-1252 behind much ASCII",
         std::string(20000, 'a') + "\nDie Gr\xFC\xDF"
                                   "e kosten 100 \x80 f\xFCr sch\xF6ne H\xE4user.",
         std::string(20000, 'a') + "\nDie Grüße kosten 100 € für schöne Häuser."},
        {"Windows-1251",
         "\xCF\xF0\xE8\xE2\xE5\xF2, \xEA\xE0\xEA \xE4\xE5\xEB\xE0? \xFD\xF2\xEE "
         "\xF2\xE5\xEA\xF1\xF2 \xED\xE0 "
         "\xF0\xF3\xF1\xF1\xEA\xEE\xEC \xFF\xE7\xFB\xEA\xE5",
         "Привет, как дела? это текст на русском языке"},
        {"Shift JIS",
         "\x82\xB1\x82\xEA\x82\xCD\x93\xFA\x96{\x8C\xEA\x82\xCC\x83"
         "e\x83L\x83X\x83g\x82\xC5\x82\xB7\x81"
         "B",
         "これは日本語のテキストです。"},
        {"ISO-2022-JP", "\x1B$B$3$l$OF|K\\8l$N%F%-%9%H$G$9\x1B(B ok",
         "これは日本語のテキストです ok"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(PlainText::text(c.bytes), c.text);
    }
}

TEST(PlainText, isNotWhatOnlyHasTheNameOfAText) {
    std::mt19937 random(7);
    std::string noise(5000, '\0');
    for (char& byte : noise) byte = static_cast<char>(random() & 0xFF);
    std::string program =
        "\x7F"
        "ELF\2\1\1\0\0\0\0\0\0\0\0\0"s;
    for (int i = 0; i < 100; ++i) program += "\3\0>\0\1\0\0\0\x20\x10@\0\0\0\0\0symbol"s;
    for (const std::string& bytes : {noise, program, std::string(4096, '\0')}) {
        EXPECT_EQ(PlainText::text(bytes), std::nullopt);
    }
}

TEST(PlainText, isTidied) {
    const struct {
        const char* name;
        std::string bytes;
        std::string text;
    } cases[] = {
        {"line ends", "a\r\nb\rc\nd\r", "a\nb\nc\nd\n"},
        {"other line ends", "a\fb\vc\u0085d\u2028e\u2029f", "a\nb\nc\nd\ne\nf"},
        {"tabs stay", "a\tb", "a\tb"},
        {"controls go", "bold\b\b in this log \x1B[1mtext\x7F of many words\0 and lines"s,
         "bold in this log [1mtext of many words and lines"},
        {"C1 controls go", "a\u0080b\u009Fc", "abc"},
        {"soft hyphens go", "Donau\u00ADdampf", "Donaudampf"},
        {"ligatures are letters", "ﬁsh, aﬀair, oﬃce, ﬂat, ﬅ, ﬆ, ﬖ",
         "fish, affair, office, flat, st, st, ﬖ"},
        {"close relations of those stay", "“a” … \u00A0 \u2027 ©", "“a” … \u00A0 \u2027 ©"},
        {"in a long line", std::string(100, 'x') + "\r\n" + std::string(100, 'y'),
         std::string(100, 'x') + "\n" + std::string(100, 'y')},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(PlainText::text(c.bytes), c.text);
    }
}

TEST(PlainText, isCutBetweenCharacters) {
    for (const std::string character : {"ä", "😀"}) {
        SCOPED_TRACE(character);
        std::string bytes = "-";
        for (std::size_t i = 0; i < TextExtractor::maxCharacters + 10; ++i) bytes += character;
        const std::string text = PlainText::text(bytes).value_or("");
        EXPECT_EQ(Text::length(text), TextExtractor::maxCharacters);
        EXPECT_TRUE(Text::isValidUTF8(text));
        EXPECT_EQ(text.size(), 1 + (TextExtractor::maxCharacters - 1) * character.size());
    }
}

TEST(PlainText, isViewedWhereItStandsWhenNothingHasToBeConverted) {
    std::string storage;
    const std::string bytes = "\xEF\xBB\xBFnaïve\r\n";
    const auto view = PlainText::decode(bytes, storage);
    ASSERT_TRUE(view);
    EXPECT_EQ(*view, "naïve\r\n");
    EXPECT_EQ(view->data(), bytes.data() + 3);
}

TEST(PlainText, mailIsMoreThanItsBytes) {
    EXPECT_TRUE(PlainText::isPlain("a.TXT"));
    EXPECT_TRUE(PlainText::isPlain("a.csv"));
    EXPECT_FALSE(PlainText::isPlain("a.eml"));
    EXPECT_FALSE(PlainText::isPlain("a.EMLX"));
    EXPECT_FALSE(PlainText::isPlain("a.html"));
    EXPECT_FALSE(PlainText::isPlain("a"));
}

}  // namespace
}  // namespace tarn
