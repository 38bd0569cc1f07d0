#include <filesystem>
#include <set>

#include <QtTest/QTest>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/MainThread.h"
#include "Tarn/model/PaneModel.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/tags/TagStore.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

class PaneModelTest : public testing::Test {
protected:
    void go(const URL& to, std::vector<URL> select = {}) {
        pane.navigate(Location::folder(to), true, std::move(select));
    }
    /// Goes there and waits for the whole listing.
    void open(const URL& to, std::vector<URL> select = {}) {
        go(to, std::move(select));
        settle();
    }
    void settle() {
        waitFor([this] { return !pane.isLoading() && !pane.isSearching(); });
    }
    static void waitFor(const std::function<bool()>& condition) {
        ASSERT_TRUE(QTest::qWaitFor(condition, 10'000));
    }
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const FileItem& item : pane.items().rows()->items()) names.push_back(item.name);
        return names;
    }
    std::vector<std::string> selected() const {
        std::vector<std::string> names;
        for (const FileItem& item : pane.selectedItems()) names.push_back(item.name);
        return names;
    }
    using Names = std::vector<std::string>;

    TestFolder folder;
    AppModel app;
    PaneModel pane{app, false};
};

TEST_F(PaneModelTest, showsAFolderSortedWithFoldersFirst) {
    folder.file("b.txt");
    folder.file("File 10.txt");
    folder.file("File 2.txt");
    folder.file(".hidden");
    folder.folder("zebra");
    open(folder.url());
    EXPECT_EQ(names(), (Names{"zebra", "b.txt", "File 2.txt", "File 10.txt"}));
    pane.setShowsHidden(true);
    waitFor([this] { return pane.items().count() == 5; });
}

TEST_F(PaneModelTest, followsTheSettingsWhereNothingElseWasChosen) {
    const AppSettings before = app.settings();
    folder.file("a.txt");
    folder.folder("b");
    const URL own = folder.folder("own");
    open(own);
    pane.sortBy(SortField::size);
    PaneModel other(app, false);
    other.navigate(Location::folder(folder.url()));
    waitFor([&other] { return !other.isLoading(); });

    AppSettings settings = before;
    settings.defaultView = before.defaultView == ViewMode::grid ? ViewMode::list : ViewMode::grid;
    settings.foldersFirst = false;
    settings.defaultSearchScope = SearchScopeSetting::thisMac;
    pane.setScope(SearchScopeSetting::home);
    app.setSettings(settings);
    EXPECT_EQ(other.searchScope(), SearchScopeSetting::thisMac);
    EXPECT_EQ(pane.searchScope(), SearchScopeSetting::home) << "chosen there";
    EXPECT_EQ(other.viewMode(), settings.defaultView);
    EXPECT_NE(pane.viewMode(), settings.defaultView) << "has its own";
    waitFor([&other] { return other.items().rows()->items().front().name == "a.txt"; });
    EXPECT_FALSE(app.viewPrefs(folder.url())) << "following is no choice";
    app.setSettings(before);
}

TEST_F(PaneModelTest, whatIsKnownOfAFolderComesInTheOrderOfNow) {
    const URL inner = folder.folder("inner");
    folder.file("inner/a", "1");
    folder.file("inner/b", "22");
    open(inner);
    pane.sortBy(SortField::size);
    waitFor([this] { return names() == Names{"b", "a"}; });
    open(folder.url());
    std::vector<Names> shown;
    QObject::connect(&pane, &PaneModel::rowsChanged, [&] {
        if (pane.location().url == inner) shown.push_back(names());
    });
    open(inner);
    std::erase(shown, Names());
    EXPECT_EQ(std::set(shown.begin(), shown.end()), std::set{(Names{"b", "a"})});
}

TEST_F(PaneModelTest, whatIsKnownWithHiddenItemsIsNotShownWithoutThem) {
    const URL inner = folder.folder("inner");
    folder.file("inner/a");
    folder.file("inner/.b");
    pane.setShowsHidden(true);
    open(inner);
    EXPECT_EQ(pane.items().count(), 2);
    open(folder.url());
    pane.setShowsHidden(false);
    settle();
    std::set<Names> shown;
    QObject::connect(&pane, &PaneModel::rowsChanged, [&] {
        if (pane.location().url == inner && !names().empty()) shown.insert(names());
    });
    open(inner);
    EXPECT_EQ(shown, std::set{Names{"a"}});
}

TEST_F(PaneModelTest, tagsOfALargeFolderComeAfterItsRows) {
    constexpr int many = static_cast<int>(DirectoryLister::deferTagsAbove) + 1;
    for (int i = 0; i < many; ++i) folder.file(std::to_string(1000 + i));
    ASSERT_TRUE(TagStore::setTags({{"Work", TagColor::blue}}, folder / "1500"));
    open(folder.url());
    waitFor([this] { return pane.items().item(500).tags == Names{"Work"}; });
    EXPECT_EQ(pane.items().item(500).name, "1500");
}

