#include <set>
#include <string>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/platform/memory/MemoryMediaMetadata.h"
#include "TarnCore/rename/BatchRenamer.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using Rule = RenameRule;
using enum TextPosition;

std::string applied(const Rule& rule, std::string_view name, std::size_t index = 0) {
    return BatchRenamer::apply(rule, name, index, URL());
}

TEST(RenameRules, replaceLiterally) {
    const struct {
        Rule::Replace rule;
        const char *name, *expected;
    } cases[] = {
        {{"a", "b", false, true}, "banana A", "bbnbnb A"},
        {{"a", "b", false, false}, "Banana A", "Bbnbnb b"},
        {{"(1)", "$1\\", false, false}, "x (1)", "x $1\\"},  // nothing has a meaning
        {{"GROSSE", "x", false, false}, "große", "x"},       // folding, not only lowering
        {{"é", "e", false, true}, "café", "cafe"},
        {{"", "x", false, false}, "name", "name"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(applied({c.rule}, c.name), c.expected);
    }
}

TEST(RenameRules, replaceByExpression) {
    const struct {
        Rule::Replace rule;
        const char *name, *expected;
    } cases[] = {
        {{"(\\d+)-(\\d+)", "$2-$1", true, true}, "10-20 30-40", "20-10 40-30"},
        {{"(?<year>\\d{4})", "(${year})", true, true}, "Trip 2024", "Trip (2024)"},
        {{"img_", "Photo ", true, false}, "IMG_1", "Photo 1"},
        {{"img_", "Photo ", true, true}, "IMG_1", "IMG_1"},
        {{"x", "US$ \\$1\\", true, true}, "x", "US$ $1\\"},
        {{"^", "> ", true, true}, "a", "> a"},
        {{"(", "x", true, true}, "a(b", "a(b"},     // no expression
        {{"(a)", "$2", true, true}, "abc", "abc"},  // no such group
        {{"\\p{Lu}", "_", true, true}, "ÄbcD", "_bc_"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.rule.find);
        EXPECT_EQ(applied({c.rule}, c.name), c.expected);
    }
}

TEST(RenameRules, numberIsPaddedAndNeverCut) {
    const struct {
        Rule::Number rule;
        std::size_t index;
        const char* expected;
    } cases[] = {
        {{1, 1, 3, after, " "}, 0, "a 001"},
        {{1, 1, 3, after, " "}, 1, "a 002"},
        {{100, 1, 2, before, "-"}, 0, "100-a"},
        {{10, -5, 1, after, ""}, 3, "a-5"},
        {{1, 1, -7, after, ""}, 0, "a1"},
        {{INT64_MAX, 1, 1, after, ""}, 1, "a"},  // too large to be written
        {{1, 1, INT64_MAX, after, ""}, 0, "a"},  // longer than any name
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.expected);
        EXPECT_EQ(applied({c.rule}, "a", c.index), c.expected);
    }
}

