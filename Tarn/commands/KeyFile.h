#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

/// Files of groups and keys: desktop entries, and the lists of who opens what (Desktop Entry
/// Specification 1.5). Pure; nothing fails.
namespace tarn::KeyFile {

using Group = std::map<std::string, std::string, std::less<>>;

/// The keys of one group.
Group group(std::string_view text, std::string_view name);
/// Empty when it is not there.
std::string value(const Group& keys, std::string_view key);

/// The text with the key set in the group, or taken out of it: in its line, in a new one behind the
/// last of the group, or in a new group at the end. Everything else stays byte for byte.
std::string with(std::string_view text, std::string_view group, std::string_view key,
                 const std::optional<std::string>& value);

}  // namespace tarn::KeyFile
