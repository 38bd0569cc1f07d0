#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tarn {

/// One sheet of a table, as far as it is shown.
struct TableSheet {
    std::vector<std::string> names;  ///< Of all sheets; one without a name for a plain table.
    std::vector<std::vector<std::string>> rows;  ///< UTF-8; rows may differ in length.
    bool isCut = false;                          ///< There is more than `rows` hold.
    bool operator==(const TableSheet&) const = default;

    /// What is read of one sheet at most.
    static constexpr std::size_t mostRows = 5'000;
    static constexpr std::size_t mostColumns = 256;
    static constexpr std::size_t mostCells = 400'000;
    static constexpr std::size_t mostBytes = 16'000'000;  ///< Of text.
    static constexpr std::size_t longestCell = 4'096;  ///< Bytes; longer ones end with “…”.
    static constexpr std::size_t mostSheets = 1'000;
};

}  // namespace tarn
