#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/search/SearchQuery.h"

/// The part of a query that a metadata index can answer, in the index's language: clauses such as
/// kMDItemFSName == "*tax*"cd, joined with " && ". Places and `filesOnly` cannot be said in it.
namespace tarn::SpotlightQuery {

/// Absent when nothing of the query can be said.
std::optional<std::string> text(const SearchQuery& query);

/// The name under which a camera of the query is looked for: lower case, "fuji" for Fujifilm,
/// whose cameras write it in both lengths.
std::string cameraWord(std::string_view camera);
/// True for a name that is a phone's model and never stands as a maker.
bool isModelOnly(std::string_view cameraWord);

}  // namespace tarn::SpotlightQuery
