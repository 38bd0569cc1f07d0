#include "Tarn/ui/tags/TagDots.h"

#include <algorithm>

#include <QtGui/QIconEngine>
#include <QtGui/QPainter>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn::TagDots {
namespace {

/// Of a dot on the ground beside it.
constexpr double rim = 1.5;

void paintDot(QPainter& painter, const QRectF& rect, TagColor color) {
    const QColor fill = Colors::current().tag(color);
    if (color == TagColor::none) {
        // A tag without colour is a ring.
        const double width = std::max(1.0, rect.width() / 8);
        painter.setPen(QPen(fill, width));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(rect.adjusted(width / 2, width / 2, -width / 2, -width / 2));
        return;
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawEllipse(rect);
}

/// Draws a large dot at the size and with the colours of the moment.
class DotEngine final : public QIconEngine {
public:
    DotEngine(TagColor color, Share share) : color_(color), share_(share) {}
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
        const double side = std::min(rect.width(), rect.height()) - 2;
        QRectF dot(0, 0, side, side);
        dot.moveCenter(QRectF(rect).center());
        paintLarge(*painter, dot, color_, share_);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect({}, size), mode, state);
        return picture;
    }
    QIconEngine* clone() const override { return new DotEngine(color_, share_); }

private:
    TagColor color_;
    Share share_;
};

}  // namespace

int width(std::size_t tags) {
    const auto shown = static_cast<int>(std::min(tags, mostShown));
    return shown == 0 ? 0 : Metrics::tagDot + (shown - 1) * Metrics::tagDotStep;
}

void paint(QPainter& painter, const QRectF& rect, const std::vector<TagColor>& tags,
           const QColor& ground) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const auto shown = static_cast<int>(std::min(tags.size(), mostShown));
    // From the last to the first, which lies on top.
    for (int i = shown - 1; i >= 0; --i) {
        QRectF dot(rect.left() + i * Metrics::tagDotStep, rect.center().y() - Metrics::tagDot / 2.0,
                   Metrics::tagDot, Metrics::tagDot);
        if (shown > 1) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(ground);
            painter.drawEllipse(dot.adjusted(-rim, -rim, rim, rim));
        }
        paintDot(painter, dot, tags[static_cast<std::size_t>(i)]);
    }
    painter.restore();
}

void paintLarge(QPainter& painter, const QRectF& rect, TagColor color, Share share) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    paintDot(painter, rect, color);
    if (share != Share::none) {
        const QColor ink = Colors::current().onTag(color);
        painter.setPen(QPen(ink, rect.width() / 9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        const auto at = [&rect](double x, double y) {
            return QPointF(rect.left() + x * rect.width(), rect.top() + y * rect.height());
        };
        if (share == Share::all)
            painter.drawPolyline(QList<QPointF>{at(0.28, 0.52), at(0.44, 0.68), at(0.73, 0.35)});
        else
            painter.drawLine(at(0.3, 0.5), at(0.7, 0.5));
    }
    painter.restore();
}

QIcon icon(TagColor color, Share share) { return QIcon(new DotEngine(color, share)); }

}  // namespace tarn::TagDots
