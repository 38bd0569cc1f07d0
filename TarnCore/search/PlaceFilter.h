#pragma once

#include <functional>
#include <string>
#include <utility>

#include "TarnCore/base/JSON.h"

namespace tarn {

/// Where a query looks. Stored as an object with one key, the case: {"named": {"_0": "taxes"}},
/// {"iCloud": {}}. A path that is not UTF-8 is stored in its file:// form.
struct PlaceFilter {
    enum class Case { folder, named, externalDrives, iCloud, thisMac, currentFolder };
    Case which = Case::currentFolder;
    std::string text;  ///< Absolute path of `folder`, name of `named`; else empty.

    static PlaceFilter folder(std::string path) { return {Case::folder, std::move(path)}; }
    static PlaceFilter named(std::string name) { return {Case::named, std::move(name)}; }
    static PlaceFilter externalDrives() { return {Case::externalDrives, {}}; }
    static PlaceFilter iCloud() { return {Case::iCloud, {}}; }
    static PlaceFilter thisMac() { return {Case::thisMac, {}}; }
    static PlaceFilter currentFolder() { return {Case::currentFolder, {}}; }

    /// "In Downloads", "In “taxes”", "On external drives", …
    std::string label() const;
    bool operator==(const PlaceFilter&) const = default;
};

void to_json(JSON& json, const PlaceFilter& place);
/// Throws tarn::Error "Invalid number of keys found, expected one." or, for an unknown case, a
/// sentence that names it.
void from_json(const JSON& json, PlaceFilter& place);

}  // namespace tarn

template <>
struct std::hash<tarn::PlaceFilter> {
    std::size_t operator()(const tarn::PlaceFilter& place) const noexcept;
};
