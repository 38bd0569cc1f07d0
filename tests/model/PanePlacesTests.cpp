// Places of a pane that are queries over the home folder.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>

#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/LiveList.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/model/records/SmartFolder.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/TrashContents.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "TarnCore/sources/SourceResolver.h"
#include "TarnCore/tags/TagStore.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

/// A home folder of the test's own.
class Home {
public:
    Home() { root.folder("Home"); }
    TestFolder root;
    ScopedEnvironment isolation{{"TARN_ISOLATED_ROOT", root.url().path()}};
};

class PanePlacesTest : public testing::Test {
protected:
    void open(const Location& place, std::vector<URL> select = {}) {
        pane.navigate(place, true, std::move(select));
        settle();
    }
    void settle() {
        waitFor([this] { return !pane.isLoading() && !pane.isSearching(); });
    }
    static void waitFor(const std::function<bool()>& condition) {
        ASSERT_TRUE(QTest::qWaitFor(condition, 10'000));
    }
    URL file(const std::string& relative, const std::string& content = {}) const {
        return home.root.file("Home/" + relative, content);
    }
    using Names = std::vector<std::string>;
    Names names() const {
        Names names;
        for (const FileItem& item : pane.items().rows()->items()) names.push_back(item.name);
        return names;
    }

    Home home;
    AppModel app;
    PaneModel pane{app, false};
};

TEST_F(PanePlacesTest, aLibraryPlaceShowsItsFilesFromAllOverTheHomeFolder) {
    file("b.jpg");
    file("Deep/er/a.PNG");
    file("notes.txt");
    file(".hidden.jpg");
    file(".config/theme.png");
    file("Kept.app/icon.png");
    file(".local/share/Trash/files/old.jpg");
    open(Location::library(LibraryItem::images));
    EXPECT_EQ(names(), (Names{"a.PNG", "b.jpg"}));
    EXPECT_FALSE(pane.isCut());
    pane.sortBy(SortField::name);
    waitFor([this] { return names() == Names{"b.jpg", "a.PNG"}; });
    pane.setShowsHidden(true);
    waitFor([this] { return !pane.isSearching() && pane.items().count() == 3; });
}

TEST_F(PanePlacesTest, aLivePlaceFollowsWhatHappensToItsFiles) {
    file("a.jpg");
    const URL goes = file("Sub/b.jpg");
    open(Location::library(LibraryItem::images));
    pane.select({home.root / "Home/a.jpg"});
    // A new file in a new folder, a file that goes, one that stops to belong, a folder that moves.
    file("New/inner/c.jpg");
    waitFor([this] { return names() == Names{"a.jpg", "b.jpg", "c.jpg"}; });
    std::filesystem::rename((home.root / "Home/New").path(), (home.root / "Home/Renamed").path());
    waitFor([this] {
        const auto row = pane.items().row(home.root / "Home/Renamed/inner/c.jpg");
        return row && pane.items().count() == 3;
    });
    std::filesystem::remove(goes.path());
    waitFor([this] { return names() == Names{"a.jpg", "c.jpg"}; });
    std::filesystem::rename((home.root / "Home/Renamed/inner/c.jpg").path(),
                            (home.root / "Home/Renamed/inner/c.txt").path());
    waitFor([this] { return names() == Names{"a.jpg"}; });
    file(".cache/thumb.jpg");
    file("z\nodd\xff.jpg");
    waitFor([this] { return pane.items().count() == 2; });
    ASSERT_EQ(pane.selectedItems().size(), 1u);
    EXPECT_EQ(pane.selectedItems().front().name, "a.jpg");
}

TEST_F(PanePlacesTest, theTrashShowsWhatWasTrashedAndFollows) {
    const Location trash = Location::folder(Paths::trash());
    open(trash);
    EXPECT_EQ(names(), Names()) << "nothing was trashed yet";
    EXPECT_FALSE(pane.listingError());
    app.startBackgroundServices(false);
    std::vector<Step> steps = FileOps::trash({file("a.txt"), file("Sub/a.txt"), file("Sub/b.txt")});
    waitFor([this] { return names() == Names{"a.txt", "a.txt", "b.txt"}; });
    EXPECT_EQ(TrashContents::measure({}).items, 3);
    EXPECT_TRUE(Paths::isInTrash(trash.url)) << "what is dropped there is trashed, not moved";
    EXPECT_TRUE(Paths::isInTrash(pane.items().item(0).url));
    pane.setSearchText("b");
    waitFor([this] { return names() == Names{"b.txt"}; });
    pane.setSearchText({});
    FileOps::revert(steps);
    waitFor([this] { return pane.items().count() == 0; });
    EXPECT_EQ(home.root.read("Home/Sub/a.txt"), "");
}

TEST_F(PanePlacesTest, aTagShowsWhatCarriesItAndFollows) {
    const URL tagged = file("Sub/report.txt");
    const URL other = file("other.txt");
    const URL hidden = file(".secret");
    ASSERT_TRUE(TagStore::setTags({{"Work", TagColor::blue}}, tagged));
    ASSERT_TRUE(TagStore::setTags({{"work", TagColor::blue}}, hidden));
    ASSERT_TRUE(TagStore::setTags({{"Workshop", TagColor::blue}}, other));
    open(Location::tag("Work"));
    EXPECT_EQ(names(), (Names{".secret", "report.txt"}));
    ASSERT_TRUE(TagStore::setTags({{"Work", TagColor::red}}, other));
    waitFor([this] { return pane.items().count() == 3; });
    ASSERT_TRUE(TagStore::setTags({}, tagged));
    waitFor([this] { return names() == Names{".secret", "other.txt"}; });
}

TEST_F(PanePlacesTest, aSourceShowsWhatCameFromIt) {
    const URL slack = file("invoice.pdf");
    SourceResolver::setWhereFroms(slack, {"https://files.slack.com/x/invoice.pdf"});
    SourceResolver::setWhereFroms(file("page.html"), {"https://example.org/page.html"});
    file("own.txt");
    SourceResolver::setWhereFroms(home.root.folder("Home/unpacked"),
                                  {"https://files.slack.com/x/unpacked.zip"});
    open(Location::source("Slack"));
    EXPECT_EQ(names(), Names{"invoice.pdf"});
    open(Location::source("example.org"));
    EXPECT_EQ(names(), Names{"page.html"});
}

TEST_F(PanePlacesTest, aSmartFolderRunsItsQueryAndAnUnknownOneSaysSo) {
    file("Screenshot 2024-03-10.png");
    file("holiday.png");
    const SmartFolder& screenshots = SmartFolder::builtIns()[1];
    open(Location::smartFolder(screenshots.id));
    EXPECT_EQ(names(), Names{"Screenshot 2024-03-10.png"});
    EXPECT_EQ(pane.title(), "Screenshots");
    open(Location::smartFolder(UUID::random()));
    ASSERT_TRUE(pane.listingError());
    EXPECT_EQ(names(), Names{});
    EXPECT_STREQ(pane.listingError()->what(),
                 "This smart folder doesn’t exist any more. It may have been deleted.");
    pane.goBack();
    settle();
    EXPECT_EQ(names(), Names{"Screenshot 2024-03-10.png"});
    EXPECT_FALSE(pane.listingError());
}

TEST_F(PanePlacesTest, aSmartFolderFollowsItsRecord) {
    file("tax 2024.pdf");
    file("tax 2024.txt");
    const UUID id = app.lists().addSmartFolder("Taxes", "tax pdfs", SearchScopeSetting::home);
    SmartFolder taxes = *app.lists().smartFolder(id);
    open(Location::smartFolder(taxes.id));
    EXPECT_EQ(names(), Names{"tax 2024.pdf"});
    EXPECT_EQ(pane.title(), "Taxes");
    taxes.query = "tax";
    taxes.name = "All Taxes";
    app.lists().changeSmartFolder(taxes);
    waitFor([this] { return names() == Names{"tax 2024.pdf", "tax 2024.txt"}; });
    EXPECT_EQ(pane.title(), "All Taxes");
    app.lists().removeSmartFolder(id);
    waitFor([this] { return pane.listingError().has_value(); });
    EXPECT_EQ(names(), Names{});
}

TEST_F(PanePlacesTest, aSearchInALivePlaceGivesWayToItAgain) {
    file("pear.jpg");
    file("pear.txt");
    open(Location::library(LibraryItem::images));
    pane.setSearchText("pear");
    settle();
    EXPECT_EQ(names(), Names{"pear.jpg"});  // Only what belongs here …
    pane.setScope(SearchScopeSetting::home);
    settle();
    EXPECT_EQ(names().size(), 2u);  // … unless everything is asked for.
    pane.clearSearch(false);
    EXPECT_EQ(names(), Names{"pear.jpg"});
}

TEST_F(PanePlacesTest, whatIsTypedInASavedSearchNarrowsItAndWinsWhereBothSaySomething) {
    const auto dated = [this](const char* name, int year) {
        const auto days = std::chrono::sys_days(std::chrono::year(year) / 5 / 5);
        home.root.setModified(file(name), Date::fromUnix(days.time_since_epoch().count() * 86'400));
    };
    dated("report old.txt", 2024);
    dated("report new.txt", 2025);
    dated("other.txt", 2025);
    open(Location::smartFolder(
        app.lists().addSmartFolder("Reports", "report from 2024", SearchScopeSetting::home)));
    EXPECT_EQ(names(), Names{"report old.txt"});
    pane.setSearchText("from 2025");
    settle();
    EXPECT_EQ(names(), Names{"report new.txt"});
}

TEST_F(PanePlacesTest, recentFilesBeginWithTheLatest) {
    open(Location::library(LibraryItem::recents));
    EXPECT_EQ(pane.sort().field, SortField::modified);
    EXPECT_FALSE(pane.sort().ascending);
    open(Location::library(LibraryItem::images));
    EXPECT_EQ(pane.sort().field, SortField::name);
}

TEST_F(PanePlacesTest, onlyWhoIsInTheTrashSearchesIt) {
    file("needle.txt");
    const URL gone = Paths::trash().appending("1/needle gone.txt");
    std::filesystem::create_directories(gone.parent().path());
    std::ofstream(gone.path()) << "gone";
    pane.setShowsHidden(true);  // The Trash may lie in a folder that is.
    open(Location::folder(home.root / "Home"));
    pane.setSearchText("needle");
    settle();
    EXPECT_EQ(names(), Names{"needle.txt"});
    open(Location::folder(Paths::trash()));
    pane.setSearchText("needle");
    settle();
    EXPECT_EQ(names(), Names{"needle gone.txt"});
}

TEST_F(PanePlacesTest, selectsWhatWasAskedForWhenItIsFound) {
    const URL wanted = file("x/wanted.jpg");
    for (int i = 0; i < 50; ++i) file("y/" + std::to_string(i) + ".jpg");
    open(Location::library(LibraryItem::images), {wanted});
    ASSERT_EQ(pane.selectedItems().size(), 1u);
    EXPECT_EQ(pane.selectedItems().front().url, wanted);
}

TEST_F(PanePlacesTest, answersOfAPlaceThatWasLeftAreDropped) {
    for (int i = 0; i < 300; ++i) file("p/" + std::to_string(i) + ".jpg");
    file("v.mp4");
    pane.navigate(Location::library(LibraryItem::images));
    open(Location::library(LibraryItem::videos));
    EXPECT_EQ(names(), Names{"v.mp4"});
    open(Location::folder(home.root / "Home"));
    EXPECT_EQ(names(), (Names{"p", "v.mp4"}));
}

TEST_F(PanePlacesTest, ofTheWholeComputerTheHomeFolderAndTheDisksOfAPersonAreWatched) {
    const auto mount = [](const char* at, bool isRemovable, bool isNetwork, bool isPseudo) {
        Mount made;
        made.mountPoint = URL::fromPath(at);
        made.isRemovable = isRemovable;
        made.isNetwork = isNetwork;
        made.isPseudo = isPseudo;
        return made;
    };
    const auto volumes = std::make_shared<MemoryVolumes>();
    volumes->setMounts({mount("/", false, false, false), mount("/media/stick", true, false, false),
                        mount("/mnt/share", true, true, false), mount("/proc", false, false, true),
                        mount("/run/media/ann/card", true, false, false)});
    Platform platform = Platform::current();
    platform.volumes = volumes;
    const ScopedPlatform scoped(platform);
    const URL stick = URL::fromPath("/media/stick");
    EXPECT_EQ(LiveList::watchedOf({URL()}),
              (std::vector<URL>{Paths::home(), stick, URL::fromPath("/run/media/ann/card")}));
    // A folder is watched, wherever it is.
    const URL share = URL::fromPath("/mnt/share/photos");
    EXPECT_EQ(LiveList::watchedOf({share}), std::vector<URL>{share});
}

}  // namespace
}  // namespace tarn
