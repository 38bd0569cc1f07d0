#pragma once

#include <string>

/// Small files of many kinds, so that previews have something real to show.
namespace tarn::SampleFiles {

/// A workbook with one sheet, padded to about that many bytes.
std::string workbook(std::size_t size);
/// A zip file with files and folders, the largest of that many bytes.
std::string archive(std::size_t size);
/// Two pages of text.
std::string letter();
/// Two seconds of motion JPEG.
std::string film();
/// Two seconds of a tone.
std::string sound();

}  // namespace tarn::SampleFiles
