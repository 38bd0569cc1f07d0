#include <gtest/gtest.h>

#include "TarnCore/index/TextExtractor.h"
#include "TarnCore/index/readers/RichText.h"

namespace tarn {
namespace {

TEST(RichText, saysWhatAPersonReads) {
    const struct {
        const char* name;
        std::string rtf;
        const char* text;
    } cases[] = {
        {"paragraphs and lines", R"({\rtf1 one\par two\line three\page four})",
         "one\ntwo\nthree\nfour"},
        {"words end at their space", R"({\rtf1\b bo\b0 ld \i0\fs24word\par -1})", "bold word\n-1"},
        {"line ends of the file", "{\\rtf1 a\r\nb\\\nc\\\r\nd}", "ab\nc\nd"},
        {"cells and rows", R"({\rtf1\trowd a\cell b\cell\row c\cell d\cell\row})", "a\tb\nc\td"},
        {"tabs", R"({\rtf1 a\tab b})", "a\tb"},
        {"escapes", R"({\rtf1 \\ \{ \} a\~b c\_d e\-f})", "\\ { } a b c-d ef"},
        {"marks", R"({\rtf1 \ldblquote a\rdblquote  \lquote b\rquote  \endash\emdash \bullet})",
         "“a” ‘b’ –—•"},
        {"bytes in Windows-1252", R"({\rtf1\ansi 100 \'80, gr\'fc\'dfe})", "100 €, grüße"},
        {"bytes in the document's page", R"({\rtf1\ansi\ansicpg1251 \'cf\'f0\'e8\'e2\'e5\'f2})",
         "Привет"},
        {"bytes in the font's page",
         R"({\rtf1\ansi{\fonttbl{\f0\fcharset0 A;}{\f1\fcharset204 B;}{\f2\fcharset128 C;}})"
         R"(\f0 \'fc {\f1 \'cf\'f0\'e8} \'fc \f2 \'93\'fa\'96\'7b\plain \'fc})",
         "ü При ü 日本ü"},
        {"raw bytes",
         "{\\rtf1\\ansi gr\xFC\xDF"
         "e}",
         "grüße"},
        {"of a Mac", R"({\rtf1\mac \'8e\'8f})", "éè"},
        {"an unknown page", R"({\rtf1\ansi\ansicpg99999 \'fc})", "ü"},
        {"Unicode with a fallback", R"({\rtf1 \u8364 ?b\u8364\'80c})", "€b€c"},
        {"longer fallbacks", R"({\rtf1 {\uc2\u8364 EUx}y\u8364 zy\uc0\u8364 x\uc1\u8211\endash -})",
         "€xy€y€x–-"},
        {"a fallback ends with its group", R"({\rtf1 {\u8364}x})", "€x"},
        {"negative and paired", R"({\rtf1 \u-10179?\u-8704?\u-4?})", "😀\uFFFC"},
        {"half a pair", R"({\rtf1 a\u-10179?b\u-8704?c})", "abc"},
        {"hidden groups",
         R"({\rtf1{\fonttbl{\f0 Times;}}{\colortbl;\red0;}{\stylesheet{\s1 Normal;}})"
         R"({\info{\title T}}{\*\generator G;}{\pict 0123abcd}{\*\unknown{\b x}}a{\*\shppict x}b})",
         "ab"},
        {"fields", R"({\rtf1{\field{\*\fldinst HYPERLINK "x"}{\fldrslt the link}}})", "the link"},
        {"text boxes",
         R"({\rtf1{\shp{\*\shpinst{\sp{\sn a}{\sv b}}{\shptxt boxed\par}}{\shprslt again}}end})",
         "boxed\nend"},
        {"notes", R"({\rtf1 a{\footnote  b} c})", "a b c"},
        {"bytes as they are", "{\\rtf1 a{\\pict\\bin5 }}}}}b}c}", "ac"},
        {"bytes that reach too far", "{\\rtf1 a\\bin99999999999 b}", nullptr},
        {"an empty document", R"({\rtf1{\*\generator G;}})", nullptr},
        {"a torn document", R"({\rtf1 one\par {\b two)", nullptr},
        {"a torn byte", R"({\rtf1 a\'f)", nullptr},
        {"no rich text", "Dear {\\rtf}", nullptr},
        {"nothing", "", nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        if (c.text) {
            EXPECT_EQ(RichText::read(c.rtf), c.text);
        } else {
            EXPECT_EQ(RichText::read(c.rtf), std::nullopt);
        }
    }
}

TEST(RichText, nestsAsDeeplyAsItLikes) {
    std::string deep = "{\\rtf1 ";
    for (int i = 0; i < 300'000; ++i) deep += "{\\b ";
    std::string closed = deep + "x" + std::string(300'001, '}');
    EXPECT_EQ(RichText::read(closed), "x");
    EXPECT_EQ(RichText::read(deep + "x"), std::nullopt);
}

TEST(RichText, isCutInTime) {
    std::string rtf = "{\\rtf1 ";
    for (std::size_t i = 0; i < TextExtractor::maxCharacters + 1000; ++i) rtf += "\\u8364 ?";
    const auto text = RichText::read(rtf);  // without its end, which is not looked at any more
    ASSERT_TRUE(text);
    EXPECT_LT(text->size(), (TextExtractor::maxCharacters + 100) * 3);
}

}  // namespace
}  // namespace tarn
