#include "Tarn/ui/theme/ItemIconEngine.h"

#include <algorithm>

#include <QtGui/QPainter>
#include <QtGui/QPixmapCache>
#include <QtSvg/QSvgRenderer>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/SymbolIconEngine.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

/// Up to this many logical pixels the simpler drawings are used, whose lines fall on pixels.
constexpr qreal largestSmall = 28;
constexpr float disabledOpacity = 0.45F;

struct Layout {
    const char* file;
    QRectF symbol;  ///< Parts of the whole square.
};

Layout layout(ItemIconEngine::Shape shape, bool small) {
    using Shape = ItemIconEngine::Shape;
    switch (shape) {
        case Shape::folder:
            return small ? Layout{"folder-small", {0.31, 0.41, 0.38, 0.38}}
                         : Layout{"folder", {0.34, 0.43, 0.32, 0.32}};
        case Shape::page:
            return small ? Layout{"page-small", {0.25, 0.36, 0.50, 0.50}}
                         : Layout{"page", {0.30, 0.40, 0.40, 0.40}};
        case Shape::box:
            return small ? Layout{"box-small", {}} : Layout{"box", {}};
        case Shape::tile:
            return {"tile", {0.25, 0.25, 0.50, 0.50}};
    }
    return {"page", {}};
}

void drawFile(QPainter& painter, const char* file, int side) {
    QSvgRenderer(u":/tarn/icons/items/"_s + QLatin1StringView(file) + u".svg"_s)
        .render(&painter, QRectF(0, 0, side, side));
}

QImage drawn(const ItemIconEngine::Design& design, int side, qreal scale) {
    const bool small = side <= largestSmall * scale;
    const Layout parts = layout(design.shape, small);
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawFile(painter, parts.file, side);
    QColor symbolColor = design.color;
    if (design.shape == ItemIconEngine::Shape::tile) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        QLinearGradient ground(0, 0, 0, side);
        ground.setColorAt(0, design.color.lighter(118));
        ground.setColorAt(1, design.color);
        painter.fillRect(image.rect(), ground);
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        symbolColor = Qt::white;
    }
    if (design.shape == ItemIconEngine::Shape::page && Colors::current().isDark) {
        // A white sheet glares beside dark rows.
        painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
        painter.fillRect(image.rect(), QColor(0, 0, 0, 24));
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    }
    if (!design.symbol.isEmpty() && !parts.symbol.isEmpty()) {
        const int symbolSide = std::max(6, qRound(parts.symbol.width() * side));
        const QPoint corner(qRound(parts.symbol.left() * side), qRound(parts.symbol.top() * side));
        painter.drawPixmap(corner,
                           SymbolIconEngine::render(design.symbol, symbolSide, 1e3, symbolColor));
    }
    return image;
}

}  // namespace

QPixmap ItemIconEngine::square(int side, qreal scale, QIcon::Mode mode) const {
    const QString key = u"tarn/item/%1/%2/%3/%4/%5/%6"_s.arg(static_cast<int>(design_.shape))
                            .arg(design_.symbol)
                            .arg(design_.color.rgba(), 8, 16)
                            .arg(side)
                            .arg(side <= largestSmall * scale)
                            .arg(mode == QIcon::Disabled);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    QImage image = drawn(design_, side, scale);
    if (mode == QIcon::Disabled) {
        QPainter fade(&image);
        fade.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        fade.fillRect(image.rect(), QColor::fromRgbF(0, 0, 0, disabledOpacity));
    }
    pixmap = QPixmap::fromImage(image);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

}  // namespace tarn
