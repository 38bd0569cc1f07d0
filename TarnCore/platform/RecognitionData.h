#pragma once

#include <cstdlib>
#include <string>
#include <vector>

namespace tarn {

/// The folders in which Tesseract's data of the languages may lie, the first to be preferred: those
/// that TESSDATA_PREFIX names, then where distributions put them. In the header, since modules see
/// no symbol of the programs.
inline std::vector<std::string> recognitionDataFolders() {
    std::vector<std::string> folders;
    if (const char* given = std::getenv("TESSDATA_PREFIX")) {
        folders.emplace_back(given);
        folders.push_back(std::string(given) + "/tessdata");
    }
    for (const char* folder :
         {"/usr/share/tesseract-ocr/5/tessdata", "/usr/share/tesseract-ocr/4.00/tessdata",
          "/usr/share/tessdata", "/usr/local/share/tessdata"})
        folders.emplace_back(folder);
    return folders;
}

}  // namespace tarn