TEST(RenameRules, charactersAreThosePeopleCount) {
    const std::string flag = "🇩🇪";                    // two code points
    const std::string family = "👨‍👩‍👧";  // five
    const std::string accented = "e\u0301";           // two
    const struct {
        Rule rule;
        std::string name, expected;
    } cases[] = {
        {{Rule::RemoveFirst{1}}, flag + "x", "x"},
        {{Rule::RemoveFirst{2}}, family + accented + "x", "x"},
        {{Rule::RemoveFirst{9}}, "abc", ""},
        {{Rule::RemoveFirst{-1}}, "abc", "abc"},
        {{Rule::RemoveFirst{0}}, "abc", "abc"},
        {{Rule::RemoveLast{1}}, "x" + family, "x"},
        {{Rule::RemoveLast{2}}, "report", "repo"},
        {{Rule::RemoveLast{INT64_MAX}}, "abc", ""},
        {{Rule::RemoveCharacters{"bd"}}, "abcd", "ac"},
        {{Rule::RemoveCharacters{"é"}}, "caf" + accented + "e", "cafe"},  // both ways of writing it
        {{Rule::RemoveCharacters{"e"}}, "e" + accented, accented},
        {{Rule::RemoveCharacters{""}}, "abc", "abc"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(applied(c.rule, c.name), c.expected);
    }
}

TEST(RenameRules, changeCase) {
    const struct {
        CaseStyle style;
        const char *name, *expected;
    } cases[] = {
        {CaseStyle::lower, "GRÖSSE I", "grösse i"},
        {CaseStyle::upper, "straße", "STRASSE"},
        {CaseStyle::title, "the quick_brown-fox DON'T 2nd", "The Quick_Brown-Fox Don't 2nd"},
        {CaseStyle::title, "l’été à paris", "L’été À Paris"},
        {CaseStyle::title, "ΟΔΟΣ ΣΑΣ", "Οδος Σας"},
        {CaseStyle::sentence, "HELLO World", "Hello world"},
        {CaseStyle::sentence, "ÉTÉ à Paris", "Été à paris"},
        {CaseStyle::sentence, "", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(applied({Rule::ChangeCase{c.style}}, c.name), c.expected);
    }
}

TEST(RenameRules, namesWithoutICUAreTreatedLikeAllOthers) {
    // A character of another script sends the whole name the long way.
    const std::string behind = "-語", before = "語-";
    const Rule rules[] = {
        {Rule::ChangeCase{CaseStyle::lower}},     {Rule::ChangeCase{CaseStyle::upper}},
        {Rule::ChangeCase{CaseStyle::title}},     {Rule::ChangeCase{CaseStyle::sentence}},
        {Rule::RemoveCharacters{"e\u0301ßx' "}},  {Rule::RemoveFirst{2}},
        {Rule::Replace{"ß", "é$1", false, true}}, {Rule::Replace{"aX", "", false, false}},
    };
    for (char32_t c = 1; c < 0x300; ++c) {
        SCOPED_TRACE(static_cast<std::uint32_t>(c));
        std::string character;
        Text::append(character, c);
        for (const std::string& name : {character + "ax" + character + "É", "ax'" + character,
                                        "aX ß" + character + "'" + character, "x'y" + character}) {
            SCOPED_TRACE(name);
            for (const Rule& rule : rules)
                EXPECT_EQ(applied(rule, name) + behind, applied(rule, name + behind));
            const Rule last{Rule::RemoveLast{2}};
            EXPECT_EQ(before + applied(last, name), applied(last, before + name));
        }
    }
}

TEST(RenameRules, bytesThatAreNotTextSurviveEveryRule) {
    const std::string name = "b\xff\xc3(\xe2\x82 \xf0\x9f\x91\x8dz";
    const struct {
        Rule rule;
        std::string expected;
    } cases[] = {
        {{Rule::Replace{"(", "[", false, true}}, "b\xff\xc3[\xe2\x82 \xf0\x9f\x91\x8dz"},
        {{Rule::Replace{"^.", "", true, true}}, name.substr(1)},
        {{Rule::Replace{"^..", "", true, true}}, name.substr(2)},
        {{Rule::AddText{"+", after}}, name + "+"},
        {{Rule::ChangeCase{CaseStyle::upper}}, "B\xff\xc3(\xe2\x82 \xf0\x9f\x91\x8dZ"},
        {{Rule::ChangeCase{CaseStyle::title}}, "B\xff\xc3(\xe2\x82 \xf0\x9f\x91\x8dZ"},
        {{Rule::RemoveFirst{3}}, name.substr(3)},
        {{Rule::RemoveLast{2}}, name.substr(0, 7)},
        {{Rule::RemoveCharacters{"bz"}}, name.substr(1, name.size() - 2)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.rule.title());
        EXPECT_EQ(applied(c.rule, name), c.expected);
    }
}

class BatchRenamerTest : public testing::Test {
protected:
    TestFolder folder;

    std::vector<URL> files(const std::vector<std::string>& names) const {
        std::vector<URL> urls;
        for (const std::string& name : names) urls.push_back(folder.file(name, name));
        return urls;
    }
    /// "old>new" or "old>new: problem", one a file.
    static std::vector<std::string> lines(const std::vector<RenamePreview>& previews) {
        std::vector<std::string> out;
        for (const RenamePreview& preview : previews) {
            out.push_back(preview.oldName + ">" + preview.newName +
                          (preview.problem ? ": " + *preview.problem : ""));
        }
        return out;
    }
    static std::vector<RenamePreview> renaming(
        const std::vector<std::pair<URL, std::string>>& names) {
        std::vector<RenamePreview> previews;
        for (const auto& [url, name] : names) {
            previews.push_back({url, std::string(url.name()), name, {}});
        }
        return previews;
    }
};

using Lines = std::vector<std::string>;

TEST_F(BatchRenamerTest, rulesActInOrderOnTheNameWithoutItsExtension) {
    const auto urls = files({"b.tar.gz", "report.pdf", ".profile"});
    const std::vector<Rule> rules = {{Rule::AddText{"x", after}},
                                     {Rule::ChangeCase{CaseStyle::upper}}};
    EXPECT_EQ(lines(BatchRenamer::preview(urls, rules, false)),
              (Lines{"b.tar.gz>BX.tar.gz", "report.pdf>REPORTX.pdf", ".profile>.PROFILEX"}));
    EXPECT_EQ(lines(BatchRenamer::preview(urls, rules, true)),
              (Lines{"b.tar.gz>B.TAR.GZX", "report.pdf>REPORT.PDFX", ".profile>.PROFILEX"}));
}

TEST_F(BatchRenamerTest, namesProblemsInTheirOrder) {
    files({"taken.txt", "Taken2.txt"});
    const std::string longName(251, 'l');
    const struct {
        const char* what;
        std::vector<std::string> names;
        Rule rule;
        Lines expected;
    } cases[] = {
        {"empty", {"ab"}, {Rule::RemoveFirst{2}}, {"ab>: Name would be empty"}},
        {"blank", {"ab"}, {Rule::Replace{"ab", "  ", false, true}}, {"ab>  : Name would be empty"}},
        {"slash",
         {"ab"},
         {Rule::Replace{"a", "/", false, true}},
         {"ab>/b: Names can’t contain “/” or “:”"}},
        {"colon first, then dot",
         {"ab"},
         {Rule::Replace{"a", ".:", false, true}},
         {"ab>.:b: Names can’t contain “/” or “:”"}},
        {"dot",
         {"ab.c"},
         {Rule::RemoveFirst{2}},
         {"ab.c>.c: Name would start with a dot and be hidden"}},
        {"dot before double",
         {"a1", "a2"},
         {Rule::Replace{"a\\d", ".x", true, true}},
         {"a1>.x: Name would start with a dot and be hidden",
          "a2>.x: Name would start with a dot and be hidden"}},
        {"double, whatever the case",
         {"ab1", "AB2"},
         {Rule::RemoveLast{1}},
         {"ab1>ab: Same name as another file in this rename",
          "AB2>AB: Same name as another file in this rename"}},
        {"double before taken",
         {"t1", "t2"},
         {Rule::Replace{"t\\d", "taken.txt", true, true}},
         {"t1>taken.txt: Same name as another file in this rename",
          "t2>taken.txt: Same name as another file in this rename"}},
        {"taken",
         {"x.txt"},
         {Rule::Replace{"x.txt", "taken.txt", false, true}},
         {"x.txt>taken.txt: A file with this name already exists"}},
        {"free where case counts",
         {"x.txt"},
         {Rule::Replace{"x.txt", "taken2.txt", false, true}},
         {"x.txt>taken2.txt"}},
        {"only the case", {"x.txt"}, {Rule::ChangeCase{CaseStyle::upper}}, {"x.txt>X.TXT"}},
        {"a name that differs is not measured",
         {"x.txt"},
         {Rule::Replace{"x.txt", longName + ".txt", false, true}},
         {"x.txt>" + longName + ".txt"}},
        {"a name with a colon may keep it",
         {"a:b"},
         {Rule::Replace{"x", "y", false, true}},
         {"a:b>a:b"}},
        {"but not in a new one",
         {"a:b"},
         {Rule::AddText{"y", after}},
         {"a:b>a:by: Names can’t contain “/” or “:”"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto urls = files(c.names);
        const bool whole = true;
        EXPECT_EQ(lines(BatchRenamer::preview(urls, {c.rule}, whole)), c.expected);
        for (const URL& url : urls) ::remove(url.c_str());
    }
}

TEST_F(BatchRenamerTest, aCaseChangeCanMakeANameTooLong) {
    // ⱥ takes three bytes, Ⱥ two.
    const URL file = folder.file(std::string("\u023A\u023A") + std::string(251, 'x'), "x");
    const auto previews =
        BatchRenamer::preview({file}, {{Rule::ChangeCase{CaseStyle::lower}}}, true);
    EXPECT_EQ(previews[0].newName.size(), 257u);
    EXPECT_EQ(previews[0].problem, "Name is too long");
}

TEST_F(BatchRenamerTest, seesBystandersThatDifferInCase) {
    const URL file = folder.file("b.txt", "mine");
    folder.file("B.TXT", "bystander");
    const URL other = folder.file("c.txt", "mine too");
    const auto upper = BatchRenamer::preview({file}, {{Rule::ChangeCase{CaseStyle::upper}}}, true);
    EXPECT_EQ(upper[0].problem, "A file with this name already exists");
    // The batch holds b.txt, but the name wanted is that of B.TXT.
    const auto swapped = BatchRenamer::preview(
        {other, file}, {{Rule::Replace{"^c\\.txt$", "B.TXT", true, true}}}, true);
    EXPECT_NE(swapped[0].problem, std::nullopt);
}

TEST_F(BatchRenamerTest, filesOfTheBatchMakeRoomForEachOther) {
    std::vector<std::string> names;
    for (int i = 100; i < 200; ++i) names.push_back(std::to_string(i) + ".txt");
    const auto urls = files(names);
    // 100 becomes 101, which is another file of the batch; so does 199 become 200, which is free.
    const auto previews = BatchRenamer::preview(
        urls, {{Rule::Replace{".*", "", true, true}}, {Rule::Number{101, 1, 1, after, ""}}}, false);
    for (const RenamePreview& preview : previews) EXPECT_EQ(preview.problem, std::nullopt);
    EXPECT_EQ(BatchRenamer::apply(previews).size(), 100u);
    EXPECT_EQ(folder.read("101.txt"), "100.txt");
    EXPECT_EQ(folder.read("200.txt"), "199.txt");
    EXPECT_FALSE(folder.exists("100.txt"));
}

TEST_F(BatchRenamerTest, aLargeFolderIsSeenToo) {
    std::vector<std::string> names;
    for (int i = 0; i < 100; ++i) names.push_back("x" + std::to_string(i));
    folder.file("y50", "bystander");
    const auto previews =
        BatchRenamer::preview(files(names), {{Rule::Replace{"x", "y", false, true}}}, true);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(previews[static_cast<std::size_t>(i)].problem.has_value(), i == 50) << i;
    }
}

TEST_F(BatchRenamerTest, aLargeBatchIsOneBatch) {
    // So large that two threads share it.
    std::vector<URL> urls;
    for (int i = 0; i < 2001; ++i) urls.push_back(folder / ("x" + std::to_string(i)));
    const std::vector<Rule> rules = {{Rule::Replace{"^.*$", "n", true, true}},
                                     {Rule::Number{1, 1, 4, after, ""}}};
    const auto previews = BatchRenamer::preview(urls, rules, true);
    ASSERT_EQ(previews.size(), urls.size());
    for (std::size_t i = 0; i < urls.size(); ++i) {
        const std::string digits = std::to_string(i + 1);
        ASSERT_EQ(previews[i].id, urls[i]);
        ASSERT_EQ(previews[i].newName, "n" + std::string(4 - digits.size(), '0') + digits);
        ASSERT_EQ(previews[i].problem, std::nullopt);
    }
    urls.back() = folder / "X0";
    const auto twice = BatchRenamer::preview(urls, {{Rule::AddText{"y", before}}}, true);
    EXPECT_EQ(twice.front().problem, "Same name as another file in this rename");
    EXPECT_EQ(twice.back().problem, twice.front().problem);
    EXPECT_EQ(twice[1].problem, std::nullopt);
}

TEST_F(BatchRenamerTest, rulesThatCannotActSaySoAndLeaveTheName) {
    const URL file = folder.file("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa!", "x");
    const struct {
        Rule rule;
        const char* problem;
    } cases[] = {
        {{Rule::Replace{"(", "x", true, true}}, "“(” isn’t a valid regular expression"},
        {{Rule::Replace{"(a)", "$7", true, true}},
         "The replacement names a group that isn’t in “(a)”"},
        {{Rule::Replace{"(a|aa)+$", "x", true, true}}, "Looking for “(a|aa)+$” takes too long"},
        {{Rule::InsertDate{DateSource::photoTaken, "", before, " "}},
         "The file doesn’t say when it was taken"},
        {{Rule::InsertDate{DateSource::modified, "foo", before, " "}},
         "“foo” isn’t a valid date format"},
        {{Rule::Number{1, 1, 5000, after, ""}}, "Name is too long"},
        {{Rule::Replace{"a", std::string(5000, 'x'), true, true}}, "Name is too long"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.problem);
        const auto previews = BatchRenamer::preview({file}, {c.rule}, true);
        EXPECT_EQ(previews[0].newName, previews[0].oldName);
        EXPECT_EQ(previews[0].problem, c.problem);
    }
}

TEST_F(BatchRenamerTest, anExpressionThatHangsOnEveryNameStaysBounded) {
    std::vector<URL> urls;
    for (int i = 0; i < 5000; ++i) {
        urls.push_back(folder / (std::string(60, 'a') + std::to_string(i) + "!"));
    }
    // Without a limit for the whole batch this would take minutes, and the test its time-out.
    const auto previews =
        BatchRenamer::preview(urls, {{Rule::Replace{"(a|aa)+b", "x", true, true}}}, true);
    EXPECT_EQ(previews.back().problem, "Looking for “(a|aa)+b” takes too long");
}

TEST_F(BatchRenamerTest, insertsDates) {
    const URL file = folder.file("a.jpg", "x", Date::fromISO8601("2024-02-29T23:30:05Z"));
    auto metadata = std::make_shared<MemoryMediaMetadata>();
    Platform platform = makeLinuxPlatform();
    platform.metadata = metadata;
    const ScopedPlatform scope(platform);
    const Rule modified{
        Rule::InsertDate{DateSource::modified, "yyyy-MM-dd HH.mm.ss EEE", before, " "}};
    const Rule taken{Rule::InsertDate{DateSource::photoTaken, "", after, "_"}};
    const auto name = [&](const Rule& rule, const BatchRenamer::Dates* dates = nullptr) {
        return BatchRenamer::preview({file}, {rule}, false, dates)[0].newName;
    };
    EXPECT_EQ(name(modified), "2024-02-29 23.30.05 Thu a.jpg");
    const BatchRenamer::Dates dates = {{file, *Date::fromISO8601("1999-12-31T00:00:00Z")}};
    EXPECT_EQ(name(taken, &dates), "a_1999-12-31.jpg");

    const struct {
        const char *text, *name;
    } cases[] = {
        {"2021:07:04 10:20:30", "a_2021-07-04.jpg"},
        {"0000:00:00 00:00:00", "a.jpg"},
        {"2021:13:04 10:20:30", "a.jpg"},
        {"2021:07:04 24:00:00", "a.jpg"},
        {"2021-07-04 10:20:30", "a.jpg"},
        {"", "a.jpg"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        ItemMetadata found;
        found.photoTaken = c.text;
        metadata->set(file, found);
        EXPECT_EQ(name(taken), c.name);
    }
}

TEST_F(BatchRenamerTest, filesOfOneDayGetItsDateAndOthersTheirOwn) {
    const char* const times[] = {"2024-03-31T00:00:00Z", "2024-03-30T23:59:59Z",
                                 "2024-03-31T23:59:59Z", "2024-04-01T00:00:00Z",
                                 "2024-03-31T12:00:00Z", "1969-12-31T23:59:59Z",
                                 "2024-03-31T22:30:00Z", "1582-10-04T12:00:00Z"};
    std::vector<URL> urls;
    BatchRenamer::Dates dates;
    for (const char* time : times) {
        urls.push_back(folder.file(time, "x"));
        dates[urls.back()] = *Date::fromISO8601(time);
    }
    for (const char* format : {"", "EEE d MMM yy", "'H' D", "dd HH"}) {
        SCOPED_TRACE(format);
        const Rule rule{Rule::InsertDate{DateSource::modified, format, before, " "}};
        const auto together = BatchRenamer::preview(urls, {rule}, true, &dates);
        for (std::size_t i = 0; i < urls.size(); ++i)
            EXPECT_EQ(together[i].newName,
                      BatchRenamer::preview({urls[i]}, {rule}, true, &dates)[0].newName);
    }
}

TEST_F(BatchRenamerTest, exchangesNames) {
    const URL a = folder.file("a.txt", "A");
    const URL b = folder.file("b.txt", "B");
    const auto steps = BatchRenamer::apply(renaming({{a, "b.txt"}, {b, "a.txt"}}));
    EXPECT_EQ(steps, (std::vector<Step>{Step::move(a, b), Step::move(b, a)}));
    EXPECT_EQ(folder.read("a.txt"), "B");
    EXPECT_EQ(folder.read("b.txt"), "A");
    FileOps::revert(steps);
    EXPECT_EQ(folder.read("a.txt"), "A");
    EXPECT_EQ(folder.read("b.txt"), "B");
}

TEST_F(BatchRenamerTest, aFailureLeavesEveryOldName) {
    const struct {
        const char* what;
        std::vector<std::pair<URL, std::string>> names;
        const char* sentence;
    } cases[] = {
        {"a bystander",
         {{folder.file("a", "A"), "x"}, {folder.file("b", "B"), "taken"}},
         "Couldn’t rename the files because an item with that name already exists."},
        {"a file that has gone",
         {{folder.file("a", "A"), "x"}, {folder / "gone", "y"}, {folder.file("b", "B"), "z"}},
         nullptr},
        {"a name no disk takes",
         {{folder.file("a", "A"), "b"}, {folder.file("b", "B"), std::string(256, 'n')}},
         nullptr},
        {"a name that leads elsewhere",
         {{folder.file("a", "A"), "b"}, {folder.file("b", "B"), "../b"}},
         nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        folder.file("taken", "bystander");
        try {
            BatchRenamer::apply(renaming(c.names));
            ADD_FAILURE() << "was done";
        } catch (const FileOpError& error) {
            if (c.sentence) {
                EXPECT_STREQ(error.what(), c.sentence);
            }
        }
        EXPECT_EQ(folder.read("a"), "A");
        EXPECT_EQ(folder.read("b"), "B");
        EXPECT_EQ(folder.read("taken"), "bystander");
        const auto reader = Platform::current().files->openFolder(folder.url());
        std::size_t count = 0;
        for (auto names = reader->read(); !names.empty(); names = reader->read()) {
            count += names.size();
        }
        EXPECT_EQ(count, 3u) << "something was left over";
    }
}

TEST_F(BatchRenamerTest, awkwardNamesSurvive) {
    const std::string broken = "a\n\xff\xfe.txt";
    const auto urls = files({broken, std::string(250, 'n') + ".txt"});
    const auto previews =
        BatchRenamer::preview(urls, {{Rule::Replace{"n$", "m", true, true}}}, false);
    EXPECT_EQ(previews[0].newName, broken);
    EXPECT_EQ(previews[0].problem, std::nullopt);
    EXPECT_EQ(BatchRenamer::apply(previews).size(), 1u);
    EXPECT_TRUE(folder.exists(std::string(249, 'n') + "m.txt"));
    EXPECT_TRUE(folder.exists(broken));
}

}  // namespace
}  // namespace tarn
