#pragma once

#include <string>

#include "TarnCore/files/FileItem.h"
#include "TarnCore/search/TextMatch.h"
#include "cli/Terminal.h"

/// How it is said why a search found a file.
namespace tarn::cli::Explanation {

/// An indented line: “Name”, or where the text was and how it reads there, what matched in bold.
void appendLine(std::string& out, const Terminal& terminal, const TextMatch& match);

/// The record of the item with a key "match": `{"reason", "snippet"?, "ranges"?}`. Ranges are pairs
/// of bytes in the snippet as UTF-8, the second behind the last.
void appendRecord(std::string& out, const FileItem& item, const TextMatch& match);

}  // namespace tarn::cli::Explanation
