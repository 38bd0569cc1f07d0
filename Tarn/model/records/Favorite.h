#pragma once

#include <optional>
#include <string>

#include "TarnCore/base/JSON.h"
#include "TarnCore/base/UUID.h"

namespace tarn {

/// A folder that the user keeps in the sidebar; one of "favorites.json".
struct Favorite {
    UUID id;
    std::string path;
    std::optional<std::string> displayName;  ///< Given by the user; absent for the folder's own.
    bool operator==(const Favorite&) const = default;
};

void to_json(JSON& json, const Favorite& favorite);
void from_json(const JSON& json, Favorite& favorite);

}  // namespace tarn
