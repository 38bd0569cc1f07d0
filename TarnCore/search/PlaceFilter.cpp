#include "TarnCore/search/PlaceFilter.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/JSONFields.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/search/HashCombine.h"

namespace tarn {
namespace {

using Case = PlaceFilter::Case;

/// In the order of the enumeration.
constexpr std::array<std::string_view, 6> caseNames = {"folder", "named",   "externalDrives",
                                                       "iCloud", "thisMac", "currentFolder"};
constexpr const char* payloadKey = "_0";

bool hasPayload(Case which) { return which == Case::folder || which == Case::named; }

}  // namespace

std::string PlaceFilter::label() const {
    switch (which) {
        case Case::folder:
            return "In " + Paths::displayName(URL::fromPath(text));
        case Case::named:
            return "In " + Text::quoted(text);
        case Case::externalDrives:
            return "On external drives";
        case Case::iCloud:
            return "In iCloud Drive";
        case Case::thisMac:
            return "On this Mac";
        case Case::currentFolder:
            return "In this folder";
    }
    return {};
}

void to_json(JSON& json, const PlaceFilter& place) {
    JSON payload = JSON::object();
    if (place.which == Case::folder && !Text::isValidUTF8(place.text)) {
        payload[payloadKey] = URL::fromPath(place.text).string();
    } else if (hasPayload(place.which)) {
        payload[payloadKey] = place.text;
    }
    json = JSON::object();
    json[std::string(caseNames[static_cast<std::size_t>(place.which)])] = std::move(payload);
}

void from_json(const JSON& json, PlaceFilter& place) {
    if (!json.is_object() || json.size() != 1) {
        throw Error("Invalid number of keys found, expected one.");
    }
    const std::string& key = json.begin().key();
    const auto found = std::find(caseNames.begin(), caseNames.end(), key);
    if (found == caseNames.end()) throw Error("“" + key + "” is not a place.");
    PlaceFilter read{static_cast<Case>(found - caseNames.begin()), {}};
    if (hasPayload(read.which)) {
        JSONFields::read(json.begin().value(), payloadKey, read.text);
        if (read.text.empty()) throw Error("The place “" + key + "” has no name.");
    }
    // No absolute path begins like this, so it can only be the form of one that is not UTF-8.
    if (read.which == Case::folder && read.text.starts_with("file://")) {
        const auto url = URL::parse(read.text);
        if (!url) throw Error("“" + read.text + "” is not the address of a folder.");
        read.text = url->path();
    }
    place = std::move(read);
}

}  // namespace tarn

std::size_t std::hash<tarn::PlaceFilter>::operator()(
    const tarn::PlaceFilter& place) const noexcept {
    return tarn::hashOf(place.which, place.text);
}
