#include <random>
#include <string>

#include <gtest/gtest.h>

#include "Tarn/commands/TitleMatch.h"

namespace tarn {
namespace {

using Rank = TitleMatch::Rank;

/// The title with brackets around what would be bold.
std::string marked(const std::string& title, const TitleMatch& match) {
    std::string out;
    std::size_t at = 0;
    for (const auto& [begin, end] : match.ranges) {
        out += title.substr(at, begin - at) + "[" + title.substr(begin, end - begin) + "]";
        at = end;
    }
    return out + title.substr(at);
}

TEST(TitleMatch, ranksAndMarksWhatWasTyped) {
    const struct {
        const char* typed;
        const char* title;
        Rank rank;
        const char* marked;
    } cases[] = {
        {"copy", "Copy", Rank::whole, "[Copy]"},
        {"CopyPath", "Copy Path", Rank::whole, "[Copy Path]"},
        {"new f", "New Folder", Rank::start, "[New F]older"},
        {"gtd", "Go to Desktop", Rank::wordStarts, "[G]o [t]o [D]esktop"},
        {"go desk", "Go to Desktop", Rank::wordStarts, "[Go] to [Desk]top"},
        {"desk", "Go to Desktop", Rank::wordStarts, "Go to [Desk]top"},
        {"folder sel", "New Folder with Selection", Rank::wordStarts,
         "New [Folder] with [Sel]ection"},
        // The blank means that a word starts: not the s of “as”.
        {"a s", "Save Search as Smart Folder", Rank::wordStarts, "Save Search [a]s [S]mart Folder"},
        {"ename", "Rename", Rank::subsequence, "R[ename]"},
        {"rnm", "Rename", Rank::subsequence, "[R]e[n]a[m]e"},
        // The fewest pieces, not the first letters that fit.
        {"sel", "Show or Hide Selection", Rank::wordStarts, "Show or Hide [Sel]ection"},
        {"uber", "Über alles", Rank::start, "[Über] alles"},
        {"strasse", "Große Straße", Rank::wordStarts, "Große [Straße]"},
        {"path ~", "Copy Path with ~", Rank::wordStarts, "Copy [Path] with [~]"},
        {"p", "One Two/Path", Rank::wordStarts, "One Two/[P]ath"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.typed) + " in " + c.title);
        const auto match = MatchedTitle(c.title).match(c.typed);
        ASSERT_TRUE(match);
        EXPECT_EQ(match->rank, c.rank);
        EXPECT_EQ(marked(c.title, *match), c.marked);
    }
}

TEST(TitleMatch, findsNothingWithoutAllLettersInTheirOrder) {
    const struct {
        const char* typed;
        const char* title;
    } cases[] = {{"x", "Copy"}, {"copyy", "Copy"}, {"ypoc", "Copy"}, {"copy path", "Copy"},
                 {"a", ""},     {"\xff", "Copy"},  {"cc", "Copy"},   {"tagss", "Tags (s)y"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        const auto match = MatchedTitle(c.title).match(c.typed);
        if (std::string(c.typed) == "tagss")
            EXPECT_TRUE(match);
        else
            EXPECT_FALSE(match);
    }
    EXPECT_TRUE(MatchedTitle("Copy").match("")) << "nothing typed yet";
    EXPECT_TRUE(MatchedTitle("Copy").match("  ")) << "nothing typed yet";
}

TEST(TitleMatch, whatIsMarkedIsWhatWasTyped) {
    std::mt19937 random(7);
    const std::string letters = "abAB ";
    const auto text = [&](std::size_t most) {
        std::string made;
        for (std::size_t i = random() % (most + 1); i > 0; --i) made += letters[random() % 5];
        return made;
    };
    const auto bare = [](const std::string& from) {
        std::string out;
        for (const char byte : from)
            if (byte != ' ') out += static_cast<char>(byte | 0x20);
        return out;
    };
    int found = 0;
    for (int round = 0; round < 20'000; ++round) {
        const std::string title = text(12);
        const std::string typed = text(6);
        SCOPED_TRACE("“" + typed + "” in “" + title + "”");
        const auto match = MatchedTitle(title).match(typed);
        std::size_t at = 0;
        const std::string wanted = bare(typed);
        for (const char byte : bare(title))
            if (at < wanted.size() && byte == wanted[at]) ++at;
        ASSERT_EQ(match.has_value(), at == wanted.size());
        if (!match) continue;
        ++found;
        std::string inside;
        std::size_t end = 0;
        for (const auto& range : match->ranges) {
            ASSERT_GE(range.first, end);
            end = range.second;
            inside += title.substr(range.first, range.second - range.first);
        }
        ASSERT_EQ(bare(inside), wanted);
    }
    EXPECT_GT(found, 2000);
}

}  // namespace
}  // namespace tarn
