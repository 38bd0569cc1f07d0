#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The tags of a file as they are stored with it.
///
/// The attribute "com.apple.metadata:_kMDItemUserTags" holds a binary property list: an array of
/// strings, one per tag in the file's order, each the name, a line feed and a colour number from 0
/// to 7 ("Work\n4"). A string without a line feed, or with anything else behind it, is all name.
/// Programs of the desktop keep the plain names in "xdg.tags", with commas between them.
namespace tarn::TagAttribute {

inline constexpr std::string_view attribute = "com.apple.metadata:_kMDItemUserTags";
inline constexpr std::string_view mirrorAttribute = "xdg.tags";

/// The stored strings, name and colour together. Absent when the bytes are not such a list.
std::optional<std::vector<std::string>> decode(std::string_view bytes);

/// The bytes of the attribute for stored strings.
std::string encode(const std::vector<std::string>& stored);

/// The tag's name out of a stored string.
std::string name(std::string_view stored);
/// The number of its colour, 0 to 7; absent for a tag that is stored by its name alone.
std::optional<int> color(std::string_view stored);

/// The names in the mirror; blanks around them and empty ones do not count.
std::vector<std::string> mirrorNames(std::string_view value);

/// The mirror for stored strings. A name that holds a comma has no place in it. Names in the old
/// mirror that `before`, the stored strings until now, does not know are other programs' and stay.
std::string mirror(const std::vector<std::string>& stored, const std::vector<std::string>& before,
                   std::string_view oldMirror);

/// The names to show for a file with these two values; the mirror counts only when the first is
/// missing or broken.
std::vector<std::string> names(const std::optional<std::string>& value,
                               const std::optional<std::string>& mirror);

}  // namespace tarn::TagAttribute
