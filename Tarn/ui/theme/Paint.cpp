#include "Tarn/ui/theme/Paint.h"

#include <algorithm>

#include <QtGui/QPainter>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn::Paint {

void fill(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

void outline(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color,
             qreal width) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    const qreal half = width / 2;
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
    painter.restore();
}

void shadow(QPainter& painter, const QRectF& rect, qreal radius, int reach) {
    QColor color = Colors::current().shadow;
    const float darkest = color.alphaF();
    // Each ring adds to those around it, so that the shade fades out with the square.
    const auto shade = [reach](int step) {
        const float rest = 1 - static_cast<float>(step) / static_cast<float>(reach);
        return rest * rest;
    };
    for (int step = reach; step > 0; --step) {
        color.setAlphaF(darkest * (shade(step - 1) - shade(step)));
        // Light comes from above.
        const int drop = std::min(step, Metrics::space2);
        fill(painter, rect.adjusted(-step, drop - step, step, step), radius + step, color);
    }
}

void card(QPainter& painter, const QRectF& rect, int shadowReach) {
    const Colors& colors = Colors::current();
    shadow(painter, rect, Metrics::radiusCard, shadowReach);
    fill(painter, rect, Metrics::radiusCard, colors.raised);
    outline(painter, rect, Metrics::radiusCard, colors.border, Metrics::hairline);
}

void focusRing(QPainter& painter, const QRectF& rect, qreal radius) {
    outline(painter, rect, radius, Colors::current().accent, Metrics::focusRing);
}

void field(QPainter& painter, const QRectF& rect, bool focused) {
    const Colors& colors = Colors::current();
    fill(painter, rect, Metrics::radiusControl, colors.base);
    if (focused)
        focusRing(painter, rect, Metrics::radiusControl);
    else
        outline(painter, rect, Metrics::radiusControl, colors.border, Metrics::hairline);
}

void row(QPainter& painter, const QRectF& rect, bool selected, bool hovered, bool left,
         bool right) {
    if (!selected && !hovered) return;
    // An end that lies in another cell is drawn beyond this one and cut off.
    const QRectF whole = rect.adjusted(left ? 0 : -2.0 * Metrics::radiusRow, 0,
                                       right ? 0 : 2.0 * Metrics::radiusRow, 0);
    painter.save();
    if (!left || !right) painter.setClipRect(rect, Qt::IntersectClip);
    const Colors& colors = Colors::current();
    QColor ground = colors.text;
    if (selected)
        ground =
            hovered ? colors.tinted(colors.selection, Metrics::hoverTint / 2) : colors.selection;
    else
        ground.setAlphaF(static_cast<float>(Metrics::hoverTint));
    fill(painter, whole, Metrics::radiusRow, ground);
    if (selected && colors.isHighContrast)
        outline(painter, whole, Metrics::radiusRow, colors.text, Metrics::hairline);
    painter.restore();
}

}  // namespace tarn::Paint
