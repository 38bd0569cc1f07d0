#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Tarn/model/records/Favorite.h"
#include "TarnCore/base/URL.h"

/// The rules of the list of favourites: one for each folder, in the user's order.
namespace tarn::Favorites {

/// A new one; no name, or the folder's own, means none of its own.
Favorite make(const URL& folder, std::string_view name = {});
/// Where it leads.
URL folder(const Favorite& favorite);
/// What it is called: the name given, else the folder's.
std::string title(const Favorite& favorite);

/// Null when the folder is none.
const Favorite* find(const std::vector<Favorite>& favorites, const URL& folder);

/// Puts it in front of the one at `index`, else at the end. A folder that is in the list already
/// keeps its id, its name unless another is given, and without an index its place.
void insert(std::vector<Favorite>& favorites, const Favorite& favorite,
            std::optional<std::size_t> index = {});
void remove(std::vector<Favorite>& favorites, const UUID& id);
void rename(std::vector<Favorite>& favorites, const UUID& id, std::string_view name);

}  // namespace tarn::Favorites
