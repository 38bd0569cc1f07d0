// Panes that show a search for text, while the index of texts changes.
#include <algorithm>

#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/ContentIndexService.h"
#include "Tarn/model/PaneModel.h"
#include "TarnCore/index/TextIndex.h"
#include "TarnCore/platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

class PaneTextSearchTest : public testing::Test {
protected:
    void SetUp() override {
        pane.navigate(Location::folder(folder.url()), true, {});
        pane.setScope(SearchScopeSetting::currentFolder);
    }
    void TearDown() override { TextIndex::shared()->clear(); }
    /// A picture in whose text those words were recognised.
    void picture(const std::string& name, const std::string& text) {
        const URL url = folder.file(name, "picture");
        const auto attributes = Platform::current().files->attributes(url, Links::keep);
        ASSERT_TRUE(attributes);
        const auto known = TextIndex::Known::of(*attributes);
        TextIndex::shared()->store(url.path(), known.mtime, known.size,
                                   TextExtractor::Method::image, text);
    }
    void search(const std::string& text) {
        pane.setSearchText(text);
        settle();
    }
    void settle() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !pane.isSearching(); }, 10'000));
    }
    void changeIndex() {
        emit app.contentIndex().contentsChanged();
        settle();
    }
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const FileItem& item : pane.items().rows()->items()) names.push_back(item.name);
        return names;
    }
    using Names = std::vector<std::string>;

    TestFolder folder;
    AppModel app;
    PaneModel pane{app, false};
};

TEST_F(PaneTextSearchTest, showsWhatTheIndexLearnsMeanwhile) {
    picture("one.png", "total due");
    search("containing \"total due\"");
    EXPECT_EQ(names(), Names{"one.png"});
    picture("two.png", "Total due: nothing");
    changeIndex();
    Names now = names();
    std::ranges::sort(now);
    EXPECT_EQ(now, (Names{"one.png", "two.png"}));
    TextIndex::shared()->clear();
    changeIndex();
    EXPECT_EQ(names(), Names{});
}

TEST_F(PaneTextSearchTest, rowsThatSomeoneWorksWithStay) {
    picture("one.png", "total due");
    search("containing \"total due\"");
    pane.select({folder / "one.png"});
    picture("two.png", "total due");
    changeIndex();
    EXPECT_EQ(names(), Names{"one.png"});
    pane.select({});
    changeIndex();
    EXPECT_EQ(names().size(), 2U);
}

TEST_F(PaneTextSearchTest, searchesForNamesDoNotBeginAgain) {
    folder.file("report.txt");
    search("report");
    int changes = 0;
    QObject::connect(&pane, &PaneModel::searchChanged, [&] { ++changes; });
    changeIndex();
    EXPECT_EQ(changes, 0);
}

}  // namespace
}  // namespace tarn
