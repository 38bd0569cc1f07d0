#include <filesystem>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/StoreWatcher.h"
#include "Tarn/model/UserLists.h"
#include "Tarn/model/records/Favorites.h"
#include "Tarn/model/records/ListError.h"
#include "Tarn/model/records/NamedRecords.h"
#include "Tarn/model/records/SmartFolders.h"
#include "Tarn/model/records/UserStores.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using testing::ElementsAre;

constexpr const char* storeNames[] = {"settings.json",   "favorites.json", "smart-folders.json",
                                      "workspaces.json", "servers.json",   "never-suggest.json"};

/// Every test begins without stores.
class UserListsTest : public testing::Test {
protected:
    UserListsTest() { clear(); }
    ~UserListsTest() override { clear(); }
    static void clear() {
        for (const char* name : storeNames)
            std::filesystem::remove(SupportDirectory::file(name).path());
    }
    static std::vector<std::string> titles(const UserLists& lists) {
        std::vector<std::string> all;
        for (const Favorite& favorite : lists.favorites())
            all.push_back(Favorites::title(favorite));
        return all;
    }
    static std::vector<std::string> names(const UserLists& lists) {
        std::vector<std::string> all;
        for (const SmartFolder& folder : lists.smartFolders()) all.push_back(folder.name);
        return all;
    }
    static WindowSnapshot tab(const char* path) {
        return {{{Location::folder(URL::fromPath(path)), std::nullopt}}, 0, true, false};
    }
    template <class Function>
    static ListError::Reason refusal(Function&& function) {
        try {
            function();
        } catch (const ListError& error) {
            return error.reason();
        }
        ADD_FAILURE() << "was accepted";
        return {};
    }
};

TEST_F(UserListsTest, aFavoriteIsInTheListOnceWhereverItIsDropped) {
    UserLists lists;
    const QSignalSpy changes(&lists, &UserLists::favoritesChanged);
    const UUID a = lists.addFavorite(URL::fromPath("/srv/a/"));
    lists.addFavorite(URL::fromPath("/srv/b"));
    const UUID c = lists.addFavorite(URL::fromPath("/srv/c"), 0);
    EXPECT_THAT(titles(lists), ElementsAre("c", "a", "b"));
    EXPECT_EQ(lists.addFavorite(URL::fromPath("/srv/x/../a")), a);
    EXPECT_THAT(titles(lists), ElementsAre("c", "a", "b")) << "without a place it stays";
    EXPECT_EQ(lists.addFavorite(URL::fromPath("/srv/c"), 2), c);
    EXPECT_THAT(titles(lists), ElementsAre("a", "c", "b")) << "in front of what was the third";
    lists.addFavorite(URL::fromPath("/srv/c"), 1);
    EXPECT_THAT(titles(lists), ElementsAre("a", "c", "b")) << "in front of itself";
    lists.moveFavorite(a, 99);
    EXPECT_THAT(titles(lists), ElementsAre("c", "b", "a"));
    lists.moveFavorite(UUID::random(), 0);
    EXPECT_EQ(changes.count(), 5);

    lists.renameFavorite(a, "  First\nline ");
    EXPECT_EQ(lists.favorite(URL::fromPath("/srv/a"))->displayName, "First line");
    lists.renameFavorite(a, "a");
    EXPECT_EQ(lists.favorite(URL::fromPath("/srv/a"))->displayName, std::nullopt);
    lists.removeFavorite(c);
    lists.flush();
    EXPECT_THAT(titles(UserLists()), ElementsAre("b", "a"));
}

TEST_F(UserListsTest, smartFoldersHaveNamesOfTheirOwnBehindTheBuiltInOnes) {
    UserLists lists;
    const auto scope = SearchScopeSetting::thisMac;
    const UUID bills = lists.addSmartFolder(" Bills ", " pdfs ", scope);
    lists.addSmartFolder("Songs", "mp3", scope);
    EXPECT_THAT(names(lists),
                ElementsAre("Large Files", "Screenshots", "Installers", "Bills", "Songs"));
    EXPECT_EQ(lists.smartFolder(bills)->query, "pdfs");

    EXPECT_EQ(refusal([&] { lists.addSmartFolder("BILLS", "x", scope); }),
              ListError::Reason::nameTaken);
    EXPECT_EQ(refusal([&] { lists.addSmartFolder("screenshots", "x", scope); }),
              ListError::Reason::nameTaken);
    EXPECT_EQ(refusal([&] { lists.addSmartFolder(" \n", "x", scope); }),
              ListError::Reason::emptyName);
    EXPECT_EQ(refusal([&] { lists.addSmartFolder("X", " ", scope); }),
              ListError::Reason::emptyQuery);
    EXPECT_EQ(refusal([&] { lists.renameSmartFolder(bills, "songs"); }),
              ListError::Reason::nameTaken);
    SmartFolder changed = *lists.smartFolder(bills);
    changed.query = " ";
    EXPECT_EQ(refusal([&] { lists.changeSmartFolder(changed); }), ListError::Reason::emptyQuery);
    lists.renameSmartFolder(bills, "bills");
    lists.moveSmartFolder(bills, 1);
    for (const SmartFolder& builtIn : SmartFolder::builtIns()) {
        lists.removeSmartFolder(builtIn.id);
        lists.moveSmartFolder(builtIn.id, 9);
        lists.renameSmartFolder(builtIn.id, "Mine " + builtIn.name);
    }
    EXPECT_THAT(names(lists),
                ElementsAre("Large Files", "Screenshots", "Installers", "Songs", "bills"));
    lists.flush();
    EXPECT_EQ(UserLists().smartFolders(), lists.smartFolders());
}

