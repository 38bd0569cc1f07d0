#pragma once

#include <QtGui/QPixmap>
#include <QtWidgets/QAbstractScrollArea>

namespace tarn {

/// A picture that fits its room until it is zoomed; then it can be pushed about.
///
/// Ctrl and the wheel, pinching, “+” and “−” zoom around the pointer or the middle; “0” fits and
/// “1” shows each pixel of the picture as one of the screen, as a double click does in turns.
class PictureView final : public QAbstractScrollArea {
    Q_OBJECT
public:
    explicit PictureView(QWidget* parent = nullptr);

    /// `whole` is the size of the picture itself, in its pixels; `picture` may be a smaller one of
    /// it until a sharper one is there. With `keepsZoom` it is a better one of the same picture.
    void setPicture(const QPixmap& picture, QSize whole, bool keepsZoom);
    void clear();
    bool hasPicture() const { return !picture_.isNull(); }
    /// A view that only shows: it does not zoom, and takes no keys or clicks.
    void setStill(bool isStill);

    bool fits() const { return fits_; }
    /// Pixels of the screen for one of the picture.
    double zoom() const;
    void setZoom(double zoom);
    void fit();
    void zoomBy(double factor) { zoomAround(zoom() * factor, viewport()->rect().center()); }
    /// Device pixels that the longer side of the picture takes now.
    int wantedPixels() const;

    static constexpr double mostZoom = 16;
    static constexpr double step = 1.25;

signals:
    void zoomChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    double fittingZoom() const;
    void zoomAround(double zoom, QPointF point);
    QSizeF shownSize() const;
    QRectF target() const;
    void updateBars();
    void updateCursor();

    QPixmap picture_;
    QSize whole_;
    double zoom_ = 1;
    bool fits_ = true;
    bool isStill_ = false;
    QPoint dragged_;
    bool isDragging_ = false;
};

}  // namespace tarn
