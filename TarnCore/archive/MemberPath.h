#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Paths of members, as archives write them.
namespace tarn::MemberPath {

/// Without empty names, "." and slashes at the ends, so that an absolute path becomes a relative
/// one; cut at a NUL, which no name can hold. "" for the top itself.
std::string cleaned(std::string_view path);

/// It is so already.
bool isClean(std::string_view path);

/// A name on the way is "..".
bool leadsOut(std::string_view cleaned);

/// What some systems add for themselves: everything below "__MACOSX", and ".DS_Store" files.
bool isJunk(std::string_view cleaned);

/// Below it, or the member itself.
bool isInside(std::string_view cleaned, std::string_view folder);

}  // namespace tarn::MemberPath
