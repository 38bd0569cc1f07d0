#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "TarnCore/rename/RenameRule.h"

/// What rules do to names whose characters are all below the combining marks: each is one that
/// people count, and changes for itself whatever stands beside it. Most names are such, and worked
/// on as bytes they cost a tenth of what ICU takes.
namespace tarn::SimpleNames {

inline constexpr char32_t bound = 0x300;

/// Valid UTF-8 of characters below the bound, without a carriage return, which makes one character
/// with the line feed behind it. Everything below is for such names only.
bool isOne(std::string_view name);

struct Character {
    char32_t value = 0;
    std::size_t size = 1;  ///< Bytes.
};
Character characterAt(std::string_view name, std::size_t at);

/// Where the character with this number begins; the end of the name when it has fewer.
std::size_t begin(std::string_view name, std::int64_t number);
/// Where the last `count` characters begin.
std::size_t beginOfLast(std::string_view name, std::int64_t count);

/// In the cases of the root locale. In a title letters and digits belong to words, and so does an
/// apostrophe between them.
std::string changed(std::string_view name, CaseStyle style);

}  // namespace tarn::SimpleNames
