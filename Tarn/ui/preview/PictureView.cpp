#include "Tarn/ui/preview/PictureView.h"

#include <algorithm>
#include <cmath>

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QNativeGestureEvent>
#include <QtGui/QPainter>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QScrollBar>

#include "Tarn/ui/focus/FocusOutline.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

constexpr double leastZoom = 0.01;
/// Degrees of a wheel, in eighths, for doubling.
constexpr double wheelDoubling = 480;
/// How strong the squares below see-through pictures are.
constexpr double squareTint = 0.08;

/// Shows through where a picture is transparent.
void drawSquares(QPainter& painter, const QRectF& rect) {
    const Colors& colors = Colors::current();
    painter.fillRect(rect, colors.base);
    QPixmap tile(2 * Metrics::space8, 2 * Metrics::space8);
    tile.fill(Qt::transparent);
    QPainter squares(&tile);
    const QColor square = colors.tinted(colors.base, squareTint);
    squares.fillRect(0, 0, Metrics::space8, Metrics::space8, square);
    squares.fillRect(Metrics::space8, Metrics::space8, Metrics::space8, Metrics::space8, square);
    squares.end();
    painter.drawTiledPixmap(rect, tile);
}

}  // namespace

PictureView::PictureView(QWidget* parent) : QAbstractScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setAutoFillBackground(false);
    setAutoFillBackground(false);
    setAccessibleName(tr("Picture"));
    new FocusOutline(*this);
}

void PictureView::setPicture(const QPixmap& picture, QSize whole, bool keepsZoom) {
    picture_ = picture;
    whole_ = whole.isEmpty() ? picture.size() : whole;
    if (!keepsZoom) fits_ = true;
    updateBars();
    updateCursor();
    viewport()->update();
    emit zoomChanged();
}

void PictureView::clear() {
    picture_ = {};
    whole_ = {};
    fits_ = true;
    updateBars();
    viewport()->update();
}

void PictureView::setStill(bool isStill) {
    isStill_ = isStill;
    setFocusPolicy(isStill ? Qt::NoFocus : Qt::StrongFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents, isStill);
}

double PictureView::fittingZoom() const {
    if (whole_.isEmpty()) return 1;
    const double ratio = devicePixelRatioF();
    const QSizeF room = QSizeF(viewport()->size()) * ratio;
    // A small picture is not blown up.
    return std::clamp(std::min(room.width() / whole_.width(), room.height() / whole_.height()),
                      leastZoom, 1.0);
}

double PictureView::zoom() const { return fits_ ? fittingZoom() : zoom_; }

void PictureView::setZoom(double zoom) { zoomAround(zoom, viewport()->rect().center()); }

void PictureView::fit() {
    fits_ = true;
    updateBars();
    updateCursor();
    viewport()->update();
    emit zoomChanged();
}

QSizeF PictureView::shownSize() const { return QSizeF(whole_) * zoom() / devicePixelRatioF(); }

int PictureView::wantedPixels() const {
    const double longer = std::max(whole_.width(), whole_.height());
    return static_cast<int>(std::ceil(longer * zoom()));
}

QRectF PictureView::target() const {
    const QSizeF size = shownSize();
    const QRectF room = viewport()->rect();
    QPointF corner((room.width() - size.width()) / 2, (room.height() - size.height()) / 2);
    if (size.width() > room.width()) corner.setX(-horizontalScrollBar()->value());
    if (size.height() > room.height()) corner.setY(-verticalScrollBar()->value());
    return {corner, size};
}

void PictureView::updateBars() {
    const QSizeF over = shownSize() - QSizeF(viewport()->size());
    const auto set = [](QScrollBar* bar, double most, int page) {
        bar->setRange(0, std::max(0, static_cast<int>(std::floor(most))));
        bar->setPageStep(page);
        bar->setSingleStep(Metrics::space24);
    };
    set(horizontalScrollBar(), fits_ ? 0 : over.width(), viewport()->width());
    set(verticalScrollBar(), fits_ ? 0 : over.height(), viewport()->height());
}

void PictureView::updateCursor() {
    const bool canMove =
        !isStill_ && (horizontalScrollBar()->maximum() > 0 || verticalScrollBar()->maximum() > 0);
    viewport()->setCursor(isDragging_ ? Qt::ClosedHandCursor
                          : canMove   ? Qt::OpenHandCursor
                                      : Qt::ArrowCursor);
}

void PictureView::zoomAround(double zoom, QPointF point) {
    if (isStill_ || picture_.isNull()) return;
    const QRectF before = target();
    const QPointF part((point.x() - before.x()) / std::max(1.0, before.width()),
                       (point.y() - before.y()) / std::max(1.0, before.height()));
    zoom_ = std::clamp(zoom, std::min(fittingZoom(), leastZoom * 10), mostZoom);
    fits_ = false;
    updateBars();
    const QSizeF size = shownSize();
    horizontalScrollBar()->setValue(static_cast<int>(part.x() * size.width() - point.x()));
    verticalScrollBar()->setValue(static_cast<int>(part.y() * size.height() - point.y()));
    updateCursor();
    viewport()->update();
    emit zoomChanged();
}

void PictureView::paintEvent(QPaintEvent*) {
    if (picture_.isNull()) return;
    QPainter painter(viewport());
    const QRectF whole = target();
    if (picture_.hasAlpha()) drawSquares(painter, whole & viewport()->rect());
    // One pixel as a square is what one wants to see from twice its size on.
    painter.setRenderHint(QPainter::SmoothPixmapTransform, zoom() < 2);
    painter.drawPixmap(whole, picture_, QRectF(picture_.rect()));
    Paint::outline(painter, whole, 0, Colors::current().border, Metrics::hairline);
}

void PictureView::resizeEvent(QResizeEvent*) {
    updateBars();
    updateCursor();
    emit zoomChanged();
}

void PictureView::wheelEvent(QWheelEvent* event) {
    if (isStill_ || !(event->modifiers() & Qt::ControlModifier)) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    const int turned = event->angleDelta().y();
    if (turned != 0) zoomAround(zoom() * std::exp2(turned / wheelDoubling), event->position());
    event->accept();
}

bool PictureView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::NativeGesture) {
        const auto* gesture = static_cast<QNativeGestureEvent*>(event);
        if (gesture->gestureType() == Qt::ZoomNativeGesture) {
            zoomAround(zoom() * (1 + gesture->value()), gesture->position());
            return true;
        }
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void PictureView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            zoomBy(step);
            break;
        case Qt::Key_Minus:
            zoomBy(1 / step);
            break;
        case Qt::Key_0:
            fit();
            break;
        case Qt::Key_1:
            setZoom(1);
            break;
        default:
            event->ignore();
    }
}

void PictureView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    dragged_ = event->position().toPoint();
    isDragging_ = horizontalScrollBar()->maximum() > 0 || verticalScrollBar()->maximum() > 0;
    updateCursor();
}

void PictureView::mouseMoveEvent(QMouseEvent* event) {
    if (!isDragging_) return;
    const QPoint at = event->position().toPoint();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + dragged_.x() - at.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() + dragged_.y() - at.y());
    dragged_ = at;
}

void PictureView::mouseReleaseEvent(QMouseEvent*) {
    isDragging_ = false;
    updateCursor();
}

void PictureView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    if (fits_)
        zoomAround(1, event->position());
    else
        fit();
}

}  // namespace tarn
