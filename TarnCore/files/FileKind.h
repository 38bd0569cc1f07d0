#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/URL.h"

namespace tarn {

/// What a file is, as coarsely as menus and groups need it; the order is that of menus.
enum class FileKind { folder, image, video, audio, document, archive, app, code, other };

inline constexpr std::array allFileKinds = {FileKind::folder, FileKind::image,    FileKind::video,
                                            FileKind::audio,  FileKind::document, FileKind::archive,
                                            FileKind::app,    FileKind::code,     FileKind::other};

namespace FileKinds {
/// "folder", "image", …: the stored form.
std::string_view rawValue(FileKind kind);
std::optional<FileKind> fromRawValue(std::string_view raw);
/// "Folders", "Images", "Videos", "Music", …
std::string_view title(FileKind kind);
/// Name of its icon ("folder.fill").
std::string_view symbol(FileKind kind);

/// By content type and lower- or upper-case extension. The extension tables beat the type system:
/// a .json file is code although it is text, a .pkg is an archive.
FileKind classify(std::optional<std::string_view> type, std::string_view ext, bool isDirectory,
                  bool isPackage);
/// The same for a file on the disk; `other` when it cannot be looked at.
FileKind classify(const URL& url);

/// Extensions in lower case, without the dot.
bool isArchiveExtension(std::string_view ext);
bool isCodeExtension(std::string_view ext);
bool isDocumentExtension(std::string_view ext);
bool isRawExtension(std::string_view ext);
/// Those that the archive reader lists as a folder.
bool isBrowsableArchiveExtension(std::string_view ext);
}  // namespace FileKinds

}  // namespace tarn
