#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "TarnCore/files/FileItem.h"
#include "cli/Output.h"

/// How files are written for programs.
namespace tarn::cli::Records {

/// A JSON array of FileItem records, one a line, in the order of `indexes`; long lists are built
/// on every processor.
void writeArray(Output& out, std::span<const FileItem> items,
                std::span<const std::uint32_t> indexes);
/// All of them, in their order.
void writeArray(Output& out, std::span<const FileItem> items);

/// The path, byte for byte, and what ends it ('\n' or NUL).
inline void writePath(Output& out, const FileItem& item, char end) { out << item.path() << end; }

}  // namespace tarn::cli::Records
