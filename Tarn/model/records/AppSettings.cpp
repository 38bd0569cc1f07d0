#include "Tarn/model/records/AppSettings.h"

#include <array>
#include <string_view>

#include "TarnCore/base/JSONFields.h"

namespace tarn {
namespace {

/// In the order of the enumeration.
constexpr std::array<std::string_view, 4> pathFormats = {"full", "tilde", "quoted", "fileURL"};

/// Calls `field(key, member)` for every field: the one list of what is stored.
template <class Thresholds, class Field>
void eachField(Thresholds& thresholds, Field&& field) requires
    std::is_same_v<std::remove_const_t<Thresholds>, CleanupThresholds> {
    field("installerDays", thresholds.installerDays);
    field("downloadsDays", thresholds.downloadsDays);
    field("screenshotDays", thresholds.screenshotDays);
    field("videoMB", thresholds.videoMB);
    field("videoDays", thresholds.videoDays);
    field("appDays", thresholds.appDays);
    field("largeFileGB", thresholds.largeFileGB);
}

template <class Settings, class Field>
void eachField(Settings& settings,
               Field&& field) requires std::is_same_v<std::remove_const_t<Settings>, AppSettings> {
    field("returnOpens", settings.returnOpens);
    field("defaultView", settings.defaultView);
    field("foldersFirst", settings.foldersFirst);
    field("showFolderSizes", settings.showFolderSizes);
    field("defaultSearchScope", settings.defaultSearchScope);
    field("copyPathFormat", settings.copyPathFormat);
    field("terminalApp", settings.terminalApp);
    field("editorApp", settings.editorApp);
    field("showHiddenByDefault", settings.showHiddenByDefault);
    field("cleanup", settings.cleanup);
    field("readTextInImages", settings.readTextInImages);
    field("useAppleIntelligence", settings.useAppleIntelligence);
    field("indexFileContents", settings.indexFileContents);
    field("indexFolders", settings.indexFolders);
    field("indexExcludedFolders", settings.indexExcludedFolders);
    field("ocrLanguages", settings.ocrLanguages);
    field("indexBudgetMB", settings.indexBudgetMB);
    field("smartRenameDownloads", settings.smartRenameDownloads);
    field("quickSearchEnabled", settings.quickSearchEnabled);
    field("quickSearchKeyCode", settings.quickSearchKeyCode);
    field("quickSearchModifiers", settings.quickSearchModifiers);
    field("shortcutDefaultsVersion", settings.shortcutDefaultsVersion);
    field("openAtLogin", settings.openAtLogin);
    field("shortcutOverrides", settings.shortcutOverrides);
    field("findLookAlikes", settings.findLookAlikes);
    field("lookAlikeMatch", settings.lookAlikeMatch);
    field("imageSearch", settings.imageSearch);
    field("fetchWebsiteIcons", settings.fetchWebsiteIcons);
    field("duplicateFolders", settings.duplicateFolders);
    field("showMenuBarIcon", settings.showMenuBarIcon);
    field("checkForUpdates", settings.checkForUpdates);
    field("installUpdatesAutomatically", settings.installUpdatesAutomatically);
    field("lastUpdateCheck", settings.lastUpdateCheck);
    field("skippedUpdateVersion", settings.skippedUpdateVersion);
    field("rulesInBackground", settings.rulesInBackground);
    field("hasOnboarded", settings.hasOnboarded);
    field("onboardingPage", settings.onboardingPage);
}

struct Writer {
    JSON& json;
    template <class Value>
    void operator()(const char* key, const Value& value) {
        json[key] = value;
    }
    template <class Value>
    void operator()(const char* key, const std::optional<Value>& value) {
        JSONFields::write(json, key, value);
    }
    void operator()(const char* key, const CopyPathFormat& format) {
        json[key] = std::string(pathFormats[static_cast<std::size_t>(format)]);
    }
};

struct Reader {
    const JSON& json;
    template <class Value>
    void operator()(const char* key, Value& value) {
        JSONFields::read(json, key, value);
    }
    void operator()(const char* key, CopyPathFormat& format) {
        std::string raw;
        (*this)(key, raw);
        for (std::size_t i = 0; i < pathFormats.size(); ++i) {
            if (pathFormats[i] == raw) format = static_cast<CopyPathFormat>(i);
        }
    }
};

}  // namespace

void to_json(JSON& json, const CleanupThresholds& thresholds) {
    json = JSON::object();
    eachField(thresholds, Writer{json});
}

void from_json(const JSON& json, CleanupThresholds& thresholds) {
    eachField(thresholds, Reader{json});
}

void to_json(JSON& json, const AppSettings& settings) {
    json = JSON::object();
    eachField(settings, Writer{json});
}

void from_json(const JSON& json, AppSettings& settings) {
    AppSettings read;
    eachField(read, Reader{json});
    settings = std::move(read);
}

}  // namespace tarn
