#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

struct AppSettings;

/// What the settings say about the index of file contents, as whoever fills it needs it.
struct IndexSettings {
    bool isOn = true;
    bool ocr = true;                     ///< Text in pictures and scanned pages too.
    std::vector<std::string> languages;  ///< Of recognition, BCP 47.
    std::vector<URL> folders;            ///< None lies in another.
    std::vector<URL> excluded;           ///< Folders of which nothing is read.
    std::int64_t mostBytesOnDisk = 0;    ///< Of the index; 0: no limit.
    bool operator==(const IndexSettings&) const = default;

    static IndexSettings of(const AppSettings& settings);

    /// A folder as it is stored: "~/Documents" for one in the home folder.
    static std::string stored(const URL& folder);
    static std::vector<URL> read(const std::vector<std::string>& stored);

    /// Changes of the stored lists. Adding takes back an exclusion of the folder; removing excludes
    /// a folder that would still be read as a part of another one.
    static void add(AppSettings& settings, const URL& folder);
    static void remove(AppSettings& settings, const URL& folder);
    static void exclude(AppSettings& settings, const URL& folder);
    static void include(AppSettings& settings, const URL& folder);
};

}  // namespace tarn
