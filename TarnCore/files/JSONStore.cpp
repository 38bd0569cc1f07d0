#include "TarnCore/files/JSONStore.h"

#include <nlohmann/json.hpp>

namespace tarn::StoredJSON {

template <>
std::optional<JSON> parse<JSON>(std::string_view text) {
    return JSONText::parse(text);
}

template <>
std::string text<JSON>(const JSON& document) {
    return JSONText::pretty(document);
}

template <>
JSON keepingUnchanged<JSON>(JSON ours, const JSON& onDisk, const JSON& understood) {
    if (ours == understood) return onDisk;
    if (!ours.is_object() || !onDisk.is_object() || !understood.is_object()) return ours;
    for (const auto& [key, stored] : onDisk.items()) {
        const auto known = understood.find(key);
        const auto own = ours.find(key);
        if (known == understood.end() && own == ours.end())
            ours[key] = stored;
        else if (known != understood.end() && own != ours.end())
            *own = keepingUnchanged(std::move(*own), stored, *known);
    }
    return ours;
}

}  // namespace tarn::StoredJSON
