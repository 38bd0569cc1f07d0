#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

#include "TarnCore/files/FileItem.h"
#include "cli/Output.h"

/// How files are written for programs.
namespace tarn::cli::Records {

/// What is done with an item before it is written; called from several threads, each with an item
/// of its own.
using Complete = std::function<void(FileItem&)>;

/// A JSON array of FileItem records, one a line, in the order of `indexes`; long lists are built
/// on every processor.
void writeArray(Output& out, std::span<FileItem> items, std::span<const std::uint32_t> indexes,
                const Complete& complete = {});
/// All of them, in their order.
void writeArray(Output& out, std::span<FileItem> items);

/// The path, byte for byte, and what ends it ('\n' or NUL).
inline void writePath(Output& out, const FileItem& item, char end) { out << item.path() << end; }

}  // namespace tarn::cli::Records
