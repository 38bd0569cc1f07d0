#include "Tarn/ui/theme/Fonts.h"

#include <algorithm>
#include <cmath>

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

#include "Tarn/ui/theme/FallbackFonts.h"

namespace tarn::Fonts {
namespace {

QFont resized(QFont font, double factor, double points) {
    // A desktop may give its font in pixels.
    if (font.pointSizeF() > 0)
        font.setPointSizeF(std::max(6.0, font.pointSizeF() * factor + points));
    else
        font.setPixelSize(std::max(8, qRound(font.pixelSize() * factor + points)));
    return font;
}

bool isFigure(QChar c) { return c >= u'0' && c <= u'9'; }

qreal widestFigure(const QFontMetricsF& metrics) {
    qreal width = 0;
    for (char16_t c = u'0'; c <= u'9'; ++c)
        width = std::max(width, metrics.horizontalAdvance(QChar(c)));
    return width;
}

/// Calls `piece(text, width, isFigure)` for every digit and every run without digits.
template <class Piece>
void forEachPiece(const QFontMetricsF& metrics, const QString& text, Piece piece) {
    const qreal figure = widestFigure(metrics);
    for (qsizetype i = 0; i < text.size();) {
        qsizetype end = i + 1;
        if (!isFigure(text[i]))
            while (end < text.size() && !isFigure(text[end])) ++end;
        const QString run = text.mid(i, end - i);
        if (isFigure(text[i]))
            piece(run, figure, true);
        else
            piece(run, metrics.horizontalAdvance(run), false);
        i = end;
    }
}

}  // namespace

QFont body() { return FallbackFonts::added(QApplication::font()); }

QFont small() { return resized(body(), 1.0, -1.0); }

QFont title() { return semibold(resized(body(), 1.0, 2.0)); }

QFont screenTitle() { return semibold(resized(body(), 1.3, 0.0)); }

QFont semibold(QFont font) {
    font.setWeight(QFont::DemiBold);
    return font;
}

int textWidth(const QFont& font, const QString& text) {
    return static_cast<int>(std::ceil(QFontMetricsF(font).horizontalAdvance(text))) + 1;
}

qreal tabularWidth(const QFont& font, const QString& text) {
    qreal width = 0;
    forEachPiece(QFontMetricsF(font), text,
                 [&](const QString&, qreal advance, bool) { width += advance; });
    return width;
}

void drawTabular(QPainter& painter, const QRectF& rect, Qt::Alignment horizontal,
                 const QString& text) {
    const QFontMetricsF metrics(painter.font());
    const qreal width = tabularWidth(painter.font(), text);
    qreal x = rect.left();
    if (horizontal & Qt::AlignRight) x = rect.right() - width;
    if (horizontal & Qt::AlignHCenter) x = rect.center().x() - width / 2;
    const qreal y = rect.top() + (rect.height() - metrics.height()) / 2 + metrics.ascent();
    forEachPiece(metrics, text, [&](const QString& run, qreal advance, bool figure) {
        const qreal inset = figure ? (advance - metrics.horizontalAdvance(run)) / 2 : 0;
        painter.drawText(QPointF(x + inset, y), run);
        x += advance;
    });
}

}  // namespace tarn::Fonts
