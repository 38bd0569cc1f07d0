#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/search/QueryTokens.h"

namespace tarn {
namespace {

/// "text" for words, "text|original" where they differ, in angle brackets for quotations.
std::vector<std::string> shown(std::string_view text) {
    std::vector<std::string> list;
    for (const Token& token : QueryTokens(text)) {
        std::string one(token.text);
        if (token.original != token.text) one += "|" + std::string(token.original);
        list.push_back(token.quoted ? "<" + one + ">" : one);
    }
    return list;
}

TEST(QueryTokens, wordsAndQuotations) {
    const struct {
        const char* text;
        std::vector<std::string> tokens;
    } cases[] = {
        {"", {}},
        {" \t\n ", {}},
        {"Tax  Return", {"tax|Tax", "return|Return"}},
        {"don't", {"don't"}},
        {"'report 2024'", {"<report 2024>"}},
        {"mom's", {"mom|mom's"}},
        {"mom’s", {"mom|mom’s"}},
        {"x's", {"x's"}},
        {"é's é’s", {"é's", "é’s"}},  // three characters, however many bytes
        {"screenshots.", {"screenshots|screenshots."}},
        {".md", {".md"}},
        {".md.", {".md."}},
        {".", {"."}},
        {"a..", {"a.|a.."}},
        {"(budget), [draft]! {x}?;", {"budget", "draft", "x"}},
        {"?!,", {}},
        {"“Total Due”", {"<total due|Total Due>"}},
        {"“a“b", {"<a>", "b"}},  // the mark that opened it also ends it
        {"”a” ‘b’ ‘c‘", {"<a>", "<b>", "<c>"}},
        {"“it's \"fine\"”", {"<it's \"fine\">"}},
        {"foo\"bar baz\"qux", {"foo", "<bar baz>", "qux"}},
        {"\"open end", {"<open end>"}},
        {"\"\" '' \"", {}},
        {"\" \"", {"< >"}},
        {"(\"a\")", {"<a>"}},
        {"('a b')", {"'a", "b'"}},  // the apostrophe is not the first of its word
        {"Größe ÄRGER", {"größe|Größe", "ärger|ÄRGER"}},
        {"a\u00a0b\u3000c\u2028d", {"a", "b", "c", "d"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(shown(c.text), c.tokens);
    }
}

TEST(QueryTokens, anyBytesAreText) {
    EXPECT_EQ(shown("caf\xe9 \xff\xfe"), (std::vector<std::string>{"caf\xe9", "\xff\xfe"}));
    EXPECT_EQ(shown(std::string_view("a\0b c", 5)),
              (std::vector<std::string>{std::string("a\0b", 3), "c"}));
    EXPECT_EQ(shown("a\xe2\x80"), std::vector<std::string>{"a\xe2\x80"});  // half a quotation mark
}

}  // namespace
}  // namespace tarn