TEST_F(UserListsTest, copiesOfBuiltInSmartFoldersInAnOldFileTakeNoPart) {
    const auto own = [](const char* name) {
        SmartFolder folder = SmartFolders::make({}, name, "pdfs", SearchScopeSetting::home);
        folder.builtIn = true;  // What a file says of that counts for nothing.
        return folder;
    };
    SmartFolder copy = SmartFolder::builtIns()[1];
    copy.name = "Mine";
    std::vector<SmartFolder> stored = {own("a"), copy, own("b")};
    const auto shown = [&stored] {
        std::vector<std::string> names;
        for (const SmartFolder& folder : SmartFolders::merged(stored))
            if (!folder.builtIn) names.push_back(folder.name);
        return names;
    };
    EXPECT_THAT(shown(), ElementsAre("a", "b"));
    EXPECT_EQ(SmartFolders::merged(stored).size(), SmartFolder::builtIns().size() + 2);
    copy.query = "images";
    SmartFolders::change(stored, copy);
    EXPECT_EQ(stored[1].query, SmartFolder::builtIns()[1].query);
    SmartFolders::move(stored, stored[2].id, 0);
    EXPECT_THAT(shown(), ElementsAre("b", "a"));
}

TEST_F(UserListsTest, aNameThatTwoProcessesTakeAtOnceIsGivenToBoth) {
    UserLists window;
    UserLists other;
    other.addSmartFolder("Bills", "pdfs", SearchScopeSetting::home);
    other.flush();
    // The window has not looked at the file since.
    window.addSmartFolder("bills", "images", SearchScopeSetting::home);
    window.flush();
    EXPECT_THAT(names(UserLists()),
                ElementsAre("Large Files", "Screenshots", "Installers", "Bills", "bills 2"));
}

TEST_F(UserListsTest, aWorkspaceTakesThePlaceOfTheOneOfItsName) {
    UserLists lists;
    const UUID taxes = lists.saveWorkspace("Taxes", {tab("/a"), tab("/b")});
    lists.saveWorkspace("Home", {tab("/c")});
    EXPECT_EQ(lists.saveWorkspace(" taxes", {tab("/d")}), taxes);
    ASSERT_EQ(lists.workspaces().size(), 2u);
    EXPECT_EQ(lists.workspaces()[0].name, "taxes");
    EXPECT_THAT(lists.workspaces()[0].tabs, ElementsAre(tab("/d")));
    EXPECT_EQ(refusal([&] { lists.saveWorkspace("", {tab("/d")}); }), ListError::Reason::emptyName);
    EXPECT_EQ(refusal([&] { lists.renameWorkspace(taxes, "HOME"); }), ListError::Reason::nameTaken);
    lists.renameWorkspace(taxes, "Taxes 2026");
    EXPECT_EQ(lists.workspaceNamed("taxes 2026")->id, taxes);
    lists.removeWorkspace(taxes);
    EXPECT_EQ(lists.workspace(taxes), nullptr);
}

TEST_F(UserListsTest, theLatestServersAreKept) {
    UserLists lists;
    for (int i = 0; i < 25; ++i) lists.rememberServer("smb://nas/" + std::to_string(i));
    lists.rememberServer(" smb://nas/20 ");
    lists.rememberServer("");
    ASSERT_EQ(lists.servers().size(), 20u);
    EXPECT_EQ(lists.servers()[0], "smb://nas/20");
    EXPECT_EQ(lists.servers()[1], "smb://nas/24");
    lists.forgetServer("smb://nas/20");
    EXPECT_EQ(lists.servers()[0], "smb://nas/24");

    const URL odd = URL::fromPath("/srv/\xff");
    lists.exclude(odd);
    lists.flush();
    EXPECT_TRUE(UserLists().isExcluded(odd));
    lists.include(odd);
    EXPECT_FALSE(lists.isExcluded(odd));
}