TEST_F(PaneModelTest, goingToTheSamePlaceAddsNoHistory) {
    open(folder.url());
    const auto id = pane.navigationID();
    go(folder.url());
    EXPECT_FALSE(pane.canGoBack());
    EXPECT_EQ(pane.navigationID(), id);
    go(folder.folder("inner"));
    EXPECT_NE(pane.navigationID(), id);
}

TEST_F(PaneModelTest, historyKeepsTheLastHundredPlaces) {
    for (int i = 0; i <= 101; ++i) go(folder / std::to_string(i));
    const auto& back = pane.history().backStack();
    ASSERT_EQ(back.size(), 100u);
    EXPECT_EQ(back.front(), Location::folder(folder / "1"));
    EXPECT_EQ(back.back(), Location::folder(folder / "100"));
}

TEST_F(PaneModelTest, goingSomewhereNewForgetsWhatLayAhead) {
    const URL a = folder.folder("a"), b = folder.folder("b"), c = folder.folder("c");
    go(a);
    go(b);
    pane.goBack();
    EXPECT_EQ(pane.location(), Location::folder(a));
    EXPECT_TRUE(pane.canGoForward());
    pane.goForward();
    EXPECT_EQ(pane.location(), Location::folder(b));
    pane.goBack();
    go(c);
    EXPECT_FALSE(pane.canGoForward());
    pane.goBack();
    EXPECT_EQ(pane.location(), Location::folder(a));
}

TEST_F(PaneModelTest, goingBackSelectsTheWayThatWasTaken) {
    folder.file("a.txt");
    const URL deep = folder.folder("inner/deeper");
    open(folder.url());
    go(deep);
    pane.goBack();
    settle();
    ASSERT_EQ(pane.selectedItems().size(), 1u);
    EXPECT_EQ(pane.selectedItems().front().name, "inner");
    pane.goForward();
    settle();
    EXPECT_TRUE(pane.selectedItems().empty()) << "further down";
    go(folder.url());
    pane.goBack();
    settle();
    EXPECT_TRUE(pane.selectedItems().empty()) << "from above";
}

TEST_F(PaneModelTest, goingUpSelectsTheFolderLeft) {
    const URL inner = folder.folder("inner");
    folder.file("a.txt");
    open(inner);
    pane.goUp();
    settle();
    EXPECT_EQ(pane.location(), Location::folder(folder.url()));
    EXPECT_EQ(selected(), Names{"inner"});
    go(URL());
    EXPECT_FALSE(pane.canGoUp());
    pane.goUp();
    EXPECT_EQ(pane.location(), Location::folder(URL()));
    pane.navigate(Location::archive(folder / "x.zip", "docs/old"));
    pane.goUp();
    EXPECT_EQ(pane.location(), Location::archive(folder / "x.zip", "docs"));
    pane.goUp();
    pane.goUp();
    EXPECT_EQ(pane.location(), Location::folder(folder.url()));
}

TEST_F(PaneModelTest, answersOfAPlaceThatWasLeftAreDropped) {
    const URL full = folder.folder("full"), other = folder.folder("other");
    for (int i = 0; i < 3500; ++i) folder.file("full/" + std::to_string(i));
    folder.file("other/only");
    go(full);
    go(other);
    settle();
    // The pool is one queue: once this has run, so has the listing of the folder that was left.
    bool done = false;
    app.pool().run([&done, self = QPointer<PaneModel>(&pane)] {
        MainThread::post(self, [&done](PaneModel&) { done = true; });
    });
    waitFor([&done] { return done; });
    EXPECT_EQ(names(), Names{"only"});
}

TEST_F(PaneModelTest, picksTheUsualDirectionAndTurnsItTheSecondTime) {
    folder.file("small", "1");
    folder.file("large", "12345");
    folder.file("medium", "123");
    open(folder.url());
    pane.sortBy(SortField::size);
    waitFor([this] { return names() == Names{"large", "medium", "small"}; });
    pane.sortBy(SortField::size);
    waitFor([this] { return names() == Names{"small", "medium", "large"}; });
    EXPECT_TRUE(pane.sort().foldersFirst);
}

