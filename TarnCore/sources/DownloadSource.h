#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/JSON.h"

namespace tarn {

/// The website or app that a file came from.
struct DownloadSource {
    std::string name;    ///< "Gmail", "example.org", "AirDrop", "Firefox", "Browser extension".
    std::string domain;  ///< Registrable domain; empty when the source is no website.
    std::optional<std::string> pageURL;
    std::optional<std::string> app;  ///< The program that saved it.

    static constexpr std::string_view browserExtension = "Browser extension";

    /// The names under which a file with this source is counted.
    std::vector<std::string> groups() const;
    bool operator==(const DownloadSource&) const = default;
};

void to_json(JSON& json, const DownloadSource& source);
void from_json(const JSON& json, DownloadSource& source);

}  // namespace tarn
