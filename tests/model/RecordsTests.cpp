#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Tarn/model/records/AppSettings.h"
#include "Tarn/model/records/Favorite.h"
#include "Tarn/model/records/FolderViewPrefs.h"
#include "Tarn/model/records/IndexSettings.h"
#include "Tarn/model/records/Location.h"
#include "Tarn/model/records/SessionState.h"
#include "Tarn/model/records/SettingsKeys.h"
#include "Tarn/model/records/SmartFolder.h"
#include "Tarn/model/records/Workspace.h"
#include "TarnCore/base/Error.h"
#include "TarnCore/files/JSONStore.h"

namespace tarn {
namespace {

TEST(IndexSettings, foldersAreStoredWithTheHomeFolderLeftOpen) {
    const URL home = Paths::home();
    const URL odd = URL::fromPath("/media/\xff");
    AppSettings settings;
    EXPECT_EQ(IndexSettings::of(settings).folders, std::vector{home});
    IndexSettings::add(settings, home.appending("Documents"));
    IndexSettings::add(settings, odd);
    IndexSettings::add(settings, odd);
    EXPECT_EQ(settings.indexFolders,
              (std::vector<std::string>{"~", "~/Documents", "file:///media/%FF"}));
    // What lies in another is read with it.
    EXPECT_EQ(IndexSettings::of(settings).folders, (std::vector{home, odd}));
    // Taking it away alone would change nothing.
    IndexSettings::remove(settings, home.appending("Documents"));
    EXPECT_EQ(IndexSettings::of(settings).excluded, std::vector{home.appending("Documents")});
    IndexSettings::remove(settings, odd);
    EXPECT_EQ(settings.indexFolders, std::vector<std::string>{"~"});
    IndexSettings::add(settings, home.appending("Documents"));
    EXPECT_TRUE(settings.indexExcludedFolders.empty());
    settings.indexBudgetMB = -1;
    EXPECT_EQ(IndexSettings::of(settings).mostBytesOnDisk, 0);
}

TEST(Records, locationsComeBackFromTheirStoredForm) {
    const struct {
        Location location;
        const char* stored;
    } cases[] = {
        {Location::folder(URL::fromPath("/home/ann/A b")),
         R"({"folder":{"_0":"file:///home/ann/A%20b"}})"},
        {Location::folder(URL::fromPath("/x/\xff")), R"({"folder":{"_0":"file:///x/%FF"}})"},
        {Location::library(LibraryItem::recents), R"({"library":{"_0":"recents"}})"},
        {Location::smartFolder(*UUID::parse("7A2D0000-0000-0000-0000-000000000002")),
         R"({"smartFolder":{"_0":"7A2D0000-0000-0000-0000-000000000002"}})"},
        {Location::tag("Red"), R"({"tag":{"_0":"Red"}})"},
        {Location::archive(URL::fromPath("/a.zip"), "docs/old"),
         R"({"archive":{"_0":"file:///a.zip","_1":"docs/old"}})"},
        {Location::source("Gmail"), R"({"source":{"_0":"Gmail"}})"},
        {Location::home(), R"({"home":{}})"},
        {Location::cleanup(), R"({"cleanup":{}})"},
        {Location::duplicates(), R"({"duplicates":{}})"},
        {Location::sources(), R"({"sources":{}})"},
        {Location::tags(), R"({"tags":{}})"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored);
        EXPECT_EQ(JSON(c.location).dump(), c.stored);
        EXPECT_EQ(JSON::parse(c.stored).get<Location>(), c.location);
        EXPECT_EQ(std::hash<Location>{}(JSON::parse(c.stored).get<Location>()),
                  std::hash<Location>{}(c.location));
    }
}

TEST(Records, unknownPlacesAreRefused) {
    for (const char* stored : {R"({"moon":{}})", R"({})", R"([])", R"({"home":{},"tags":{}})",
                               R"({"library":{"_0":"games"}})", R"({"folder":{}})"}) {
        SCOPED_TRACE(stored);
        EXPECT_ANY_THROW(JSON::parse(stored).get<Location>());
    }
}

TEST(Records, canonicalPlacesCompareEqual) {
    EXPECT_EQ(Location::archive(URL::fromPath("/a.zip"), "/docs/").canonical(),
              Location::archive(URL::fromPath("/a.zip"), "docs"));
    Location home = Location::home();
    home.text = "left over";
    EXPECT_EQ(home.canonical(), Location::home());
    EXPECT_NE(Location::folder(URL::fromPath("/a")).canonical(),
              Location::folder(URL::fromPath("/b")).canonical());
}

TEST(Records, freshSettingsHoldTheDefaults) {
    const JSON stored = AppSettings();
    const JSON expected = JSON::parse(R"({
        "returnOpens": true, "defaultView": "grid", "foldersFirst": true, "showFolderSizes": true,
        "defaultSearchScope": "currentFolder", "copyPathFormat": "full",
        "terminalApp": "com.apple.Terminal", "editorApp": "com.microsoft.VSCode",
        "showHiddenByDefault": false,
        "cleanup": {"installerDays": 7, "downloadsDays": 90, "screenshotDays": 30, "videoMB": 200,
                    "videoDays": 180, "appDays": 180, "largeFileGB": 1.0},
        "readTextInImages": true, "useAppleIntelligence": true, "indexFileContents": true,
        "indexFolders": ["~"], "indexExcludedFolders": [], "ocrLanguages": ["en-US"],
        "indexBudgetMB": 2000,
        "smartRenameDownloads": true, "quickSearchEnabled": true, "quickSearchKeyCode": 49,
        "quickSearchModifiers": 4608, "shortcutDefaultsVersion": 2, "openAtLogin": false,
        "shortcutOverrides": {}, "findLookAlikes": false, "lookAlikeMatch": 95.0,
        "imageSearch": true, "fetchWebsiteIcons": true, "duplicateFolders": [],
        "showMenuBarIcon": false, "checkForUpdates": true, "installUpdatesAutomatically": true,
        "rulesInBackground": false, "hasOnboarded": false, "onboardingPage": 0,
        "restoreWindows": true, "appearance": "system"})");
    EXPECT_EQ(stored, expected);
    EXPECT_EQ(JSON::object().get<AppSettings>(), AppSettings());
}

TEST(Records, settingsOfOtherVersionsAreRead) {
    const auto settings = JSON::parse(R"({"defaultView": "list", "copyPathFormat": "tilde",
        "defaultSearchScope": "galaxy", "cleanup": {"videoMB": 5}, "lastUpdateCheck": 12.5,
        "shortcutOverrides": {"search": {"key": "k", "command": true}}, "fromTheFuture": [1]})")
                              .get<AppSettings>();
    EXPECT_EQ(settings.defaultView, ViewMode::list);
    EXPECT_EQ(settings.copyPathFormat, CopyPathFormat::tilde);
    EXPECT_EQ(settings.defaultSearchScope, SearchScopeSetting::currentFolder);
    EXPECT_EQ(settings.cleanup.videoMB, 5);
    EXPECT_EQ(settings.cleanup.appDays, 180);
    EXPECT_EQ(settings.lastUpdateCheck, Date{12.5});
    EXPECT_EQ(settings.shortcutOverrides.at("search"), (Shortcut{"k", true, false, false, false}));
    EXPECT_EQ(JSON(settings).get<AppSettings>(), settings);
}

TEST(Records, oneMistakenSettingCostsNoOther) {
    const auto settings = JSON::parse(R"({"returnOpens": "no", "foldersFirst": false,
        "cleanup": {"videoMB": "big", "videoDays": 3}, "appearance": "dark",
        "shortcutOverrides": 7, "lastUpdateCheck": "yesterday"})")
                              .get<AppSettings>();
    AppSettings expected;
    expected.foldersFirst = false;
    expected.cleanup.videoDays = 3;
    expected.appearance = Appearance::dark;
    EXPECT_EQ(settings, expected);
    EXPECT_ANY_THROW(JSON::parse("[]").get<AppSettings>());
}

TEST(Records, everySettingCanBeReadAndSetByItsKey) {
    AppSettings full;
    full.lastUpdateCheck = Date{1};
    full.skippedUpdateVersion = "2";
    AppSettings copy;
    for (const std::string& key : AppSettings::keys()) {
        SCOPED_TRACE(key);
        const auto value = SettingsKeys::value(full, key);
        ASSERT_TRUE(value);
        EXPECT_TRUE(SettingsKeys::set(copy, key, *value));
        EXPECT_FALSE(SettingsKeys::form(key).empty());
        // No setting takes a list of numbers.
        EXPECT_FALSE(SettingsKeys::set(copy, key, JSON::array({1})));
    }
    EXPECT_EQ(copy, full);
    for (const std::string& key : AppSettings::keys()) SettingsKeys::reset(copy, key);
    EXPECT_EQ(copy, AppSettings());
    for (const char* key : {"", ".", "cleanup.", "cleanup.videoMB.x", "ocrLanguages.0", "Cleanup"})
        EXPECT_FALSE(SettingsKeys::exists(key)) << key;
}

TEST(Records, sessionsComeBackWhole) {
    WindowSnapshot window;
    window.panes = {{Location::archive(URL::fromPath("/a.zip"), "in"), ViewMode::list},
                    {Location::smartFolder(SmartFolder::builtIns().front().id), std::nullopt}};
    window.activePane = 1;
    window.showSidebar = false;
    const SessionState session{{{window, {}}, {}}};
    EXPECT_EQ(JSON(session).get<SessionState>(), session);
    const Workspace workspace{UUID::random(), "Taxes", {window}, Date{7e8}};
    EXPECT_EQ(JSON(workspace).get<Workspace>(), workspace);
}

TEST(Records, foldersAndFavoritesComeBackWhole) {
    const FolderViewPrefs prefs{
        ViewMode::list, {SortField::size, false, false}, 64, GroupField::kind};
    EXPECT_EQ(JSON(prefs).get<FolderViewPrefs>(), prefs);
    EXPECT_EQ(JSON(FolderViewPrefs()).get<FolderViewPrefs>(), FolderViewPrefs());
    const Favorite favorite{UUID::random(), "/srv/shared", "Shared"};
    EXPECT_EQ(JSON(favorite).get<Favorite>(), favorite);
    EXPECT_FALSE(JSON(Favorite()).contains("displayName"));
    for (const SmartFolder& folder : SmartFolder::builtIns())
        EXPECT_EQ(JSON(folder).get<SmartFolder>(), folder);
}

}  // namespace
}  // namespace tarn
