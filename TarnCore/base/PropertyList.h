#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Binary property lists ("bplist00"), as far as file attributes use them: an array of strings.
/// Format: an 8-byte header, objects, a table of offsets, and a 32-byte trailer, all big-endian.
namespace tarn::PropertyList {

/// The strings of a top-level array, in UTF-8; members that are not strings are skipped. Absent
/// when the bytes are not a binary property list with an array at its top. Never throws and never
/// reads outside `bytes`, whatever they are.
std::optional<std::vector<std::string>> stringArray(std::string_view bytes);

/// The binary property list of an array of strings: ASCII strings as such, others as UTF-16.
std::string encode(const std::vector<std::string>& strings);

}  // namespace tarn::PropertyList
