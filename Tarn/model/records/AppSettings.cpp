#include "Tarn/model/records/AppSettings.h"

#include <array>
#include <exception>
#include <string_view>
#include <utility>

#include "TarnCore/base/JSONFields.h"

namespace tarn {
namespace {

/// In the order of the enumerations.
constexpr std::array<std::string_view, 4> pathFormats = {"full", "tilde", "quoted", "fileURL"};
constexpr std::array<std::string_view, 3> appearances = {"system", "light", "dark"};

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
    field("restoreWindows", settings.restoreWindows);
    field("appearance", settings.appearance);
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
    void operator()(const char* key, const Appearance& appearance) {
        json[key] = std::string(appearances[static_cast<std::size_t>(appearance)]);
    }
};

/// What cannot be read leaves the default: one mistaken value shall not cost all the others.
struct Reader {
    const JSON& json;
    template <class Value>
    void operator()(const char* key, Value& value) {
        Value read = value;
        try {
            JSONFields::read(json, key, read);
        } catch (const std::exception&) {  // The library's exceptions, and those of the records.
            return;
        }
        value = std::move(read);
    }
    void operator()(const char* key, CopyPathFormat& format) { readWord(key, format, pathFormats); }
    void operator()(const char* key, Appearance& appearance) {
        readWord(key, appearance, appearances);
    }

private:
    template <class Enumeration, std::size_t count>
    void readWord(const char* key, Enumeration& value,
                  const std::array<std::string_view, count>& words) {
        std::string raw;
        (*this)(key, raw);
        for (std::size_t i = 0; i < count; ++i)
            if (words[i] == raw) value = static_cast<Enumeration>(i);
    }
};

struct KeyList {
    std::vector<std::string>& keys;
    std::string prefix;
    template <class Value>
    void operator()(const char* key, const Value&) {
        keys.push_back(prefix + key);
    }
    void operator()(const char* key, const CleanupThresholds& thresholds) {
        eachField(thresholds, KeyList{keys, prefix + key + "."});
    }
};

/// Carries the members that changed from `before` to `after` over to `onto`, down to `depth` levels
/// of objects.
void carryChanges(const JSON& before, const JSON& after, JSON& onto, int depth) {
    for (const auto& [key, value] : after.items()) {
        const auto old = before.find(key);
        if (old != before.end() && *old == value) continue;
        const bool goesDeeper = depth > 0 && old != before.end() && old->is_object() &&
                                value.is_object() && onto.contains(key) && onto[key].is_object();
        if (goesDeeper)
            carryChanges(*old, value, onto[key], depth - 1);
        else
            onto[key] = value;
    }
    for (const auto& [key, value] : before.items())
        if (!after.contains(key)) onto.erase(key);
}

}  // namespace

void to_json(JSON& json, const CleanupThresholds& thresholds) {
    json = JSON::object();
    eachField(thresholds, Writer{json});
}

void from_json(const JSON& json, CleanupThresholds& thresholds) {
    static_cast<void>(json.get_ref<const JSON::object_t&>());
    eachField(thresholds, Reader{json});
}

void to_json(JSON& json, const AppSettings& settings) {
    json = JSON::object();
    eachField(settings, Writer{json});
}

void from_json(const JSON& json, AppSettings& settings) {
    static_cast<void>(json.get_ref<const JSON::object_t&>());
    AppSettings read;
    eachField(read, Reader{json});
    settings = std::move(read);
}

std::vector<std::string> AppSettings::keys() {
    std::vector<std::string> keys;
    const AppSettings settings;
    eachField(settings, KeyList{keys, {}});
    return keys;
}

AppSettings AppSettings::rebased(const AppSettings& before, const AppSettings& after,
                                 const AppSettings& onto) {
    JSON merged = onto;
    carryChanges(before, after, merged, 1);
    return merged.get<AppSettings>();
}

}  // namespace tarn
