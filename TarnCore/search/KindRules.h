#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/files/FileKind.h"
#include "TarnCore/search/SearchKind.h"

/// What the kinds of a query mean for a file. Callable from any thread.
namespace tarn::KindRules {

/// What there is to know about a file without reading it.
struct Facts {
    std::string_view name;
    std::optional<std::string> type;
    FileKind kind = FileKind::other;
    bool isDirectory = false;  ///< As in FileItem: a folder to enter.

    /// Of a plain file, from its name alone.
    static Facts ofFile(std::string_view name);
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

/// Files of other kinds keep no camera's name, so they need not be read.
inline bool mayNameCamera(FileKind kind) {
    return kind == FileKind::image || kind == FileKind::video;
}

}  // namespace tarn::KindRules