TEST_F(PaneModelTest, remembersHowAFolderWasShown) {
    const URL a = folder.folder("a"), b = folder.folder("b");
    open(a);
    EXPECT_EQ(pane.viewMode(), app.settings().defaultView);
    pane.setViewMode(ViewMode::list);
    pane.sortBy(SortField::modified);
    open(b);
    EXPECT_EQ(pane.viewMode(), app.settings().defaultView);
    EXPECT_EQ(pane.sort().field, SortField::name);
    open(a);
    EXPECT_EQ(pane.viewMode(), ViewMode::list);
    EXPECT_EQ(pane.sort(), (SortOrder{SortField::modified, false, true}));
    EXPECT_EQ(AppModel().viewPrefs(b), std::nullopt);
    app.flush();
    EXPECT_EQ(AppModel().viewPrefs(a)->viewMode, ViewMode::list);
}

TEST_F(PaneModelTest, selectsWhatIsStillBeingListed) {
    folder.file("a");
    folder.file("b");
    go(folder.url());
    pane.navigate(Location::folder(folder.url()), false, {folder / "b"});
    settle();
    EXPECT_EQ(selected(), Names{"b"});
    // A new item that no listing has shown yet.
    folder.file("c");
    go(folder.url(), {folder / "c"});
    waitFor([this] { return selected() == Names{"c"}; });
}

TEST_F(PaneModelTest, followsChangesAndKeepsTheSelection) {
    folder.file("b");
    folder.file("c");
    open(folder.url());
    pane.select({folder / "b"});
    folder.file("a");
    waitFor([this] { return names() == Names{"a", "b", "c"}; });
    EXPECT_EQ(selected(), Names{"b"});
    unlink((folder / "b").c_str());
    waitFor([this] { return names() == Names{"a", "c"}; });
    EXPECT_EQ(selected(), Names{});
}

TEST_F(PaneModelTest, manyRowsStaySelectedInAnotherOrder) {
    constexpr int count = 1200;
    for (int i = 0; i < count; ++i) folder.file(std::to_string(i));
    open(folder.url());
    std::vector<URL> wanted;
    for (int i = 0; i < count; i += 10)
        for (int j = 1; j < 10; ++j) wanted.push_back(folder / std::to_string(i + j));
    pane.select(wanted);
    pane.sortBy(SortField::name);
    waitFor([this] { return names().front() == "1199" && !pane.isLoading(); });
    EXPECT_EQ(pane.selectedItems().size(), wanted.size());
    for (const FileItem& item : pane.selectedItems()) EXPECT_FALSE(item.name.ends_with('0'));

    // What is selected meanwhile counts.
    pane.sortBy(SortField::name);
    waitFor([this] { return pane.isLoading() || names().front() == "0"; });
    pane.select({folder / "7"});
    waitFor([this] { return names().front() == "0" && !pane.isLoading(); });
    EXPECT_EQ(selected(), Names{"7"});
}

TEST_F(PaneModelTest, saysWhyAFolderCannotBeShownAndRecovers) {
    open(folder / "gone");
    ASSERT_TRUE(pane.listingError());
    EXPECT_EQ(pane.listingError()->reason(), ListingError::Reason::notFound);
    EXPECT_STREQ(pane.listingError()->what(), "“gone” doesn’t exist any more.");
    folder.file("gone/a");
    pane.reload();
    waitFor([this] { return names() == Names{"a"}; });
    EXPECT_FALSE(pane.listingError());
    open(folder.file("plain"));
    EXPECT_EQ(pane.listingError()->reason(), ListingError::Reason::notAFolder);
    // A folder that goes while it is shown.
    open(folder / "gone");
    std::filesystem::remove_all((folder / "gone").path());
    waitFor([this] { return pane.listingError().has_value(); });
    EXPECT_EQ(names(), Names{});
}

TEST_F(PaneModelTest, showsTheFirstRowsOfALargeFolderInTheirFinalPlaces) {
    for (int i = 4999; i >= 0; --i) folder.file("f" + std::to_string(i));
    for (int i = 0; i < 3; ++i) folder.folder("folder " + std::to_string(i));
    std::vector<Names> shown;
    QObject::connect(&pane, &PaneModel::rowsChanged, [&] { shown.push_back(names()); });
    open(folder.url(), {folder / "f4999"});
    ASSERT_GE(shown.size(), 2u);
    EXPECT_LT(shown.front().size(), 1000u);
    EXPECT_EQ(shown.back().size(), 5003u);
    // On a busy machine more parts are shown on the way.
    for (const Names& part : shown)
        EXPECT_TRUE(std::equal(part.begin(), part.end(), shown.back().begin()));
    EXPECT_EQ(selected(), Names{"f4999"});
}

TEST_F(PaneModelTest, entersFoldersAndNothingElse) {
    folder.folder("in");
    folder.file("plain.txt");
    folder.link("link", "in");
    open(folder.url());
    EXPECT_FALSE(pane.browse(*FileItem::load(folder / "plain.txt")));
    EXPECT_TRUE(pane.browse(*FileItem::load(folder / "link")));
    EXPECT_EQ(pane.location(), Location::folder(folder / "link"));
}

