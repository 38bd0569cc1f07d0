#pragma once

#include <QtCore/QRect>
#include <QtCore/QString>

class QPainter;
class QPalette;

namespace tarn {

struct TextMatch;

/// The line under a result that shows where its text matched. Main thread only.
namespace SnippetLine {

/// Draws it into one line, what matched in the colour of text and semibold, the rest stepping back.
/// Cut to the room that there is, so that the first match stays in sight. On a selected row
/// everything is in the colour of text.
void paint(QPainter& painter, const QRect& rect, const TextMatch& match, const QPalette& palette,
           bool selected);

/// The line as assistive tools read it; empty when there is none.
QString spoken(const TextMatch& match);

}  // namespace SnippetLine

}  // namespace tarn
