#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/base/Text.h"
#include "TarnCore/search/PhraseFinder.h"

namespace tarn {
namespace {

TEST(PhraseFinder, findsPhrasesWhateverTheirCaseMarksAndBlanks) {
    const struct {
        const char* phrase;
        const char* text;
        const char* found;  ///< Absent: nothing.
    } cases[] = {
        {"total due", "The TOTAL Due is", "TOTAL Due"},
        {"total due", "The total\r\n\t due", "total\r\n\t due"},
        {"total due", "total\u00A0\u2003due", "total\u00A0\u2003due"},
        {"  total   due ", "a total due", "total due"},
        {"total due", "totaldue", nullptr},
        {"total due", "total-due", nullptr},
        {"total due", "total", nullptr},
        {"resume", "My Résumé.", "Résumé"},
        {"résumé", "my RESUME", "RESUME"},
        {"resume", "re\u0301sume\u0301\u0302!", "re\u0301sume\u0301\u0302"},
        {"resum", "resum\u0301e", "resum\u0301"},
        {"grosse", "Die Größe", "Größe"},
        {"größe", "DIE GRÖSSE", "GRÖSSE"},
        {"invoice", "in\u00ADvoice", "in\u00ADvoice"},
        {"fish", "a ﬁsh", "ﬁsh"},
        {"ice", "dﬁce", "ﬁce"},  // the second letter of a ligature begins it
        {"kelvin", "5 \u212Aelvin", "\u212Aelvin"},
        {"ПРИВЕТ мир", "и привет\nМир.", "привет\nМир"},
        {"привет", "приве́т", "приве́т"},
        {"привет", "hello", nullptr},
        {"東京", "新東京駅", "東京"},
        {"한국", "대한국인", "한국"},
        {"caf\xE9", "un caf\xE9 noir", "caf\xE9"},  // broken bytes are themselves
        {"caf\xE9", "un café", nullptr},
        {"x", "X", "X"},
        {"@", "a`@", "@"},  // no letters: their case bits mean something else
        {"[1]", "{1} [1]", "[1]"},
        {"é", "e", "e"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.phrase) + " in " + c.text);
        const PhraseFinder finder(c.phrase);
        const std::string_view text = c.text;
        EXPECT_EQ(finder.occursIn(text), c.found != nullptr);
        const auto range = finder.find(text);
        ASSERT_EQ(range.has_value(), c.found != nullptr);
        if (!range) continue;
        EXPECT_EQ(text.substr(range->begin, range->end - range->begin), c.found);
    }
    EXPECT_TRUE(PhraseFinder(" \u00A0\n").isEmpty());
    EXPECT_FALSE(PhraseFinder(" ").occursIn(" "));
}

TEST(PhraseFinder, seesWordsAsAnIndexDoesWhenAsked) {
    const PhraseFinder finder("total: due", PhraseFinder::Gaps::separators);
    for (const char* text : {"total due", "Total: Due", "total – due", "(TOTAL),\n\"due\"",
                             "total_due", "total\xFF\xFE due"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(finder.occursIn(text));
    }
    EXPECT_FALSE(finder.occursIn("totaldue"));
    EXPECT_FALSE(finder.occursIn("total amount due"));
}

TEST(PhraseFinder, findsTheFirstPlaceAndThoseAfterIt) {
    const std::string text = "due dué DUE “due” duo";
    const PhraseFinder finder("due");
    std::vector<std::string> found;
    for (auto range = finder.find(text); range; range = finder.find(text, range->end))
        found.push_back(text.substr(range->begin, range->end - range->begin));
    EXPECT_EQ(found, (std::vector<std::string>{"due", "dué", "DUE", "due"}));
}

/// The whole text folded, without soft hyphens, and every run of blanks one blank.
std::string flattened(std::string_view text) {
    const std::string folded = Text::replacing(Text::folded(text), "\u00AD", "");
    std::string out;
    for (std::size_t i = 0; i < folded.size();) {
        const std::size_t at = i;
        const char32_t c = Text::nextCharacter(folded, i);
        if (!Text::isSpace(c))
            out.append(folded, at, i - at);
        else if (!out.ends_with(' '))
            out += ' ';
    }
    return out;
}

/// Few different characters, so that phrases nearly match all the time, of every kind that the
/// scans treat in a way of its own.
TEST(PhraseFinder, agreesWithFoldingTheWholeText) {
    const std::vector<std::string> alphabets[] = {
        {"a", "B", " ", "é", "e", "E"},
        {"s", "S", "ß", "u", "n", " ", "\n", "\u00A0", "\t "},
        {"f", "i", "ﬁ", "ﬃ", "\u0301", "\u00AD", " "},
        {"п", "П", "р", "й", "и\u0306", "a", " ", "\u2009"},
        {"東", "京", "か", "が", "、", "a"},
        {"한", "국", "\u1112", "\u1161", "\u11AB"},
        {"a", "\xFF", "\xFE", "é", "“"},
        {"l", "T", "t", "\u0301", "\u00AD", "ļ", "é", " ", "\xC3"},
        {"o", "b", "ö", "\u0308", "ß", "s", " ", "\u00A0"},
        {"ς", "Σ", "σ", "ᾳ", "α", "ι", "ΐ", "\u0345"},
        {"K", "k", "\u212A", "I", "i", "İ", "ı", "\u0307"},
        {"\U0001F600", "\U00010400", "\U00010428", "a"},
    };
    std::mt19937 random(11);
    std::size_t hits = 0, tested = 0;
    for (const auto& alphabet : alphabets) {
        const auto make = [&](std::size_t length) {
            std::string text;
            for (std::size_t i = 0; i < length; ++i) text += alphabet[random() % alphabet.size()];
            return text;
        };
        for (int i = 0; i < 3000; ++i) {
            const std::string phrase = make(1 + random() % 6);
            std::string text = make(random() % 40);
            // Long stretches of ASCII put the match at every place of the vectors.
            if (i % 3 == 0) text.insert(text.size() / 2, random() % 70, 'x');
            const PhraseFinder finder(phrase);
            if (finder.isEmpty()) continue;
            const std::string trimmed(Text::trimmed(flattened(phrase)));
            const bool expected = flattened(text).find(trimmed) != std::string::npos;
            SCOPED_TRACE("“" + phrase + "” in “" + text + "”");
            bool isUTF8 = true;
            ASSERT_EQ(finder.occursIn(text, isUTF8), expected);
            if (!expected) {
                ASSERT_EQ(isUTF8, Text::isValidUTF8(text));
            }
            const auto range = finder.find(text);
            ASSERT_EQ(range.has_value(), expected);
            ++tested;
            if (!range) continue;
            ++hits;
            const std::string part = text.substr(range->begin, range->end - range->begin);
            ASSERT_NE(flattened(part).find(trimmed), std::string::npos);
            // It is the first: nothing is found in what comes before its last character.
            const std::string before = text.substr(0, range->begin);
            ASSERT_EQ(flattened(before).find(trimmed), std::string::npos);
        }
    }
    EXPECT_GT(hits, tested / 10);
    EXPECT_LT(hits, tested * 9 / 10);
}

/// Each of these has a place for a match at every step, and none.
TEST(PhraseFinder, takesTimeByTheLengthOfTheTextAlone) {
    const struct {
        const char* phrase;
        const char* text;
    } cases[] = {
        {"ltx", "lt\u0301"}, {"lt", "\u0301"},    {"alt", "l\u0301\u0301"},
        {"a b", "\u00A0"},   {"a b", "b \u00A0"}, {"obx", "ö\u0308b"},
        {"ssx", "ß"},        {"lt", "l \u0301t"}, {"l tx", "l\u00A0t"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.phrase) + " in many of " + c.text);
        std::string text = "l";
        while (text.size() < 1'000'000) text += c.text;
        EXPECT_FALSE(PhraseFinder(c.phrase).occursIn(text));
    }
}

TEST(PhraseFinder, searchesLongStretchesPieceByPiece) {
    // A match across the border of two pieces, and one behind many of them.
    for (const std::size_t length : {32'760U, 32'768U, 65'530U, 65'536U, 500'000U}) {
        SCOPED_TRACE(length);
        std::string text;
        while (text.size() < length) text += "é";
        text += "nd of it";
        const PhraseFinder finder("end of");
        const auto range = finder.find(text);
        ASSERT_TRUE(range);
        EXPECT_EQ(text.substr(range->begin, range->end - range->begin), "énd of");
        EXPECT_FALSE(PhraseFinder("end off").occursIn(text));
    }
}

}  // namespace
}  // namespace tarn
