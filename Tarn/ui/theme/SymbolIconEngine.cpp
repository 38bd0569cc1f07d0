#include "Tarn/ui/theme/SymbolIconEngine.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtGui/QPainter>
#include <QtGui/QPixmapCache>
#include <QtSvg/QSvgRenderer>

#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

constexpr double calmLine = 0.6;  // of the drawn width, for symbols larger than a row

QByteArray source(const QString& name, bool thin) {
    QFile file(u":/tarn/icons/"_s + name + u".svg"_s);
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QByteArray svg = file.readAll();
    if (!thin) return svg;
    static const QRegularExpression width(u"stroke-width=\"([0-9.]+)\""_s);
    QString text = QString::fromUtf8(svg);
    const auto match = width.match(text);
    if (!match.hasMatch()) return svg;
    const QString thinner = QString::number(match.captured(1).toDouble() * calmLine);
    return text.replace(match.capturedStart(1), match.capturedLength(1), thinner).toUtf8();
}

}  // namespace

QPixmap SymbolIconEngine::render(const QString& name, int side, qreal scale, const QColor& color) {
    const bool thin = side >= Metrics::iconLarge * scale;
    const QString key =
        u"tarn/%1/%2/%3/%4"_s.arg(name).arg(side).arg(thin).arg(color.rgba(), 8, 16);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QSvgRenderer(source(name, thin)).render(&painter, QRectF(0, 0, side, side));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    pixmap = QPixmap::fromImage(image);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

QPixmap SymbolIconEngine::square(int side, qreal scale, QIcon::Mode mode) const {
    return render(name_, side, scale, color(mode));
}

QColor SymbolIconEngine::color(QIcon::Mode mode) const {
    const Colors& colors = Colors::current();
    if (mode == QIcon::Disabled) return colors.disabled;
    switch (tint_) {
        case Icons::Tint::text:
            return colors.text;
        case Icons::Tint::secondary:
            return colors.secondary;
        case Icons::Tint::accent:
            return colors.accent;
        case Icons::Tint::danger:
            return colors.danger;
        case Icons::Tint::onAccent:
            return colors.onAccent;
    }
    return colors.text;
}

}  // namespace tarn
