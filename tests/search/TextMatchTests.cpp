#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/base/Text.h"
#include "TarnCore/search/TextMatch.h"

namespace tarn {
namespace {

/// The snippet with what is marked in square brackets.
std::string shown(std::string_view text, const std::vector<std::string>& phrases) {
    std::vector<PhraseFinder> finders;
    for (const std::string& phrase : phrases) finders.emplace_back(phrase);
    const TextMatch match = Snippet::of(text, finders);
    std::string out;
    std::size_t at = 0;
    for (const TextRange& range : match.ranges) {
        EXPECT_TRUE(at <= range.begin && range.begin < range.end &&
                    range.end <= match.snippet.size());
        out += match.snippet.substr(at, range.begin - at) + "[" +
               match.snippet.substr(range.begin, range.end - range.begin) + "]";
        at = range.end;
    }
    return out + match.snippet.substr(at);
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string out;
    for (std::size_t i = 0; i < count; ++i) out += text;
    return out;
}

TEST(Snippet, showsTheLineAroundTheFirstPlace) {
    const struct {
        std::string text;
        std::vector<std::string> phrases;
        std::string shown;
    } cases[] = {
        {"The total due is 5.", {"total due"}, "The [total due] is 5."},
        {"a\n\n TOTAL\r\n\tDue \n b ", {"total due"}, "a [TOTAL Due] b"},
        {"Résumé and resume", {"resume"}, "[Résumé] and [resume]"},
        {"abcabc", {"bca", "cab"}, "a[bcab]c"},  // what overlaps is one
        {"one two", {"two", "one"}, "[one] [two]"},
        {"nothing", {"phrase"}, ""},
        {"bell\x07 and\x1B[0m phrase", {"phrase"}, "bell and[0m [phrase]"},
        {"caf\xE9 phrase", {"phrase"}, "caf\uFFFD [phrase]"},
        {"  the beginning\nof it ", {}, "the beginning of it"},
        {"", {}, ""},
        {repeated("before ", 30) + "the phrase" + repeated(" after", 30),
         {"phrase"},
         "…" + repeated("before ", 5) + "the [phrase]" + repeated(" after", 12) + "…"},
        // Without blanks it is cut between characters, never inside one.
        {repeated("東", 100) + "京都" + repeated("東", 100),
         {"京都"},
         "…" + repeated("東", 40) + "[京都]" + repeated("東", 78) + "…"},
        {repeated("e\u0301", 100) + "x" + repeated("e\u0301", 200),
         {"x"},
         "…" + repeated("e\u0301", 20) + "[x]" + repeated("e\u0301", 40) + "…"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(shown(c.text, c.phrases), c.shown);
    }
}

TEST(Snippet, showsTheBeginningOfAPhraseThatIsTooLong) {
    const std::string phrase = repeated("word ", 100) + "end";
    const std::string text = repeated("before ", 20) + phrase + " after";
    const std::vector<PhraseFinder> finders{PhraseFinder(phrase)};
    const TextMatch match = Snippet::of(text, finders);
    EXPECT_LT(Text::length(match.snippet), 300U);
    ASSERT_EQ(match.ranges.size(), 1U);
    EXPECT_EQ(match.snippet.substr(match.ranges[0].begin, 9), "word word");
}

/// Whatever the text, a snippet is short, valid, on one line, and its marks are what was looked
/// for.
TEST(Snippet, isALineWhateverTheText) {
    const std::vector<std::string> pieces = {"a",  "needle", " ",      "\n",     "\xFF",       "é",
                                             "東", "\u0301", "\u00A0", "\u200B", "\U0001F600", "b"};
    std::uint32_t state = 5;
    const auto random = [&] { return (state = state * 1664525 + 1013904223) >> 16; };
    for (int i = 0; i < 500; ++i) {
        std::string text;
        for (std::uint32_t n = random() % 400; n > 0; --n) text += pieces[random() % pieces.size()];
        const std::vector<PhraseFinder> finders{PhraseFinder("needle"), PhraseFinder("a é")};
        const TextMatch match = Snippet::of(text, finders);
        SCOPED_TRACE(text);
        ASSERT_TRUE(Text::isValidUTF8(match.snippet));
        ASSERT_EQ(match.snippet.find('\n'), std::string::npos);
        ASSERT_EQ(match.snippet.find("  "), std::string::npos);
        ASSERT_EQ(match.snippet.empty(), !finders[0].occursIn(text) && !finders[1].occursIn(text));
        for (const TextRange& range : match.ranges) {
            const auto part = match.snippet.substr(range.begin, range.end - range.begin);
            ASSERT_TRUE(finders[0].occursIn(part) || finders[1].occursIn(part)) << part;
        }
    }
}

}  // namespace
}  // namespace tarn
