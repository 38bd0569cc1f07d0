#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/platform/FileBytes.h"

/// Word-processing documents, spreadsheets and presentations. Callable from any thread.
namespace tarn::OfficeText {

/// The text of a document in the formats of ECMA-376 (docx, xlsx, pptx and theirs with macros) or
/// OpenDocument (odt, ods, odp); which one it is, its members tell. Absent when it is none, is
/// damaged or encrypted, or says nothing.
///
/// A line for each paragraph. Documents: the body, then headers, footers, notes and comments;
/// presentations: each slide, then the notes; spreadsheets: each sheet, a line for each row and a
/// tab between cells, with the strings that cells share in their places, then the comments.
std::optional<std::string> read(const FileBytes& bytes);

/// A WordprocessingML document in one XML file: that of 2003, or a package in one file.
std::optional<std::string> readWordML(std::string_view bytes);

}  // namespace tarn::OfficeText
