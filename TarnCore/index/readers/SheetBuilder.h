#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "TarnCore/preview/TableSheet.h"

namespace tarn {

/// Puts the cells of a sheet together, up to the bounds of TableSheet. Rows and columns that are
/// left out are empty; empty ones at the end do not count.
class SheetBuilder {
public:
    explicit SheetBuilder(TableSheet& sheet) : sheet_(sheet) {}

    /// `row` and `column` never go back. An empty text does nothing.
    void add(std::size_t row, std::size_t column, std::string text);
    /// Nothing more is taken.
    bool isFull() const { return isFull_; }

private:
    TableSheet& sheet_;
    std::size_t cells_ = 0;
    std::size_t bytes_ = 0;
    bool isFull_ = false;
};

}  // namespace tarn
