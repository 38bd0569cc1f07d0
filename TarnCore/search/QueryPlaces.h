#pragma once

#include <cstddef>
#include <optional>

#include "TarnCore/search/PlaceFilter.h"
#include "TarnCore/search/QueryNumbers.h"
#include "TarnCore/search/QueryTokens.h"

/// The places that people name in queries.
///
/// Anywhere: "here", "this folder", "everywhere", "this mac", "this computer", "icloud",
/// "external drives", "usb stick". Only behind a word like "in": the user's folders by name
/// ("downloads", "desktop folder"), paths ("~/Projects", "/srv"), "my computer", "usb", and any
/// folder by its name with the word "folder" behind it ("in tax 2023 folder").
namespace tarn::QueryPlaces {

/// The place that begins at a token. `isIntroduced`: a word like "in" stands before it.
std::optional<Reading<PlaceFilter>> matchPlace(const QueryTokens& tokens, std::size_t index,
                                               bool isIntroduced);

/// "taxes folder": one word or quoted phrase in front of "folder", which may be a date or a kind of
/// file elsewhere ("in 2023 folder", "in photos folder").
std::optional<Reading<PlaceFilter>> matchFolderName(const QueryTokens& tokens, std::size_t index);

}  // namespace tarn::QueryPlaces
