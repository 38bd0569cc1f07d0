#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/base/Text.h"
#include "TarnCore/preview/CodeTokens.h"

namespace tarn {
namespace {

/// The lines with each span as "<k:word>", the letter being the token's.
std::string marked(std::string_view fileName, const std::string& text) {
    static constexpr char letters[] = "kvsncdyth+-";
    const CodeLanguage* language = CodeLanguage::of(fileName, text.substr(0, text.find('\n')));
    if (!language) return "no language";
    std::string out;
    CodeTokens::State state = 0;
    for (const std::string_view line : Text::split(text, '\n')) {
        const std::u16string wide(line.begin(), line.end());  // ASCII
        std::vector<CodeSpan> spans;
        state = CodeTokens::tokenize(*language, wide, state, spans);
        std::size_t at = 0;
        if (!out.empty()) out += '\n';
        for (const CodeSpan& span : spans) {
            out += line.substr(at, span.start - at);
            out += '<';
            out += letters[static_cast<std::size_t>(span.token)];
            out += ':';
            out += line.substr(span.start, span.length);
            out += '>';
            at = span.start + span.length;
        }
        out += line.substr(at);
    }
    return out;
}

TEST(CodeTokens, findsWhatTheEyeLooksFor) {
    const struct {
        const char* name;
        const char* text;
        const char* marked;
    } cases[] = {
        {"a.cpp", "if (x2 == 0x1F) return; // why",
         "<k:if> (x2 == <n:0x1F>) <k:return>; <c:// why>"},
        {"a.cpp", "#include <map>", "<d:#include> <s:<map>>"},
        {"a.cpp", "  #  define A 1", "  <d:#  define> A <n:1>"},
        {"a.cpp", R"(f("a\"b", 'c');)", R"(f(<s:"a\"b">, <s:'c'>);)"},
        {"a.cpp", "/* one\ntwo */ int x;", "<c:/* one>\n<c:two */> <v:int> x;"},
        {"a.cpp", "auto s = R\"(a\nb)\" + 1;", "<k:auto> s = <s:R\"(a>\n<s:b)\"> + <n:1>;"},
        {"a.cpp", "double d = 1.5e-3;", "<v:double> d = <n:1.5e-3>;"},
        {"a.swift", "/* a /* b */ c */ let x", "<c:/* a /* b */ c */> <k:let> x"},
        {"a.py", "def f(): # \"x\"", "<k:def> f(): <c:# \"x\">"},
        {"a.py", "'''a\nb''' and @property", "<s:'''a>\n<s:b'''> <k:and> <d:@property>"},
        {"a.sh", "echo $# # no", "<v:echo> $# <c:# no>"},
        {"run", "#!/usr/bin/env python3\nimport os", "<c:#!/usr/bin/env python3>\n<k:import> os"},
        {"a.rs", "fn f<'a>(x: &'a str)", "<k:fn> f<'a>(x: &'a <v:str>)"},
        {"a.rs", "#[derive(Debug)]", "<d:#[derive(Debug)]>"},
        {"a.sql", "SELECT a FROM b WHERE c = 'it''s'",
         "<k:SELECT> a <k:FROM> b <k:WHERE> c = <s:'it'><s:'s'>"},
        {"a.js", "x = `a\n${b}` + null", "x = <s:`a>\n<s:${b}`> + <v:null>"},
        {"a.json", R"({"a": ["b", 1, true]})", R"({<y:"a">: [<s:"b">, <n:1>, <v:true>]})"},
        {"a.yml", "- name: x # c", "- <y:name>: x <c:# c>"},
        {"a.yml", "url: http://a/b#c", "<y:url>: http://a/b#c"},
        {"a.ini", "[Main]\nkey = a;b\n; c", "<h:[Main]>\n<y:key >= a;b\n<c:; c>"},
        {"a.css", ".a:hover { color: #fff; }", ".a:hover { <y:color>: <n:#fff>; }"},
        {"a.html", "<a href=\"x\">b &amp; c</a>",
         "<t:<a> <y:href>=<s:\"x\"><t:>>b <v:&amp;> c<t:</a><t:>>"},
        {"a.html", "<a href='x\ny'> <!-- z\n-->",
         "<t:<a> <y:href>=<s:'x>\n<s:y'><t:>> <c:<!-- z>\n<c:-->>"},
        {"a.md", "# A\nb `c` [d](e)\n```\nf\n```",
         "<h:# A>\nb <s:`c`> [d](<v:e>)\n<c:```>\n<s:f>\n<c:```>"},
        {"a.diff", "--- a\n@@ 1 @@\n-b\n+c", "<h:--- a>\n<d:@@ 1 @@>\n<-:-b>\n<+:+c>"},
        {"CMakeLists.txt", "if(A)", "<k:if>(A)"},
        {"Makefile", "include x", "<k:include> x"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.name) + ": " + c.text);
        EXPECT_EQ(marked(c.name, c.text), c.marked);
    }
}

TEST(CodeTokens, knowsNoLanguageWhereThereIsNone) {
    for (const char* name : {"notes.txt", "README", "a.unknown", "archive.", ""}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(CodeLanguage::of(name, "hello"), nullptr);
    }
}

// Whatever a line holds, its spans must be in order and inside it: the view draws by them.
TEST(CodeTokens, spansStayInOrderAndInside) {
    const std::u16string lines[] = {u"\"\\", u"<a b=\"", u"'''",      u"/*/",   u"`](",
                                    u"#[",   u"0x",      u"@",        u"é$ü",   u"&#",
                                    u"1e+",  u"<!--",    u"- - a: b", u"*/ \"", u"\\"};
    for (const CodeLanguage& language : CodeLanguage::all()) {
        for (const std::u16string& first : lines) {
            CodeTokens::State state = 0;
            for (const std::u16string& line : lines) {
                std::vector<CodeSpan> spans;
                state = CodeTokens::tokenize(language, first, state, spans);
                spans.clear();
                state = CodeTokens::tokenize(language, line, state, spans);
                std::size_t end = 0;
                for (const CodeSpan& span : spans) {
                    ASSERT_GE(span.start, end) << language.name;
                    ASSERT_GT(span.length, 0u) << language.name;
                    end = span.start + span.length;
                }
                ASSERT_LE(end, line.size()) << language.name;
            }
        }
    }
}

}  // namespace
}  // namespace tarn
