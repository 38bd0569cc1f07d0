#include "TarnCore/index/readers/SheetBuilder.h"

#include "TarnCore/base/Text.h"

namespace tarn {

void SheetBuilder::add(std::size_t row, std::size_t column, std::string text) {
    if (isFull_ || text.empty()) return;
    if (column >= TableSheet::mostColumns) {
        sheet_.isCut = true;
        return;
    }
    const bool isBeyond = row >= TableSheet::mostRows || bytes_ > TableSheet::mostBytes ||
                          cells_ > TableSheet::mostCells;
    if (isBeyond) {
        sheet_.isCut = isFull_ = true;
        return;
    }
    if (text.size() > TableSheet::longestCell) {
        text.resize(TableSheet::longestCell);
        while (!text.empty() && !Text::isValidUTF8(text)) text.pop_back();
        text += "…";
    }
    if (sheet_.rows.size() <= row) sheet_.rows.resize(row + 1);
    auto& cells = sheet_.rows[row];
    if (cells.size() <= column) {
        cells_ += column + 1 - cells.size();
        cells.resize(column + 1);
    }
    bytes_ += text.size();
    cells[column] = Text::isValidUTF8(text) ? std::move(text) : Text::sanitized(text);
}

}  // namespace tarn
