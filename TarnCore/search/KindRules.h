#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "TarnCore/files/FileKind.h"
#include "TarnCore/search/SearchKind.h"

/// What the kinds of a query mean for a file. Callable from any thread.
namespace tarn::KindRules {

/// What there is to know about a file without reading it.
class Facts {
public:
    /// Of an item that was read.
    Facts(std::string_view itsName, std::optional<std::string> itsType, FileKind kind,
          bool isFolder)
        : name(itsName), type(std::move(itsType)), isDirectory(isFolder), kind_(kind) {}
    /// Of a plain file, from its name alone.
    explicit Facts(std::string_view fileName);

    FileKind kind() const;

    const std::string_view name;
    const std::optional<std::string> type;
    const bool isDirectory;  ///< As in FileItem: a folder to enter.

private:
    mutable std::optional<FileKind> kind_;  ///< Found out when first asked for.
};

enum class Answer {
    no,
    yes,
    /// A photo if it tells of a camera or came out of one.
    dependsOnPicture
};

Answer test(SearchKind kind, const Facts& facts);

/// A name that programs give to pictures of the screen.
bool isScreenshotName(std::string_view name);

/// Plain text, as far as the name tells: what can be searched for phrases as it stands.
bool mayBePlainText(const std::optional<std::string>& type, FileKind kind);

/// Files of other kinds keep no camera's name, so they need not be read.
inline bool mayNameCamera(FileKind kind) {
    return kind == FileKind::image || kind == FileKind::video;
}

}  // namespace tarn::KindRules
