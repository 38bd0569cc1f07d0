#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "TarnCore/base/Collation.h"
#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

TEST(Text, foldingForgetsCaseAndDiacritics) {
    const struct {
        const char* text;
        const char* folded;
    } cases[] = {
        {"RÉSUMÉ", "resume"},       {"re\u0301sume\u0301", "resume"},
        {"Straße", "strasse"},      {"ÅNGSTRÖM", "angstrom"},
        {"日本", "日本"},           {"İ", "i"},
        {"caf\xE9 É", "caf\xE9 e"},  // a Latin-1 byte stays, the rest folds
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(Text::folded(c.text), c.folded);
    }
}

TEST(Text, charactersChangeAlikeAloneAndAmongOthers) {
    // A character of another script sends the whole text the long way.
    const std::string far = "語";
    for (char32_t c = 1; c < 0x250 + 0x120; ++c) {
        SCOPED_TRACE(static_cast<std::uint32_t>(c));
        std::string text = "Äx";
        Text::append(text, c);
        text += "\u0301Z";
        EXPECT_EQ(Text::folded(text) + far, Text::folded(text + far));
        EXPECT_EQ(Text::lowercased(text) + far, Text::lowercased(text + far));
    }
}

TEST(Text, brokenBytesAreReplacedOneByOne) {
    const struct {
        std::string_view text;
        const char* clean;
        std::size_t length;
    } cases[] = {
        {"plain", "plain", 5},
        {"a\xFF"
         "b",
         "a\uFFFDb", 3},
        {"\xC3", "\uFFFD", 1},                                // cut off
        {"\xC0\xAF", "\uFFFD\uFFFD", 2},                      // overlong
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD", 3},            // a surrogate
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD", 4},  // beyond U+10FFFF
        {"\xF0\x9F\x98\x80", "😀", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.clean);
        EXPECT_EQ(Text::sanitized(c.text), c.clean);
        EXPECT_EQ(Text::length(c.text), c.length);
        EXPECT_EQ(Text::isValidUTF8(c.text), c.text == c.clean);
    }
}

TEST(Text, whatIsLookedAtInBlocksIsTheSameAtEveryPlaceOfOne) {
    const struct {
        std::string_view bytes;
        std::size_t length;
        bool isValid;
    } cases[] = {
        {"a", 1, true},      {"é", 1, true},         {"éß", 2, true},        {"€", 1, true},
        {"é€é😀é", 5, true},  {"\xC3", 1, false},     {"\xA9", 1, false},     {"é\xA9", 2, false},
        {"\xC3é", 2, false}, {"\xC1\x81", 2, false}, {"\xE2\x82", 2, false}, {"\xFF", 1, false},
    };
    for (const auto& c : cases)
        for (const char* filling : {"x", "ñ"})
            for (std::size_t before = 0; before < 36; ++before)
                for (const std::size_t after : {0, 1, 15, 16, 40}) {
                    SCOPED_TRACE(testing::PrintToString(c.bytes) + " behind " +
                                 std::to_string(before) + " " + filling);
                    std::string text;
                    for (std::size_t i = 0; i < before; ++i) text += filling;
                    text += c.bytes;
                    for (std::size_t i = 0; i < after; ++i) text += filling;
                    ASSERT_EQ(Text::isValidUTF8(text), c.isValid);
                    ASSERT_EQ(Text::length(text), before + c.length + after);
                }
}

TEST(Text, trimsEveryKindOfSpace) {
    EXPECT_EQ(Text::trimmed(" \n\u00A0\u3000a b\u2003\t"), "a b");
    EXPECT_EQ(Text::trimmed("\u3000"), "");
    EXPECT_EQ(Text::trimmed("\xFF "), "\xFF");
}

TEST(Text, firstLetterChangesAlone) {
    EXPECT_EQ(Text::withFirstLowered("Last Week"), "last Week");
    EXPECT_EQ(Text::withFirstRaised("übung"), "Übung");
    EXPECT_EQ(Text::withFirstRaised(""), "");
    EXPECT_EQ(Text::withFirstRaised("\xFFx"), "\xFFx");
}

TEST(Collation, namesFollowTheUsersOrder) {
    Collation::use("en_US");
    const char* ordered[] = {"1 a",     "2 a",      "10 a",   "Apfel",
                             "äpfel 2", "Äpfel 10", "File 2", "file 10"};
    for (std::size_t i = 0; i + 1 < std::size(ordered); ++i) {
        SCOPED_TRACE(ordered[i]);
        EXPECT_LT(Collation::compare(ordered[i], ordered[i + 1]), 0);
        EXPECT_LT(Collation::sortKey(ordered[i]), Collation::sortKey(ordered[i + 1]));
    }
    EXPECT_EQ(Collation::compare("README", "readme"), 0);
    const std::string longName(255, 'x');
    EXPECT_LT(Collation::sortKey(longName), Collation::sortKey(longName + "y"));
    Collation::use("sv_SE");
    EXPECT_GT(Collation::compare("ö", "z"), 0);
    Collation::use("en_US");
}

}  // namespace
}  // namespace tarn
