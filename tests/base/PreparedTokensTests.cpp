#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/base/Database.h"
#include "TarnCore/base/PreparedTokens.h"
#include "TarnCore/base/TokenFinder.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using namespace std::string_literals;

constexpr const char* schema =
    "CREATE VIRTUAL TABLE body USING fts5(text, tokenize='unicode61 remove_diacritics 2');"
    "CREATE VIRTUAL TABLE words USING fts5vocab(body, instance);";

/// A table as SQLite alone fills it, and one that is offered what a TokenFinder has found.
class TwoTables : public testing::Test {
protected:
    struct Table {
        explicit Table(const URL& file) : database(file, Database::Access::create, 1) {}
        void put(std::string_view text) {
            database.lend("INSERT INTO body(text) VALUES (?)")->bind(1, text).run();
        }
        /// Every word of every text with its place.
        std::vector<std::string> words() {
            std::vector<std::string> all;
            const auto rows = database.lend("SELECT doc, offset, term FROM words ORDER BY 1, 2, 3");
            while (rows->step())
                all.push_back(std::to_string(rows->integer(0)) + " " +
                              std::to_string(rows->integer(1)) + " " + std::string(rows->text(2)));
            return all;
        }
        Database database;
    };

    TwoTables() {
        prepared = PreparedTokens::install(ours.database);
        for (Table* table : {&ours, &theirs}) {
            table->database.execute("PRAGMA journal_mode=MEMORY; PRAGMA synchronous=OFF;");
            table->database.execute(schema);
        }
    }
    void put(const std::string& text) {
        theirs.put(text);
        const TextTokens tokens = finder.tokens(text);
        const PreparedTokens::Offer offer(prepared, text, tokens);
        ours.put(text);
    }

    TestFolder folder;
    Table ours{folder / "ours.sqlite"};
    Table theirs{folder / "theirs.sqlite"};
    PreparedTokens* prepared = nullptr;
    TokenFinder finder;
};

TEST_F(TwoTables, haveTheSameWordsInTheSamePlaces) {
    const std::string texts[] = {
        "",
        " ",
        "One, two;three_four 5.6-7e8 X",
        "MixedCASE ends in the last byte ABC",
        "Cafe\u0301 Café CAFÉ ça \u0301begins with a mark",
        "“quoted”—dash…dots next\u00a0to\u00adsoft-hyphen",
        "Straße STRASSE ß ẞ İstanbul ıI ﬁne Ⅻ ½ x² ªº",
        "Ωμέγα Ὀδυσσεύς ᾳ Ёлка ёлка שָׁלוֹם مُحَمَّد",
        "日本語の文章、です。 한국어 ไทย हिन्दी",
        "\U0001f600emoji\U0001f600 private\ue000use \U00010400\U00010428",
        "nul\0inside "s,
        "broken\xff\xfe utf\xc3 8\xe2\x82 cut\xf0\x9f",
        std::string(254, 'A') + " " + std::string(255, 'B') + " " + std::string(256, 'C'),
        std::string(254, ' ') + "a" + std::string(255, '.') + "b" + std::string(70'000, '\n') + "c",
        std::string(40'000, 'Z') + "é " + std::string(40'000, 'Z'),
    };
    for (const std::string& text : texts) put(text);
    EXPECT_EQ(ours.words(), theirs.words());
    EXPECT_FALSE(ours.words().empty());
}

TEST_F(TwoTables, haveTheSameWordsOfWhateverComesTogether) {
    const std::string parts[] = {"word", "WORD", "7",      " ",      "\n",     "-",     "'",
                                 "é",    "É",    "\u0301", "“",      "ß",      "中",    "\u200b",
                                 "Ø",    "ﬀ",    "\xff",   "\xc3",   "\0"s,    "ab c",  "Ж",
                                 "\x7f", "_",    "\u1e9b", "\ufb2a", "\uffff", "\u0345"};
    std::mt19937 random(20'231'114);
    for (int i = 0; i < 500; ++i) {
        std::string text;
        for (auto j = random() % 40; j > 0; --j) text += parts[random() % std::size(parts)];
        put(text);
    }
    EXPECT_EQ(ours.words(), theirs.words());
}

TEST_F(TwoTables, areGivenWhatWasOfferedForThatTextAlone) {
    TextTokens tokens;
    tokens.add(0, 3, "offered");
    {
        const PreparedTokens::Offer offer(prepared, "abc", tokens);
        ours.put("abd");
        ours.put("abc");
        EXPECT_EQ(ours.database.number("SELECT count(*) FROM body WHERE body MATCH 'abc'"), 0)
            << "the words of a question are its own";
    }
    ours.put("abc");
    EXPECT_EQ(ours.words(), (std::vector<std::string>{"1 0 abd", "2 0 offered", "3 0 abc"}));
}

TEST_F(TwoTables, withOtherRulesForWordsAreGivenTheirOwn) {
    ours.database.execute(
        "CREATE VIRTUAL TABLE other USING fts5(text, tokenize='unicode61 remove_diacritics 0')");
    const std::string text = "café";
    const TextTokens tokens = finder.tokens(text);
    const PreparedTokens::Offer offer(prepared, text, tokens);
    ours.database.lend("INSERT INTO other(text) VALUES (?)")->bind(1, text).run();
    EXPECT_EQ(ours.database.number("SELECT count(*) FROM other WHERE other MATCH 'cafe'"), 0);
    EXPECT_EQ(ours.database.number("SELECT count(*) FROM other WHERE other MATCH 'café'"), 1);
}

}  // namespace
}  // namespace tarn
