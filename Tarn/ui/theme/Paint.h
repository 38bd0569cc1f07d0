#pragma once

#include <QtCore/QRectF>
#include <QtGui/QColor>

class QPainter;

/// The few shapes that everything is drawn from.
namespace tarn::Paint {

/// A rounded rectangle without a line.
void fill(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color);

/// A line of `width` along the inside of a rounded rectangle.
void outline(QPainter& painter, const QRectF& rect, qreal radius, const QColor& color, qreal width);

/// The soft shade around something that floats, `reach` wide; the thing itself is drawn over it.
void shadow(QPainter& painter, const QRectF& rect, qreal radius, int reach);

/// The ground of what floats over a window, with a shade that reaches so far around it.
void card(QPainter& painter, const QRectF& rect, int shadowReach = 0);

/// The mark of the control that has the keyboard.
void focusRing(QPainter& painter, const QRectF& rect, qreal radius);

/// The ground of a field for text: a line around it, the focus ring while it has the keyboard.
void field(QPainter& painter, const QRectF& rect, bool focused);

/// The ground of a selected or hovered row: the whole width, rounded. Nothing when neither.
/// `left` and `right` tell which ends of the row lie in this part of it.
void row(QPainter& painter, const QRectF& rect, bool selected, bool hovered, bool left = true,
         bool right = true);

}  // namespace tarn::Paint
