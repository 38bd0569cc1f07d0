#pragma once

#include <QtGui/QColor>
#include <QtGui/QPalette>

#include "TarnCore/files/FileKind.h"
#include "TarnCore/tags/FinderTag.h"

namespace tarn {

/// All colours of one appearance. Views take theirs from the palette where a role fits and from
/// here for the rest; no other folder names a colour.
///
/// Text keeps 4.5:1 on every ground it may stand on, icons and rings 3:1 (7:1 and 4.5:1 with high
/// contrast).
struct Colors {
    bool isDark = false;
    bool isHighContrast = false;
    QColor window;  ///< Sidebar and toolbar.
    QColor base;    ///< Lists, grids and fields.
    QColor raised;  ///< Menus, tooltips, floating pills.
    QColor text;
    QColor secondary;  ///< Dates, sizes, placeholders, headings.
    QColor disabled;
    QColor accent;  ///< Focus rings, progress, links.
    QColor onAccent;
    QColor selection;  ///< Ground of selected rows and text, below `text`.
    QColor separator;  ///< Hairlines between areas.
    QColor border;     ///< Hairlines around fields and popups.
    QColor danger;
    QColor shadow;
    QColor scrim;  ///< Over a window that waits for an answer.

    static Colors light(bool highContrast);
    static Colors dark(bool highContrast);

    /// The same with the user's accent, moved lighter or darker until it stands out 3:1 from
    /// `base`.
    Colors withAccent(const QColor& wanted) const;

    QPalette palette() const;

    /// The ground of a control: the text colour laid thinly over `ground`.
    QColor tinted(const QColor& ground, double part) const { return mixed(ground, text, part); }
    /// The colour that marks a kind of file.
    QColor kind(FileKind kind) const;
    /// The colour of a tag's dot; that of `secondary` for a tag without colour.
    QColor tag(TagColor color) const;
    /// Of a mark on that dot.
    QColor onTag(TagColor color) const;

    /// `part` 0 is `from`, 1 is `to`; opaque.
    static QColor mixed(const QColor& from, const QColor& to, double part);
    /// Contrast ratio of WCAG 2.1, 1 to 21.
    static double contrast(const QColor& one, const QColor& other);

    /// Those that the window shows now. Main thread only.
    static const Colors& current();
    static void setCurrent(const Colors& colors);
};

}  // namespace tarn
