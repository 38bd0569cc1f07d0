#include "Tarn/model/records/Favorites.h"

#include <algorithm>

#include "Tarn/model/records/NamedRecords.h"
#include "TarnCore/files/Paths.h"

namespace tarn::Favorites {

Favorite make(const URL& folder, std::string_view name) {
    Favorite favorite;
    favorite.id = UUID::random();
    favorite.path = JSONText::fromPath(folder);
    std::vector<Favorite> alone = {favorite};
    rename(alone, favorite.id, name);
    return alone.front();
}

URL folder(const Favorite& favorite) { return JSONText::toPath(favorite.path).value_or(URL()); }

std::string title(const Favorite& favorite) {
    return favorite.displayName ? *favorite.displayName : Paths::displayName(folder(favorite));
}

const Favorite* find(const std::vector<Favorite>& favorites, const URL& wanted) {
    for (const Favorite& favorite : favorites)
        if (folder(favorite) == wanted) return &favorite;
    return nullptr;
}

void insert(std::vector<Favorite>& favorites, const Favorite& favorite,
            std::optional<std::size_t> index) {
    const std::size_t place = std::min(index.value_or(favorites.size()), favorites.size());
    if (const Favorite* present = find(favorites, folder(favorite))) {
        const UUID id = present->id;
        const auto before = static_cast<std::size_t>(present - favorites.data());
        if (favorite.displayName) rename(favorites, id, *favorite.displayName);
        // Its own place does not count once it is taken out.
        if (index) NamedRecords::move(favorites, id, before < place ? place - 1 : place);
        return;
    }
    favorites.insert(favorites.begin() + static_cast<std::ptrdiff_t>(place), favorite);
}

void remove(std::vector<Favorite>& favorites, const UUID& id) {
    std::erase_if(favorites, [&id](const Favorite& favorite) { return favorite.id == id; });
}

void rename(std::vector<Favorite>& favorites, const UUID& id, std::string_view name) {
    const auto found = std::ranges::find(favorites, id, &Favorite::id);
    if (found == favorites.end()) return;
    const std::string kept = Text::sanitized(Text::trimmed(Text::replacing(name, "\n", " ")));
    found->displayName.reset();
    if (!kept.empty() && kept != title(*found)) found->displayName = kept;
}

}  // namespace tarn::Favorites
