#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "TarnCore/base/Error.h"
#include "TarnCore/rename/RenameRule.h"

namespace tarn {
namespace {

/// One rule of each kind with no field at its default, and its stored form.
const struct {
    RenameRule rule;
    const char* json;
    const char* title;
} everyKind[] = {
    {{RenameRule::Replace{"a", "b", true, true}},
     R"({"replace":{"caseSensitive":true,"find":"a","regex":true,"with":"b"}})",
     "Find and replace"},
    {{RenameRule::AddText{"x", TextPosition::after}},
     R"({"addText":{"_0":"x","_1":"after"}})",
     "Add text"},
    {{RenameRule::Number{5, 10, 3, TextPosition::before, "-"}},
     R"({"number":{"digits":3,"position":"before","separator":"-","start":5,"step":10}})",
     "Number in sequence"},
    {{RenameRule::InsertDate{DateSource::photoTaken, "yyyy", TextPosition::after, "_"}},
     R"({"insertDate":{"_0":"photoTaken","format":"yyyy","position":"after","separator":"_"}})",
     "Insert date"},
    {{RenameRule::ChangeCase{CaseStyle::sentence}},
     R"({"changeCase":{"_0":"sentence"}})",
     "Change case"},
    {{RenameRule::RemoveCharacters{"[]"}},
     R"({"removeCharacters":{"_0":"[]"}})",
     "Remove characters"},
    {{RenameRule::RemoveFirst{3}}, R"({"removeFirst":{"_0":3}})", "Remove first characters"},
    {{RenameRule::RemoveLast{4}}, R"({"removeLast":{"_0":4}})", "Remove last characters"},
};

TEST(RenameRule, storedFormIsFixed) {
    for (const auto& c : everyKind) {
        SCOPED_TRACE(c.json);
        EXPECT_EQ(JSON(c.rule).dump(), c.json);
        EXPECT_EQ(JSON::parse(c.json).get<RenameRule>(), c.rule);
        EXPECT_EQ(c.rule.title(), c.title);
    }
}

TEST(RenameRule, refusesWhatIsNoRule) {
    const struct {
        const char* json;
        const char* sentence;
    } cases[] = {
        {"{}", "Invalid number of keys found, expected one."},
        {R"({"removeFirst":{"_0":1},"removeLast":{"_0":1}})",
         "Invalid number of keys found, expected one."},
        {"[]", "Invalid number of keys found, expected one."},
        {R"({"shuffle":{}})", "There is no rule for names called “shuffle”."},
        {R"({"changeCase":{"_0":"camel"}})", "A rule for names does not know “camel”."},
        {R"({"removeFirst":{"_0":1.5}})", "A number in a rule for names is not a whole number."},
        {R"({"number":{"start":9223372036854775808}})",
         "A number in a rule for names is not a whole number."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.json);
        try {
            JSON::parse(c.json).get<RenameRule>();
            ADD_FAILURE() << "was taken";
        } catch (const Error& error) {
            EXPECT_STREQ(error.what(), c.sentence);
        }
    }
    EXPECT_ANY_THROW(JSON::parse(R"({"addText":"x"})").get<RenameRule>());
}

}  // namespace
}  // namespace tarn
