#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/RenameModel.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

RuleDraft finding(std::string find, std::string replace, bool regex = false) {
    RuleDraft draft;
    draft.find = std::move(find);
    draft.replace = std::move(replace);
    draft.regex = regex;
    return draft;
}

std::vector<std::string> newNames(const RenameModel& model) {
    std::vector<std::string> names;
    for (const RenamePreview& preview : model.previews()) names.push_back(preview.newName);
    return names;
}

class RenameModelTest : public testing::Test {
protected:
    void settle(const RenameModel& model) {
        ASSERT_TRUE(QTest::qWaitFor([&model] { return !model.isWorking(); }, 10'000));
    }
    using Names = std::vector<std::string>;

    TestFolder folder;
    TaskPool pool;
};

TEST_F(RenameModelTest, changingTheKindKeepsWhatWasTyped) {
    RuleDraft draft = finding("a", "b");
    draft.text = "-_";
    draft.count = 3;
    const RenameRule rules[] = {
        {RenameRule::Replace{"a", "b", false, false}},
        {RenameRule::AddText{"-_", TextPosition::after}},
        {RenameRule::Number{1, 1, 2, TextPosition::after, " "}},
        {RenameRule::InsertDate{DateSource::modified, "", TextPosition::after, " "}},
        {RenameRule::ChangeCase{CaseStyle::lower}},
        {RenameRule::RemoveCharacters{"-_"}},
        {RenameRule::RemoveFirst{3}},
        {RenameRule::RemoveLast{3}},
    };
    for (int kind = 0; kind < ruleKindCount; ++kind) {
        SCOPED_TRACE(kind);
        draft.kind = kind;
        EXPECT_EQ(draft.rule(), rules[kind]);
        EXPECT_EQ(draft.rule().title(), ruleTitle(static_cast<std::size_t>(kind)));
    }
}

TEST_F(RenameModelTest, onlyTheLastOfManyChangesIsShown) {
    std::vector<URL> urls;
    for (int i = 0; i < 3000; ++i) urls.push_back(folder / ("photo " + std::to_string(i)));
    RenameModel model(pool, urls);
    int answers = 0;
    QObject::connect(&model, &QAbstractItemModel::dataChanged, [&answers] { ++answers; });
    std::string typed;
    for (const char letter : std::string("picture")) {
        typed += letter;
        model.setDraft(0, finding("photo", typed));
    }
    settle(model);
    EXPECT_EQ(model.previews().size(), urls.size());
    EXPECT_EQ(model.previews().back().newName, "picture 2999");
    EXPECT_EQ(model.changedCount(), urls.size());
    EXPECT_LE(answers, 2);  // What was running, and what came last.
}

TEST_F(RenameModelTest, saysWhyNothingCanBeApplied) {
    const std::vector<URL> urls = {folder.file("a.txt"), folder.file("b.txt"),
                                   folder.file("taken.txt")};
    RenameModel model(pool, {urls[0], urls[1]});
    const struct {
        RuleDraft draft;
        const char* sentence;
        std::size_t problems;
    } cases[] = {
        {finding("", ""), "Say in the rules what to change.", 0},
        {finding("zebra", "x"), "No name changes.", 0},
        {finding("a", "taken"), "One name can’t be used.", 1},
        {finding("[ab]", "same", true), "2 names can’t be used.", 2},
        {finding("a", "c"), "", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.draft.find);
        model.setDraft(0, c.draft);
        settle(model);
        EXPECT_EQ(model.whyNot(), QString::fromUtf8(c.sentence));
        EXPECT_EQ(model.problemCount(), c.problems);
        EXPECT_EQ(model.firstProblem().has_value(), c.problems > 0);
    }
    model.removeDraft(0);
    settle(model);
    EXPECT_EQ(model.whyNot(), QStringLiteral("Add a rule to change the names."));
}

TEST_F(RenameModelTest, rulesWorkInTheirOrder) {
    RenameModel model(pool, {folder.file("report.pdf")});
    model.setDraft(0, finding("report", "a"));
    model.addDraft(0);
    model.setDraft(1, finding("a", "b"));
    settle(model);
    EXPECT_EQ(newNames(model), Names{"b.pdf"});
    model.moveDraft(1, -1);
    settle(model);
    EXPECT_EQ(newNames(model), Names{"a.pdf"});
    model.moveDraft(0, -1);  // Nowhere to go.
    EXPECT_EQ(model.drafts().front().find, "a");
    model.setDraft(0, finding("pdf", "txt"));
    model.setIncludesExtension(true);
    settle(model);
    EXPECT_EQ(newNames(model), Names{"a.txt"});
}

TEST_F(RenameModelTest, readsTheDatesOfEveryFile) {
    const Date day = Date::fromUnix(1'700'000'000);  // 14 November 2023
    std::vector<URL> urls;
    for (int i = 0; i < 200; ++i)
        urls.push_back(folder.file("shot " + std::to_string(i) + ".jpg", "x", day));
    RenameModel model(pool, urls);
    RuleDraft draft;
    draft.kind = 3;
    draft.position = TextPosition::before;
    model.setDraft(0, draft);
    settle(model);
    ASSERT_EQ(model.changedCount(), urls.size());
    EXPECT_EQ(model.previews()[7].newName, "2023-11-14 shot 7.jpg");
}

}  // namespace
}  // namespace tarn
