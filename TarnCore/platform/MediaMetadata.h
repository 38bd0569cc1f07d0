#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// What a picture, a film or a document says about itself. Everything is absent when unknown.
struct ItemMetadata {
    std::optional<Date> lastOpened;
    std::optional<int> pixelWidth;  ///< Of the upright picture.
    std::optional<int> pixelHeight;
    std::optional<double> duration;  ///< Seconds.
    std::optional<std::string> cameraMake;
    std::optional<std::string> cameraModel;
    std::optional<std::string> lens;
    std::optional<std::string> artist;
    std::optional<std::string> album;
    std::optional<std::string> title;
    std::optional<int> pages;
    std::vector<std::string> codecs;
    /// When the picture was taken, by the camera's clock in a zone that nobody noted down
    /// ("2026:03:15 12:00:00", EXIF's DateTimeOriginal). No part of the JSON.
    std::optional<std::string> photoTaken;

    /// Make and model as one would say them: "Apple iPhone 15", "Canon EOS R5" (the make is not
    /// repeated when the model begins with it). Absent without either.
    std::optional<std::string> camera() const;
    bool operator==(const ItemMetadata&) const = default;
};

void to_json(nlohmann::json& json, const ItemMetadata& metadata);

/// Reads metadata from the files themselves. Callable from any thread. Never throws: a file that
/// cannot be read or understood has none.
class MediaMetadata {
public:
    virtual ~MediaMetadata() = default;
    virtual ItemMetadata read(const URL& url) const = 0;
    /// When a program last opened the file for the user; the file itself is not read for it.
    virtual std::optional<Date> lastOpened(const URL& url) const = 0;
};

}  // namespace tarn
