#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Tarn/model/records/AppSettings.h"
#include "TarnCore/base/JSON.h"

/// The settings one by one, by their keys: "foldersFirst", and "cleanup.installerDays" for a
/// member of a group.
namespace tarn::SettingsKeys {

/// One of AppSettings::keys(), or a group of them ("cleanup").
bool exists(std::string_view key);

/// Absent for a key that does not exist, and for a value that is not set.
std::optional<JSON> value(const AppSettings& settings, std::string_view key);

/// What a value of the key looks like, after “takes”: "true or false", "a whole number",
/// "grid or list".
std::string form(std::string_view key);

/// Null takes an optional value away. False when the value is of another type or out of its range;
/// `settings` is then as it was. Of a group, the members given are set and the others stay.
bool set(AppSettings& settings, std::string_view key, const JSON& value);
/// To the default. Does nothing for a key that does not exist.
void reset(AppSettings& settings, std::string_view key);

}  // namespace tarn::SettingsKeys
