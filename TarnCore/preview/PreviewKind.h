#pragma once

#include "TarnCore/files/FileItem.h"

namespace tarn {

/// How a file is shown without being opened in a program.
enum class PreviewKind {
    icon,      ///< Nothing to look into: its icon and facts.
    folder,    ///< Its icon and how much is in it.
    image,     ///< A picture, moving ones included.
    text,      ///< Text as it stands, code in colours.
    document,  ///< The text of a document.
    pdf,       ///< Pages.
    media,     ///< Sound or a film, to be played.
    archive,   ///< A list of members.
    font,      ///< What its letters look like.
    table,     ///< Sheets of rows and columns.
};

namespace PreviewKinds {

/// By what the item was listed with; the disk is not touched. A file of an unknown kind counts as
/// `text`, which its bytes may refuse later.
PreviewKind of(const FileItem& item);

}  // namespace PreviewKinds

}  // namespace tarn
