#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The smallest office documents that are valid by ECMA-376 (Office Open XML): one empty paragraph,
/// one empty sheet, one empty slide.
namespace tarn::OfficePackages {

/// Path inside the package and text.
using Parts = std::vector<std::pair<std::string, std::string>>;

/// "docx", "xlsx" or "pptx"; nothing for another id.
Parts parts(std::string_view id);

}  // namespace tarn::OfficePackages
