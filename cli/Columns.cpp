#include "cli/Columns.h"

#include <algorithm>
#include <cstddef>

#include "cli/Terminal.h"

namespace tarn::cli {

void appendColumns(std::string& out, const std::vector<std::vector<std::string>>& lines) {
    std::vector<std::size_t> widths;
    for (const auto& line : lines) {
        widths.resize(std::max(widths.size(), line.size()));
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], Terminal::width(Terminal::escaped(line[i])));
    }
    for (const auto& line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) {
            const std::string cell = Terminal::escaped(line[i]);
            out += cell;
            if (i + 1 < line.size()) out.append(widths[i] + 2 - Terminal::width(cell), ' ');
        }
        out += '\n';
    }
}

}  // namespace tarn::cli
