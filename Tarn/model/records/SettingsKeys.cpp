#include "Tarn/model/records/SettingsKeys.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "TarnCore/base/Text.h"

namespace tarn::SettingsKeys {
namespace {

constexpr std::string_view thresholds = "cleanup";

/// What the type of a value alone does not say.
struct Rule {
    std::string_view key;
    std::string_view words{};  ///< "grid or list", where only some words are allowed.
    double smallest = 0;
    double largest = std::numeric_limits<double>::infinity();
};

constexpr Rule rules[] = {
    {"defaultView", "grid or list"},
    {"defaultSearchScope", "currentFolder, home or thisMac"},
    {"copyPathFormat", "full, tilde, quoted or fileURL"},
    {"appearance", "system, light or dark"},
    {"lookAlikeMatch", {}, 0, 100},
    {"lastUpdateCheck", {}, -std::numeric_limits<double>::infinity()},
};

const Rule& rule(std::string_view key) {
    static constexpr Rule plain;
    const auto found = std::ranges::find(rules, key, &Rule::key);
    return found == std::end(rules) ? plain : *found;
}

bool isValueKey(std::string_view key) {
    static const std::vector<std::string> keys = AppSettings::keys();
    return std::ranges::find(keys, key) != keys.end();
}

/// "cleanup.videoMB" as "/cleanup/videoMB".
JSON::json_pointer pointer(std::string_view key) {
    return JSON::json_pointer("/" + Text::replacing(key, ".", "/"));
}

/// Every key has a value in it.
const JSON& example() {
    static const JSON json = [] {
        AppSettings settings;
        settings.lastUpdateCheck = Date{};
        settings.skippedUpdateVersion = "";
        return JSON(settings);
    }();
    return json;
}

bool isOptional(std::string_view key) { return !JSON(AppSettings()).contains(pointer(key)); }

bool setOne(JSON& record, const std::string& key, const JSON& value) {
    if (!isValueKey(key)) return false;
    const auto place = pointer(key);
    if (value.is_null() && isOptional(key)) {
        record.erase(key);
        return true;
    }
    const Rule& allowed = rule(key);
    if (value.is_number() &&
        (value.get<double>() < allowed.smallest || value.get<double>() > allowed.largest))
        return false;
    JSON changed = record;
    changed[place] = value;
    // What comes back the same was understood: its type, its range and its words.
    const JSON understood = changed.get<AppSettings>();
    if (!understood.contains(place) || understood[place] != value) return false;
    record[place] = value;
    return true;
}

}  // namespace

bool exists(std::string_view key) { return key == thresholds || isValueKey(key); }

std::optional<JSON> value(const AppSettings& settings, std::string_view key) {
    if (!exists(key)) return std::nullopt;
    const JSON record = settings;
    const auto place = pointer(key);
    return record.contains(place) ? std::optional(record[place]) : std::nullopt;
}

std::string form(std::string_view key) {
    if (!exists(key)) return {};
    const Rule& allowed = rule(key);
    if (!allowed.words.empty()) return std::string(allowed.words);
    const JSON& value = example()[pointer(key)];
    if (value.is_boolean()) return "true or false";
    if (value.is_string()) return "a text";
    if (value.is_array()) return "a list of texts such as [\"~/Documents\"]";
    if (value.is_object())
        return key == thresholds ? "an object of its members"
                                 : "an object of shortcuts by their commands";
    std::string text = value.is_number_float() ? "a number" : "a whole number";
    if (allowed.largest <= 100) return text + " from 0 to 100";
    return allowed.smallest == 0 ? text + " that is not negative" : text;
}

bool set(AppSettings& settings, std::string_view key, const JSON& value) {
    JSON record = settings;
    if (key == thresholds) {
        if (!value.is_object()) return false;
        for (const auto& [name, member] : value.items())
            if (!setOne(record, std::string(thresholds) + "." + name, member)) return false;
    } else if (!setOne(record, std::string(key), value)) {
        return false;
    }
    settings = record.get<AppSettings>();
    return true;
}

void reset(AppSettings& settings, std::string_view key) {
    if (!exists(key)) return;
    JSON record = settings;
    const JSON defaults = AppSettings();
    const auto place = pointer(key);
    if (defaults.contains(place))
        record[place] = defaults[place];
    else
        record.erase(std::string(key));
    settings = record.get<AppSettings>();
}

}  // namespace tarn::SettingsKeys
