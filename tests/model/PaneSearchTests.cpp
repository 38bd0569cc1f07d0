#include <filesystem>

#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/PaneSearch.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

SearchOptions searching(const TestFolder& folder, const char* term) {
    SearchOptions options;
    options.query.raw = term;
    options.query.terms = {term};
    options.roots = {folder.url()};
    return options;
}

std::vector<std::string> names(const PaneSearch& search) {
    std::vector<std::string> names;
    for (const FileItem& item : search.rows()->items()) names.push_back(item.name);
    return names;
}

TEST(PaneSearch, rowsThatWereSeenKeepTheirPlacesWhileOthersCome) {
    TestFolder folder;
    for (int i = 0; i < 600; ++i) folder.file(std::to_string(i % 20) + "/hit " + std::to_string(i));
    PaneSearch search;
    std::vector<std::string> seen;
    bool kept = true;
    QObject::connect(&search, &PaneSearch::rowsChanged, [&] {
        const auto now = names(search);
        kept &= seen.size() <= now.size() && std::equal(seen.begin(), seen.end(), now.begin());
        // A person who looks at everything and works with it.
        seen = now;
        search.rowsSeen(static_cast<int>(now.size()));
        search.holdRows();
    });
    search.start(searching(folder, "hit"), {}, true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !search.isRunning(); }, 10'000));
    EXPECT_TRUE(kept);
    EXPECT_EQ(names(search).size(), 600u);
    EXPECT_GE(search.visitedCount(), 600);
}

TEST(PaneSearch, endsInOrderWhenNobodyTouchedTheRows) {
    TestFolder folder;
    folder.file("b/zz hit");
    folder.file("hit");
    folder.file("a/hit 2");
    PaneSearch search;
    search.rowsSeen(3);
    search.start(searching(folder, "hit"), {}, true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !search.isRunning(); }, 10'000));
    EXPECT_EQ(names(search), (std::vector<std::string>{"hit", "hit 2", "zz hit"}));
}

TEST(PaneSearch, aNewSearchSilencesTheOldOne) {
    TestFolder folder;
    folder.file("old");
    folder.file("new");
    PaneSearch search;
    int finished = 0;
    QObject::connect(&search, &PaneSearch::finished, [&] { ++finished; });
    search.start(searching(folder, "old"), {}, true);
    search.start(searching(folder, "new"), {}, true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return finished > 0; }, 10'000));
    EXPECT_EQ(names(search), std::vector<std::string>{"new"});
    search.start(searching(folder, "old"), {}, true);
    search.cancel();
    EXPECT_FALSE(search.isRunning());
    QTest::qWait(50);
    EXPECT_EQ(finished, 1);
}

TEST(PaneSearch, readsWhyResultsWereFoundForRowsThatAreShown) {
    TestFolder folder;
    for (int i = 0; i < 300; ++i)
        folder.file(std::to_string(i) + ".txt", "number " + std::to_string(i) + " is\ndue");
    PaneSearch search;
    SearchOptions options = searching(folder, "");
    options.query.terms.clear();
    options.query.containing = {"is due"};
    search.start(options, {}, true);
    EXPECT_TRUE(search.asksForTexts());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !search.isRunning(); }, 10'000));
    // More rows than wait at once, as when someone scrolls through all of them.
    const auto& items = search.rows()->items();
    for (const FileItem& item : items) EXPECT_EQ(search.snippets().match(item), nullptr);
    const FileItem& last = items.back();
    ASSERT_TRUE(QTest::qWaitFor([&] { return search.snippets().match(last) != nullptr; }, 10'000));
    const TextMatch& match = *search.snippets().match(last);
    EXPECT_EQ(match.reason, TextMatch::Reason::text);
    EXPECT_EQ(match.snippet, "number " + last.name.substr(0, last.name.size() - 4) + " is due");
    EXPECT_EQ(match.ranges.size(), 1u);
    // The first ones gave way, and come when they are asked for again.
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return search.snippets().match(items.front()) != nullptr; }, 10'000));

    search.start(searching(folder, "1"), {}, true);
    EXPECT_FALSE(search.asksForTexts());
    EXPECT_EQ(search.snippets().match(last), nullptr);  // What was known is of another search.
}

/// Of a search that has ended, once its results have come to this.
bool becomes(const PaneSearch& search, std::vector<std::string> wanted) {
    return QTest::qWaitFor([&] { return names(search) == wanted; }, 10'000);
}

TEST(PaneSearch, resultsFollowWhatHappensToTheirFiles) {
    TestFolder folder;
    folder.file("hit");
    folder.file("hit 1");
    folder.file("in/hit 2");
    PaneSearch search;
    int finished = 0;
    QObject::connect(&search, &PaneSearch::finished, [&] { ++finished; });
    search.start(searching(folder, "hit"), {}, true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return finished == 1; }, 10'000));
    ASSERT_EQ(names(search), (std::vector<std::string>{"hit", "hit 1", "hit 2"}));
    // As soon as someone says so, and no later than the disk does.
    std::filesystem::remove((folder / "hit 1").path());
    search.askAgain({folder / "hit 1"});
    EXPECT_TRUE(becomes(search, {"hit", "hit 2"}));
    std::filesystem::rename((folder / "hit").path(), (folder / "hit 3").path());
    EXPECT_TRUE(becomes(search, {"hit 2", "hit 3"}));
    folder.file("in/hit 0");
    folder.file("in/other");
    EXPECT_TRUE(becomes(search, {"hit 0", "hit 2", "hit 3"}));
    // What lies in a folder that goes, goes with it; what has been looked at stays in front.
    search.rowsSeen(3);
    search.holdRows();
    std::filesystem::rename((folder / "in").path(), (folder / "hit away").path());
    search.askAgain(
        {folder / "in", folder / "hit away", folder / "hit away 2", folder / "hit away/hit 0"});
    EXPECT_TRUE(QTest::qWaitFor([&] { return search.rows()->size() == 4; }, 10'000));
    EXPECT_EQ(names(search).front(), "hit 3");
    EXPECT_EQ(finished, 1);
}

TEST(PaneSearch, askedTheSameAgainItKeepsItsRowsUntilItKnows) {
    TestFolder folder;
    for (int i = 0; i < 900; ++i) folder.file(std::to_string(i % 30) + "/hit " + std::to_string(i));
    PaneSearch search;
    search.start(searching(folder, "hit"), {}, true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !search.isRunning(); }, 10'000));
    folder.file("0/hit new");
    std::vector<std::size_t> counts;
    QObject::connect(&search, &PaneSearch::rowsChanged,
                     [&] { counts.push_back(search.rows()->size()); });
    search.start(searching(folder, "hit"), {}, true, true);
    EXPECT_TRUE(search.isRunning());
    EXPECT_EQ(search.rows()->size(), 900u);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !search.isRunning(); }, 10'000));
    EXPECT_EQ(counts, std::vector<std::size_t>{901});
}

}  // namespace
}  // namespace tarn
