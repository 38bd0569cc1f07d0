#pragma once

#include <QtGui/QIconEngine>
#include <QtGui/QPixmap>

namespace tarn {

/// An icon that is drawn afresh for every size and screen, as a square.
class SquareIconEngine : public QIconEngine {
public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) final;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) final;
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) final;

protected:
    /// `side` is in device pixels, at least 1; `scale` is the screen's ratio.
    virtual QPixmap square(int side, qreal scale, QIcon::Mode mode) const = 0;

private:
    /// Device pixels per unit of the painter. The ratio of its device is not enough: a widget that
    /// is drawn into a picture reports its own screen's.
    static qreal deviceScale(const QPainter& painter);
};

}  // namespace tarn
