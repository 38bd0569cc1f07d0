#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/files/FileItem.h"
#include "TarnCore/search/SearchQuery.h"

/// The order of results: exact names, names that begin with the words, names that hold them all,
/// then everything else, where pictures that show what was described come first.
namespace tarn::SearchRanking {

/// Folded, "_" and "-" as blanks, words joined by single blanks.
std::string normalize(std::string_view text);

/// 0 (the same) to 3 (nothing in common).
int tier(std::string_view name, const SearchQuery& query);

/// Stable. `imageScore` is absent for what is no picture.
std::vector<FileItem> rank(std::vector<FileItem> items, const SearchQuery& query,
                           const std::function<std::optional<float>(const FileItem&)>& imageScore);

}  // namespace tarn::SearchRanking
