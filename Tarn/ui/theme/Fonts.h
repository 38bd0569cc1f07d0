#pragma once

#include <QtCore/QRectF>
#include <QtCore/QString>
#include <QtGui/QFont>

class QPainter;

/// The sizes of text, all made from the system's font. Main thread only.
namespace tarn::Fonts {

QFont body();
/// One point smaller: status, captions, headings of the sidebar.
QFont small();
/// Two points larger and semibold.
QFont title();
/// 1.3 times the body: the title of a page that has nothing else to show.
QFont screenTitle();
QFont semibold(QFont font);

/// The whole pixels that one line needs. QFontMetrics rounds to the nearest, and text that is a
/// fraction wider than its room loses a letter.
int textWidth(const QFont& font, const QString& text);

/// Draws one line so that all digits are equally wide and columns of sizes and dates line up,
/// whatever the font's own figures are. Vertically centred; no wrapping, no elision.
void drawTabular(QPainter& painter, const QRectF& rect, Qt::Alignment horizontal,
                 const QString& text);
/// How wide drawTabular() draws.
qreal tabularWidth(const QFont& font, const QString& text);

}  // namespace tarn::Fonts
