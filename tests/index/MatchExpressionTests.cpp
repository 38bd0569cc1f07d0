#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/base/Database.h"
#include "TarnCore/index/MatchExpression.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

/// A table as that of the index, with one text in it.
class Matching {
public:
    explicit Matching(std::string_view text)
        : database_(folder_ / "one.sqlite", Database::Access::create, 1) {
        database_.execute(
            "CREATE VIRTUAL TABLE body USING fts5(text, tokenize='unicode61 remove_diacritics 2')");
        database_.lend("INSERT INTO body VALUES(?)")->bind(1, text).run();
    }
    bool has(const std::vector<std::string>& phrases, bool lastWordIsPrefix = false) {
        const std::string expression = MatchExpression::of(phrases, lastWordIsPrefix);
        return database_.lend("SELECT 1 FROM body WHERE body MATCH ?")->bind(1, expression).step();
    }

private:
    TestFolder folder_;
    Database database_;
};

TEST(MatchExpression, asksForWordsAndNothingElse) {
    Matching text("The total due is 1,200 kr. NEAR the Café (AND bar) “naïve” C++ OR x-ray, a*b");
    const struct {
        std::vector<std::string> phrases;
        bool isPrefix;
        bool matches;
    } cases[] = {
        {{"total due"}, false, true},
        {{"due total"}, false, false},        // a phrase keeps its order
        {{"due", "total"}, false, true},      // phrases do not
        {{"total", "absent"}, false, false},  // all are required
        {{"TOTAL"}, false, true},
        {{"cafe"}, false, true},  // diacritics folded
        {{"NAIVE"}, false, true},
        {{"caf"}, false, false},  // whole words …
        {{"caf"}, true, true},    // … unless it is being typed
        {{"total du"}, true, true},
        {{"tot", "due"}, true, false},  // only the last one is
        {{"AND"}, false, true},         // words of the language of expressions
        {{"NEAR"}, false, true},
        {{"due NOT is"}, false, false},
        {{"text:total"}, false, false},  // no column filter, but the phrase “text total”
        {{"x-ray"}, false, true},        // as the index takes words apart
        {{"a*b"}, false, true},
        {{"tota*"}, false, false},         // no wildcard
        {{"\"total\" due"}, false, true},  // quotation marks are only text
        {{"total\" OR \"absent"}, false, false},
        {{"^the"}, false, true},
        {{"(", "total"}, false, true},  // signs ask for nothing
        {{"total", "–"}, true, true},
        {{"—", "!"}, false, false},  // nothing is left
        {{""}, false, false},
        {{}, true, false},
        {{std::string("total\0due", 9)}, false, true},
        {{"total \xff"}, false, true},  // a broken byte is no letter
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.phrases));
        EXPECT_EQ(text.has(c.phrases, c.isPrefix), c.matches);
    }
}

}  // namespace
}  // namespace tarn
