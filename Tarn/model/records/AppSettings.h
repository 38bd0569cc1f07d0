#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Tarn/model/records/Shortcut.h"
#include "Tarn/model/records/ViewMode.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/files/Paths.h"

namespace tarn {

/// From when on something is worth suggesting for cleaning up. Days, decimal megabytes and
/// gigabytes.
struct CleanupThresholds {
    int installerDays = 7;
    int downloadsDays = 90;
    int screenshotDays = 30;
    int videoMB = 200;
    int videoDays = 180;
    int appDays = 180;
    double largeFileGB = 1.0;
    bool operator==(const CleanupThresholds&) const = default;
};

void to_json(JSON& json, const CleanupThresholds& thresholds);
void from_json(const JSON& json, CleanupThresholds& thresholds);

/// How the window is coloured.
enum class Appearance { system, light, dark };

/// The user's settings, "settings.json". Keys are the field names.
///
/// Missing keys, and values that this version cannot read, take the defaults below. The store
/// leaves such values and keys of newer versions as they stand, so that an older program next to a
/// newer one loses nothing.
struct AppSettings {
    bool returnOpens = true;  ///< Return opens; otherwise it renames.
    ViewMode defaultView = ViewMode::grid;
    bool foldersFirst = true;
    bool showFolderSizes = true;
    SearchScopeSetting defaultSearchScope = SearchScopeSetting::currentFolder;
    CopyPathFormat copyPathFormat = CopyPathFormat::full;
    std::string terminalApp = "com.apple.Terminal";
    std::string editorApp = "com.microsoft.VSCode";
    bool showHiddenByDefault = false;
    CleanupThresholds cleanup;
    bool readTextInImages = true;
    bool useAppleIntelligence = true;
    bool indexFileContents = true;
    /// Whose files' texts are indexed; IndexSettings reads them. Paths, "~" standing for the home
    /// folder at the start of one.
    std::vector<std::string> indexFolders = {"~"};
    std::vector<std::string> indexExcludedFolders;   ///< Folders in them that are left out.
    std::vector<std::string> ocrLanguages{"en-US"};  ///< Of recognition, BCP 47.
    std::int64_t indexBudgetMB = 2000;  ///< Decimal megabytes on the disk; 0: no limit.
    bool smartRenameDownloads = true;
    bool quickSearchEnabled = true;
    std::uint32_t quickSearchKeyCode = 49;        ///< The space bar.
    std::uint32_t quickSearchModifiers = 0x1200;  ///< Shift and Control.
    int shortcutDefaultsVersion = 2;
    bool openAtLogin = false;
    std::map<std::string, Shortcut> shortcutOverrides;  ///< By command id.
    bool findLookAlikes = false;
    double lookAlikeMatch = 95.0;  ///< Percent.
    bool imageSearch = true;
    bool fetchWebsiteIcons = true;
    std::vector<std::string> duplicateFolders;  ///< Paths.
    bool showMenuBarIcon = false;
    bool checkForUpdates = true;
    bool installUpdatesAutomatically = true;
    std::optional<Date> lastUpdateCheck;
    std::optional<std::string> skippedUpdateVersion;
    bool rulesInBackground = false;
    bool hasOnboarded = false;
    int onboardingPage = 0;
    bool restoreWindows = true;  ///< The first window of a start brings back those of the last.
    Appearance appearance = Appearance::system;

    bool operator==(const AppSettings&) const = default;

    /// In the order of the record; of a group its members: "cleanup.installerDays".
    static std::vector<std::string> keys();

    /// `onto` with what `after` has otherwise than `before`: a change that was made on another
    /// state of the settings than the present one. Thresholds and shortcuts count one by one.
    static AppSettings rebased(const AppSettings& before, const AppSettings& after,
                               const AppSettings& onto);
};

void to_json(JSON& json, const AppSettings& settings);
void from_json(const JSON& json, AppSettings& settings);

}  // namespace tarn
