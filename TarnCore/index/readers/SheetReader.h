#pragma once

#include <optional>

#include "TarnCore/platform/FileBytes.h"
#include "TarnCore/preview/TableSheet.h"

/// The cells of workbooks as they are shown: numbers, dates and percentages in the form that the
/// workbook gives them, in so far as that is one of these.
namespace tarn::SheetReader {

/// Sheet number `sheet`, 0 being the first. Office Open XML (ECMA-376) and OpenDocument; absent for
/// anything else, for a damaged or encrypted workbook, and when there is no such sheet.
std::optional<TableSheet> read(const FileBytes& bytes, int sheet);

}  // namespace tarn::SheetReader
