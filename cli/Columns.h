#pragma once

#include <string>
#include <vector>

namespace tarn::cli {

/// Appends lines whose cells stand below one another, two blanks apart. The last cell of a line is
/// not filled up. Cells are made safe for a terminal.
void appendColumns(std::string& out, const std::vector<std::vector<std::string>>& lines);

}  // namespace tarn::cli
