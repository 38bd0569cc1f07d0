#include <gtest/gtest.h>

#include "TarnCore/index/readers/HTMLText.h"

namespace tarn {
namespace {

using HTMLText::stripMarkup;

TEST(HTMLText, saysWhatAPersonReads) {
    const struct {
        const char* name;
        std::string markup;
        const char* text;
    } cases[] = {
        {"tags within a word", "<p>im<b>port</b>ant</p>", "important"},
        {"blocks", "<div>one<p>two</p>three</div><h1>four</h1>five<br/>six",
         "one\ntwo\nthree\nfour\nfive\nsix"},
        {"items without ends", "<ul><li>one<li>two</ul>", "one\ntwo"},
        {"cells", "<table><tr><td>a</td><td>b</td></tr><tr><th>c<th>d</table>", "a\tb\nc\td"},
        {"white space", "  a \n\t b&nbsp;\xC2\xA0 c<p>  </p> d  ", "a b c\nd"},
        {"preformatted", "<pre>a\n  b</pre>c\nd", "a\nb\nc d"},
        {"scripts and styles",
         "a<script type='x'>if (a < b) write('<p>')</script><STYLE>p > a {}</Style >b", "ab"},
        {"a script that does not end", "a<script>b<p>c", "ab\nc"},
        {"what is no script", "<scripted>a</scripted><styles>b</styles>", "ab"},
        {"an end of another script", "<script>a</scripts>b</script>c", "c"},
        {"comments", "a<!-- <p>x</p> -->b<!-->c-->d", "abd"},
        {"a comment that does not end", "a<!-- b<p>c", "a b\nc"},
        {"declarations", "<!DOCTYPE html><?xml version='1.0'?>a", "a"},
        {"marked sections", "a<![CDATA[ <b> & ]]>c<![CDATA[d", "a <b> & cd"},
        {"quoted ends", R"(<a title="a > b" alt='>'>c</a>)", "c"},
        {"quotes that do not end", "<a title=\"x>b</a><p title='>c</p>", "b\nc"},
        {"stray marks", "1 < 2 <> <3 && a<", "1 < 2 <> <3 && a<"},
        {"a torn tag", "a<p class=", "a"},
        {"references", "&lt;&amp;&gt;&quot;&apos;&uuml;&hellip;&#65;&#x1F600;&#8364;&#150;",
         "<&>\"'ü…A😀€–"},
        {"what is no reference", "AT&T &unknown; &; &# &#; &#xZ; &#x110000; &#0; a&b=c;",
         "AT&T &unknown; &; &# &#; &#xZ; \uFFFD \uFFFD a&b=c;"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(stripMarkup(c.markup), c.text);
    }
}

TEST(HTMLText, isReadInItsEncoding) {
    const struct {
        const char* name;
        std::string bytes;
        std::string charset;
        const char* text;
    } cases[] = {
        {"nothing said", "<p>Grüße", "", "Grüße"},
        {"meta", "<meta charset='windows-1251'><p>\xCF\xF0\xE8\xE2\xE5\xF2", "", "Привет"},
        {"old meta",
         "<META http-equiv=Content-Type content=\"text/html; charset=KOI8-R\">\xF0\xD2\xC9", "",
         "При"},
        {"declaration", "<?xml version='1.0' encoding='ISO-8859-2'?><p>\xB1</p>", "", "ą"},
        {"Latin-1 that is more", "<meta charset=iso-8859-1>100 \x80", "", "100 €"},
        {"a meta that is wrong", "<meta charset=iso-8859-1>Grüße", "", "Grüße"},
        {"seven bits", "<meta charset=iso-2022-jp>\x1B$BF|K\\\x1B(B", "", "日本"},
        {"said by mail", "<meta charset=utf-8>\xCF\xF0\xE8", "windows-1251", "При"},
        {"an unknown name",
         "<meta charset=x-none>gr\xFC\xDF"
         "e",
         "", "grüße"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(HTMLText::read(c.bytes, c.charset), c.text);
    }
    EXPECT_EQ(HTMLText::read("<p> <b></b>"), std::nullopt);
}

/// Each takes a minute and more where time grows with the square of the length.
TEST(HTMLText, takesTimeByLengthAlone) {
    for (const std::string piece :
         {"<", "<a", "<!--", "<![CDATA[", "<script>", "<script", "</script", "<a =\"><a \"", "&",
          "&#", "<a '", "<style>", "<!", "<?", "&lt", "<a b=\""}) {
        SCOPED_TRACE(piece);
        std::string markup;
        while (markup.size() < 500'000) markup += piece;
        stripMarkup(markup);
    }
}

}  // namespace
}  // namespace tarn
