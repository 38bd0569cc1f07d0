#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QtCore/QMimeData>

#include "TarnCore/base/URL.h"

namespace tarn {

/// Files on the clipboard or under the pointer, in the forms that file managers understand.
///
/// - "text/uri-list" (RFC 2483): a URL in each line, ended by CR LF; lines with "#" are comments
/// - "x-special/gnome-copied-files": "copy" or "cut", then the URLs, lines divided by LF
/// - "application/x-kde-cutselection": "1" when the files of the list are to be moved
/// - plain text: the paths, one in each line
namespace FileMime {

struct Files {
    std::vector<URL> urls;
    bool isCut = false;  ///< Pasting moves them.
    bool operator==(const Files&) const = default;
};

/// All forms, made at once: what is on the clipboard outlives the program only where nothing has
/// to be asked for later.
std::unique_ptr<QMimeData> make(const Files& files);
/// For a drag: the list of URLs and the plain paths.
std::unique_ptr<QMimeData> makeDrag(const std::vector<URL>& urls);

/// Whichever form is there, the most telling first; absent when there are no files of this
/// machine. Plain text counts when every line of it is an absolute path or a file URL.
std::optional<Files> read(const QMimeData& data);
/// The same without plain text: text that is dragged is no file.
std::optional<Files> readDrag(const QMimeData& data);

}  // namespace FileMime

}  // namespace tarn