TEST_F(UserListsTest, whatAnotherProcessChangesShows) {
    AppModel app;
    app.startBackgroundServices(false);
    const QSignalSpy settings(&app, &AppModel::settingsChanged);
    const QSignalSpy favorites(&app.lists(), &UserLists::favoritesChanged);
    const QSignalSpy folders(&app.lists(), &UserLists::smartFoldersChanged);

    auto terminal = UserStores::settings();
    terminal.update([](AppSettings& all) { all.foldersFirst = false; });
    UserLists other;
    other.addFavorite(URL::fromPath("/srv"));
    other.addSmartFolder("Bills", "pdfs", SearchScopeSetting::home);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            return !app.settings().foldersFirst && app.lists().favorites().size() == 1 &&
                   app.lists().smartFolders().size() == 4;
        },
        10'000));
    EXPECT_EQ(settings.count(), 1);
    EXPECT_EQ(favorites.count(), 1);
    EXPECT_EQ(folders.count(), 1);
}

TEST_F(UserListsTest, aSettingThatAnotherProcessChangedIsNotTakenBack) {
    AppModel app;
    auto terminal = UserStores::settings();
    terminal.update([](AppSettings& all) {
        all.defaultView = ViewMode::list;
        all.cleanup.videoMB = 7;
        all.shortcutOverrides["go.up"] = {"u", true, false, false, false};
    });
    terminal.flush();
    AppSettings before = app.settings();
    before.shortcutOverrides["home"] = {"h", true, false, false, false};
    EXPECT_EQ(AppSettings::rebased(before, app.settings(), before), app.settings())
        << "what was taken away stays away";
    AppSettings mine = app.settings();
    mine.foldersFirst = false;
    mine.cleanup.videoDays = 8;
    mine.shortcutOverrides["search"] = {"s", true, false, false, false};
    app.setSettings(mine);
    app.flush();
    const AppSettings stored = UserStores::settings().value();
    EXPECT_EQ(stored.defaultView, ViewMode::list);
    EXPECT_FALSE(stored.foldersFirst);
    EXPECT_EQ(stored.cleanup.videoMB, 7);
    EXPECT_EQ(stored.cleanup.videoDays, 8);
    EXPECT_EQ(stored.shortcutOverrides.size(), 2u);
}

TEST_F(UserListsTest, whatIsDamagedOrNewerStaysInTheFile) {
    const JSON stored = JSON::parse(R"([
        "nonsense",
        {"id": "00000000-0000-4000-8000-000000000001", "path": "/a", "colour": "red"},
        {"id": "00000000-0000-4000-8000-000000000002", "path": 5},
        {"path": "/b"},
        {"id": "00000000-0000-4000-8000-000000000003"},
        {"id": "00000000-0000-4000-8000-000000000004", "path": "/c", "future": [1]}
    ])");
    auto list = stored.get<StoredList<Favorite>>();
    ASSERT_EQ(list.records.size(), 3u);
    EXPECT_EQ(JSON(list), stored) << "unchanged as it was";

    const UUID b = list.records[1].id;
    EXPECT_NE(b, UUID());
    EXPECT_EQ(stored.get<StoredList<Favorite>>().records[1].id, b) << "the same in every process";
    NamedRecords::move(list.records, list.records[2].id, 0);
    Favorites::rename(list.records, list.records[1].id, "Name");
    Favorites::remove(list.records, b);
    EXPECT_EQ(JSON(list), JSON::parse(R"([
        "nonsense",
        {"id": "00000000-0000-4000-8000-000000000004", "path": "/c", "future": [1]},
        {"id": "00000000-0000-4000-8000-000000000001", "path": "/a", "colour": "red",
         "displayName": "Name"},
        {"id": "00000000-0000-4000-8000-000000000002", "path": 5},
        {"id": "00000000-0000-4000-8000-000000000003"}
    ])"));
    EXPECT_ANY_THROW(JSON::object().get<StoredList<Favorite>>());
}

TEST_F(UserListsTest, aWorkspaceOfANewerVersionIsLeftAlone) {
    const JSON stored = JSON::parse(R"([{"id": "00000000-0000-4000-8000-000000000001",
        "name": "Later", "savedAt": 1, "tabs": [{"panes": [{"location": {"moon": {}}}]}]}])");
    auto list = stored.get<StoredList<Workspace>>();
    EXPECT_TRUE(list.records.empty());
    list.records.push_back({UUID::random(), "Now", {tab("/a")}, Date{}});
    const JSON written = list;
    ASSERT_EQ(written.size(), 2u);
    EXPECT_EQ(written[0], stored[0]);
}

}  // namespace
}  // namespace tarn
