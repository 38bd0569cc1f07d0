#include "TarnCore/platform/MediaMetadata.h"

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSON.h"
#include "TarnCore/base/Text.h"

namespace tarn {

std::optional<std::string> ItemMetadata::camera() const {
    if (!cameraMake || !cameraModel) return cameraMake ? cameraMake : cameraModel;
    // "NIKON CORPORATION" makes the "NIKON D850".
    const std::string_view firstWord =
        std::string_view(*cameraMake).substr(0, cameraMake->find(' '));
    if (Text::folded(*cameraModel).starts_with(Text::folded(firstWord))) return cameraModel;
    return *cameraMake + " " + *cameraModel;
}

void to_json(nlohmann::json& json, const ItemMetadata& metadata) {
    json = nlohmann::json::object();
    const auto add = [&](const char* key, const auto& value) {
        if (value) json[key] = *value;
    };
    const auto addText = [&](const char* key, const std::optional<std::string>& value) {
        if (value) json[key] = Text::sanitized(*value);
    };
    add("lastOpened", metadata.lastOpened);
    add("pixelWidth", metadata.pixelWidth);
    add("pixelHeight", metadata.pixelHeight);
    add("duration", metadata.duration);
    addText("cameraMake", metadata.cameraMake);
    addText("cameraModel", metadata.cameraModel);
    addText("lens", metadata.lens);
    addText("artist", metadata.artist);
    addText("album", metadata.album);
    addText("title", metadata.title);
    add("pages", metadata.pages);
    if (!metadata.codecs.empty()) json["codecs"] = metadata.codecs;
}

}  // namespace tarn
