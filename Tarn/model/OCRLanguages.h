#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <QtCore/QString>

namespace tarn {

/// The languages in which text in pictures can be recognised here.
namespace OCRLanguages {

struct Language {
    std::string tag;  ///< BCP 47.
    QString title;    ///< In the language of the window: “German”.
    bool operator==(const Language&) const = default;
};

/// Those with data for Tesseract on this machine, by title. Reads folders.
std::vector<Language> available();
/// Of a folder with such data.
std::vector<Language> in(const std::string& folder);
/// Both tags ask for the same data: "en-US" is English as well.
bool isSame(std::string_view storedTag, std::string_view tag);
/// For a tag without data here.
QString title(const std::string& tag);

}  // namespace OCRLanguages

}  // namespace tarn
