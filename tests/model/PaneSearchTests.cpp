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

}  // namespace
}  // namespace tarn