TEST_F(PaneModelTest, showsNamesOfAnyBytes) {
    folder.file("a\nb");
    folder.file("x\xff");
    folder.file(std::string(255, 'n'));
    open(folder.url());
    ASSERT_EQ(pane.items().count(), 3);
    for (const FileItem& item : pane.items().rows()->items()) {
        const QString shown = PaneItems::displayName(item);
        EXPECT_FALSE(shown.contains(u'\n'));
        EXPECT_TRUE(pane.items().row(item.url));
    }
}

// --- Search

TEST_F(PaneModelTest, searchesOnceAfterTheLastKeystroke) {
    folder.file("tax 2023.pdf");
    folder.file("deep/tax 2024.pdf");
    folder.file("other.txt");
    open(folder.url());
    int searches = 0;
    QObject::connect(&pane, &PaneModel::searchChanged, [&] { ++searches; });
    for (const char* text : {"t", "ta", "tax"}) pane.searchTextChanged(text);
    EXPECT_FALSE(pane.query());
    waitFor([this] { return pane.showsResults() && !pane.isSearching(); });
    EXPECT_EQ(searches, 1);
    EXPECT_EQ(pane.query()->raw, "tax");
    EXPECT_EQ(names(), (Names{"tax 2023.pdf", "tax 2024.pdf"}));
}

TEST_F(PaneModelTest, emptyTextRestoresTheListingAtOnce) {
    folder.file("a.txt");
    folder.file("b.pdf");
    open(folder.url());
    pane.setSearchText("b");
    settle();
    EXPECT_EQ(names(), Names{"b.pdf"});
    pane.searchTextChanged("");
    EXPECT_FALSE(pane.query());
    EXPECT_EQ(names(), (Names{"a.txt", "b.pdf"}));
    pane.setSearchText("b");
    EXPECT_TRUE(pane.search().isRunning());
    pane.clearSearch(false);
    EXPECT_FALSE(pane.search().isRunning());
    // A keystroke before the delay has passed takes the search along.
    pane.searchTextChanged("a");
    pane.searchTextChanged("");
    QTest::qWait(static_cast<int>(PaneModel::searchDelay * 1000) + 50);
    EXPECT_FALSE(pane.query());
}

TEST_F(PaneModelTest, aSearchWithoutResultsShowsNoRows) {
    folder.file("a.txt");
    open(folder.url());
    pane.setSearchText("zebra");
    settle();
    EXPECT_TRUE(pane.showsResults());
    EXPECT_EQ(names(), Names{});
    go(folder.folder("elsewhere"));
    EXPECT_FALSE(pane.query());
    EXPECT_EQ(pane.searchText(), "");
}

TEST_F(PaneModelTest, removingAChipWidensTheSearchUntilItsWordsChange) {
    folder.file("tax.pdf");
    folder.file("tax.txt");
    open(folder.url());
    pane.setSearchText("tax pdfs");
    settle();
    EXPECT_EQ(names(), Names{"tax.pdf"});
    pane.removeChip(ChipCategory::type);
    pane.clearSearch(false);
    pane.setSearchText("tax pdfs");
    EXPECT_EQ(pane.query()->chips().size(), 1u);  // That was another search.
    pane.removeChip(ChipCategory::type);
    settle();
    EXPECT_EQ(names(), (Names{"tax.pdf", "tax.txt"}));
    EXPECT_TRUE(pane.query()->chips().empty());
    pane.setSearchText("tax pdfs ");
    settle();
    EXPECT_TRUE(pane.query()->chips().empty());
    pane.setSearchText("tax images");
    settle();
    EXPECT_EQ(pane.query()->chips().size(), 1u);
}

TEST_F(PaneModelTest, theScopeDecidesWhereToLook) {
    folder.file("in/needle in a haystack.txt");
    folder.file("out/needle in a haystack.txt");
    open(folder / "in");
    pane.setSearchText("needle haystack");
    settle();
    EXPECT_EQ(pane.items().count(), 1);
    pane.navigate(Location::folder(folder.url()));
    settle();
    pane.setSearchText("needle haystack");
    settle();
    EXPECT_EQ(pane.items().count(), 2);
}

TEST_F(PaneModelTest, bestMatchesComeFirstUntilAColumnIsPicked) {
    folder.file("my report draft.txt", "123");
    folder.file("report", "1");
    folder.file("report 2.txt", "12345");
    open(folder.url());
    pane.setSearchText("report");
    settle();
    EXPECT_EQ(names(), (Names{"report", "report 2.txt", "my report draft.txt"}));
    pane.sortBy(SortField::size);
    waitFor([this] { return names() == Names{"report 2.txt", "my report draft.txt", "report"}; });
}

}  // namespace
}  // namespace tarn
