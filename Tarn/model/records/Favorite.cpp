#include "Tarn/model/records/Favorite.h"

#include "TarnCore/base/JSONFields.h"

namespace tarn {

void to_json(JSON& json, const Favorite& favorite) {
    json = JSON{{"id", favorite.id}, {"path", favorite.path}};
    JSONFields::write(json, "displayName", favorite.displayName);
}

void from_json(const JSON& json, Favorite& favorite) {
    JSONFields::read(json, "id", favorite.id);
    JSONFields::read(json, "path", favorite.path);
    JSONFields::read(json, "displayName", favorite.displayName);
}

}  // namespace tarn
