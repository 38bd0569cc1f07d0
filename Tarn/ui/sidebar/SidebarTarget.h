#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QtCore/QString>

#include "Tarn/model/SidebarRow.h"
#include "Tarn/ui/drag/FileDrop.h"

class QDropEvent;
class QMimeData;
class QPoint;
class QRect;

namespace tarn {

class Sidebar;

/// What a drag over the sidebar would do where it is.
///
/// Folders that are dropped between the favourites become ones there; a row of the user's that is
/// dragged takes another place in its own section. On a row, files go where it leads, or get its
/// tag.
struct SidebarTarget {
    enum class What { drop, tag, favorite, move };

    What what = What::drop;
    int row = -1;                  ///< The row that it is about; that of the drag for `move`.
    std::optional<FileDrop> drop;  ///< Of `drop`.
    std::vector<URL> urls;         ///< Of `tag` and `favorite`.
    std::size_t index = 0;         ///< Place among the user's own rows, of `favorite` and `move`.
    int line = -1;                 ///< Where the rows are parted, y in the viewport; -1 for none.

    /// Absent where the drag means nothing. Touches no disk.
    static std::optional<SidebarTarget> of(const QDropEvent& event, const Sidebar& sidebar);

    /// “Tag with “Red””, “Add to Favourites”.
    QString label(const SidebarRow& shown) const;
    std::string symbol() const;
    /// Tells the source what will happen.
    void accept(QDropEvent& event) const;

    /// A row of the user's as it is dragged, for sidebars of this process only.
    static std::unique_ptr<QMimeData> makeDrag(const SidebarRow& row);
};

}  // namespace tarn
